#include "base/text.h"
#include "base/text/text_list.h"
#include "base/variables/expression.h"
#include "base/variables/option_functions.h"

#include <algorithm>
#include <cmath>

namespace vldv::base {

namespace {

using kind = expression_step::kind;

/// Shifts are by whole places of whole numbers, as far as a double holds them.
double shifted(double value, double places) noexcept
{
    // Multiplying by a power of two is exact and has no undefined shifts. The limit lies beyond all exponents of a
    // double, so that it changes no result.
    return std::trunc(value) * std::exp2(std::clamp(std::trunc(places), -2000.0, 2000.0));
}

double combined(kind what, double a, double b) noexcept
{
    switch (what) {
    case kind::power:
        return std::pow(a, b);
    case kind::multiply:
        return a * b;
    case kind::divide:
        return a / b;
    case kind::remainder:
        return std::fmod(a, b);
    case kind::add:
        return a + b;
    case kind::subtract:
        return a - b;
    case kind::shiftLeft:
        return std::trunc(shifted(a, b));
    case kind::shiftRight:
        return std::floor(shifted(a, -b));
    case kind::less:
        return a < b;
    case kind::lessEqual:
        return a <= b;
    case kind::greater:
        return a > b;
    case kind::greaterEqual:
        return a >= b;
    case kind::minimum:
        return b < a ? b : a;
    default:
        return b > a ? b : a;
    }
}

std::string hexadecimal_text(double value)
{
    const double whole = std::trunc(value);
    if (!(std::fabs(whole) < 9007199254740992.0)) return shortest(value);
    return formatted("%s0x%llx", whole < 0.0 ? "-" : "", static_cast<unsigned long long>(std::fabs(whole)));
}

} // namespace

expression_value expression_value::of(std::string text_)
{
    const double number = leading_number(text_).value_or(0.0);
    return {number, std::move(text_), true};
}

expression_value expression_value::of(const SPMVar& variable)
{
    if (variable.type != SPM_VAR_STRING) return of(static_cast<double>(variable));
    return of(std::string(variable.value.string.text ? variable.value.string.text : ""));
}

std::string expression_value::asText() const { return isText ? text : shortest(number); }

/// One walk over the steps.
class expression_evaluation {
public:
    expression_evaluation(const expression& source_, const expression_inputs& inputs_)
        : source(source_), inputs(inputs_)
    {
    }

    expression_value value(const expression_step& step)
    {
        switch (step.what) {
        case kind::number:
            return expression_value::of(step.number);
        case kind::text:
            return expression_value::of(source.texts[step.index]);
        case kind::own:
            return inputs.own;
        case kind::name:
            return named(step.index);
        // Only the branch that is chosen is evaluated; "&&" and "||" stop at the first operand that decides, too.
        case kind::choose:
            return value(source.operand(step, numberOf(step, 0) != 0.0 ? 1 : 2));
        case kind::hexadecimal:
            return expression_value::of(hexadecimal_text(numberOf(step, 0)));
        // Its arguments say how the field asks for a file; the path is the value itself.
        case kind::filePath:
            return inputs.own;
        case kind::listEntry:
            return listEntry(step);
        case kind::fontList:
            return expression_value::of(font_list(valueOf(step, 0).asText()));
        case kind::callFunction:
            return called(step);
        default:
            return expression_value::of(number(step));
        }
    }

    bool failed = false;

private:
    expression_value valueOf(const expression_step& step, unsigned i) { return value(source.operand(step, i)); }
    double numberOf(const expression_step& step, unsigned i) { return valueOf(step, i).asNumber(); }

    double number(const expression_step& step)
    {
        switch (step.what) {
        case kind::negative:
            return -numberOf(step, 0);
        case kind::logicalNot:
            return numberOf(step, 0) == 0.0;
        case kind::logicalAnd:
            return numberOf(step, 0) != 0.0 && numberOf(step, 1) != 0.0;
        case kind::logicalOr:
            return numberOf(step, 0) != 0.0 || numberOf(step, 1) != 0.0;
        case kind::logarithm:
            return std::log(numberOf(step, 0));
        case kind::exponential:
            return std::exp(numberOf(step, 0));
        case kind::equal:
        case kind::unequal:
            return equal(valueOf(step, 0), valueOf(step, 1)) == (step.what == kind::equal);
        default:
            return combined(step.what, numberOf(step, 0), numberOf(step, 1));
        }
    }

    // Two texts are compared as texts; a text beside a number as the number that it reads as.
    static bool equal(const expression_value& a, const expression_value& b)
    {
        return a.isText && b.isText ? a.text == b.text : a.number == b.number;
    }

    expression_value named(unsigned index) const
    {
        const unsigned position = index < inputs.positions.size() ? inputs.positions[index] : unsigned(-1);
        if (position >= inputs.variables.size()) return {};
        return expression_value::of(inputs.variables[position]);
    }

    expression_value listEntry(const expression_step& step)
    {
        const double index = numberOf(step, 1);
        if (!(index >= 0.0 && index < 4294967296.0)) return expression_value::of(std::string());
        return expression_value::of(
            list_entry(valueOf(step, 0).asText(), static_cast<std::size_t>(index)).value_or(std::string()));
    }

    expression_value called(const expression_step& step)
    {
        double arguments[8];
        // The last operand is the name of the function, all before it are the numbers that it is called with. The
        // parser lets at most five operands through.
        const unsigned count = step.count - 1;
        for (unsigned i = 0; i < count; ++i) arguments[i] = numberOf(step, i);
        auto text = call_option_function(valueOf(step, count).asText(), {arguments, count});
        failed |= !text;
        return expression_value::of(text ? std::move(*text) : std::string());
    }

    const expression& source;
    const expression_inputs& inputs;
};

std::optional<expression_value> expression::evaluate(const expression_inputs& inputs) const
{
    expression_evaluation evaluation(*this, inputs);
    expression_value value = evaluation.value(steps[result]);
    if (evaluation.failed) return std::nullopt;
    return value;
}

} // namespace vldv::base
