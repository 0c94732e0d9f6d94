#include "base/variables/option_display.h"

#include "base/streams/monotone_inverse.h"
#include "base/text.h"
#include "base/text/text_list.h"
#include "base/variables/option_settling.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vldv::base {

namespace {

using kind = expression_step::kind;

constexpr int shownDigits = 15;

/// A variable's display expression with what its names stand for.
class display_function {
public:
    display_function(const SPMVarList& list, const SPMVar& variable)
        : options(compiled_options::of(variable.get_options())), values(list.all())
    {
        options.bind([&](std::string_view name) { return list.get_var_i(name); });
    }

    explicit operator bool() const noexcept { return options.display.has_value(); }
    const expression& source() const noexcept { return *options.display; }
    kind what() const noexcept { return options.display ? options.display->root().what : kind::own; }

    std::optional<expression_value> operator()(const expression_value& own) const
    {
        return options.display->evaluate({own, values, options.displayInputs});
    }
    /// NaN where there is no value.
    double number(double own) const
    {
        const auto value = (*this)(expression_value::of(own));
        return value ? value->asNumber() : std::numeric_limits<double>::quiet_NaN();
    }

private:
    compiled_options options;
    std::span<const SPMVar> values;
};

std::string value_text(const SPMVar& variable)
{
    if (variable.type == SPM_VAR_ENUM) return variable.get_enum_label(variable.value.choice.item);
    return variable.as_string().c_str();
}

bool is_numeric(const SPMVar& variable) noexcept
{
    return variable.type != SPM_VAR_NONE && variable.type <= SPM_VAR_BOOLEAN;
}

std::optional<double> hexadecimal_number(std::string_view text)
{
    text = trimmed(text);
    const bool isNegative = text.starts_with('-');
    if (isNegative) text.remove_prefix(1);
    if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
    const auto number = text.empty() || text.front() == '-' ? std::nullopt : whole_integer("0x" + std::string(text));
    if (!number) return std::nullopt;
    return static_cast<double>(isNegative ? -*number : *number);
}

/// What the user types has to be a number as a whole: of "1,5" not the 1 alone. Digits behind "0x" are one.
bool take_typed(SPMVar& variable, const char* text)
{
    if (variable.type == SPM_VAR_NONE || variable.type > SPM_VAR_INT || whole_number(text))
        return variable.from_string(text);
    return false;
}

/// The chosen entry takes the place that the display shows.
bool take_choice(SPMVar& variable, const display_function& display, const char* text)
{
    const double place = display.source().constantNumber(display.source().root(), 1).value_or(0.0);
    std::vector<std::string> entries = parse_list(variable.as_string().c_str());
    std::erase(entries, text);
    const auto index = std::min(entries.size(), static_cast<std::size_t>(std::clamp(place, 0.0, 1e6)));
    entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(index), text);
    return variable.from_string(write_list(entries).c_str());
}

/// The number with the fewest digits that is shown like `found`.
double plainest(const display_function& display, double found, double wanted)
{
    const std::string shown = general(wanted, shownDigits);
    for (int digits = 1; digits < 17; ++digits) {
        const double plain = leading_number(general(found, digits)).value_or(found);
        if (general(display.number(plain), shownDigits) == shown) return plain;
    }
    return found;
}

bool take_number(SPMVar& variable, const display_function& display, double wanted)
{
    const auto shown = [&](double own) { return display.number(own); };
    const auto found = invert_monotone(shown, wanted,
                                       {.low = variable.limits.number.minimum,
                                        .high = variable.limits.number.maximum,
                                        .start = variable.value.number.value,
                                        .wholeNumbers = variable.type != SPM_VAR_DOUBLE});
    if (!found) return false;
    variable = variable.type == SPM_VAR_DOUBLE ? plainest(display, *found, wanted) : *found;
    return true;
}

bool take_hexadecimal(SPMVar& variable, const display_function& display, const char* text)
{
    const auto wanted = hexadecimal_number(text);
    if (!wanted) return false;
    if (!display.source().isOwnValue(display.source().root(), 0)) return take_number(variable, display, *wanted);
    variable = *wanted;
    return true;
}

} // namespace

bool is_color(const SPMVarList& list, const SPMVar& variable)
{
    if (variable.type != SPM_VAR_INT) return false;
    return lower_ascii(variable.get_name()).ends_with("color") ||
           shown_field_of(list, variable).what == shown_field::kind::hexadecimal;
}

shown_field shown_field_of(const SPMVarList& list, const SPMVar& variable)
{
    shown_field field;
    const display_function display(list, variable);
    if (display.what() == kind::hexadecimal) {
        field.what = shown_field::kind::hexadecimal;
    } else if (display.what() == kind::filePath) {
        const expression& source = display.source();
        field.what = shown_field::kind::path;
        field.filter = source.constantText(source.root(), 0).value_or(std::string_view());
        field.saves = source.constantNumber(source.root(), 1).value_or(0.0) == 1.0;
    } else if (display.what() == kind::listEntry && variable.type == SPM_VAR_STRING) {
        field.what = shown_field::kind::list;
        field.choices = parse_list(variable.as_string().c_str());
    }
    return field;
}

std::string shown_text(const SPMVarList& list, const SPMVar& variable)
{
    const SPMVar shown = list.evaluate_var(variable);
    if (!is_numeric(shown) || !display_function(list, variable)) return value_text(shown);
    const double number = static_cast<double>(shown);
    return std::isnan(number) ? "nan" : general(number, shownDigits); // without the sign that some have
}

bool take_shown_text(const SPMVarList& list, SPMVar& variable, const char* text)
{
    if (!text) return false;
    const display_function display(list, variable);
    if (!display) return take_typed(variable, text);
    if (text == shown_text(list, variable)) return true;
    switch (display.what()) {
    case kind::hexadecimal:
        return is_numeric(variable) ? take_hexadecimal(variable, display, text) : variable.from_string(text);
    case kind::filePath:
        return variable.from_string(text);
    case kind::listEntry:
        return variable.type == SPM_VAR_STRING && take_choice(variable, display, text);
    default:
        break;
    }
    if (!is_numeric(variable)) return variable.from_string(text);
    const auto wanted = whole_number(text);
    return wanted && take_number(variable, display, *wanted);
}

} // namespace vldv::base
