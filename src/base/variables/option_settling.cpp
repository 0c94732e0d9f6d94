#include "base/variables/option_settling.h"

#include "base/text.h"
#include "base/variables/declaration.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vldv::base {

namespace {

/// In place of the number of a former value: the change of this variable is told in any case.
constexpr unsigned toldBefore = unsigned(-1);

bool store_number(SPMVar& variable, double number)
{
    if (!std::isfinite(number)) return false;
    const double before = variable.value.number.value;
    return (variable = number) != before;
}

bool store_item(SPMVar& variable, const expression_value& result)
{
    const unsigned before = variable.value.choice.item;
    if (result.isText && variable.set_enum_name(result.text.c_str())) return variable.value.choice.item != before;
    for (unsigned i = 0; i < variable.get_enum_size(); ++i) {
        if (variable.limits.choice.itemValues[i] != result.number) continue;
        variable.set_enum_val(static_cast<int>(i));
        return i != before;
    }
    return false;
}

bool store_text(SPMVar& variable, const expression_value& result)
{
    const std::string text = result.asText();
    const char* before = variable.value.string.text;
    if (text == (before ? before : "")) return false;
    variable.set_string(text.c_str());
    return true;
}

} // namespace

bool store_evaluated(SPMVar& variable, const expression_value& result)
{
    switch (variable.type) {
    case SPM_VAR_BOOLEAN:
        // What a function answers may be a word, as options are stored.
        return store_number(variable, result.isText && trimmed(result.text) == "true" ? 1.0 : result.asNumber());
    case SPM_VAR_DOUBLE:
    case SPM_VAR_INT:
        return store_number(variable, result.asNumber());
    case SPM_VAR_STRING:
        return store_text(variable, result);
    case SPM_VAR_ENUM:
        return store_item(variable, result);
    default:
        return false;
    }
}

void show_value(SPMVar& variable, const expression_value& shown)
{
    if (!shown.isText && variable.type != SPM_VAR_NONE && variable.type <= SPM_VAR_BOOLEAN) {
        if (variable.type == SPM_VAR_BOOLEAN) variable.type = SPM_VAR_DOUBLE; // to be shown as a number
        variable.value.number.value = shown.number;
        return;
    }
    SPMVar text;
    text.Init(variable.get_name(), variable.get_description(), SPM_VAR_STRING);
    text.set_options(variable.get_options());
    text.set_string(shown.asText().c_str());
    text.timestamp = variable.timestamp;
    variable = std::move(text);
}

compiled_options compiled_options::of(std::string_view text)
{
    compiled_options out;
    out.text = text;
    const option_fields fields = split_options(text);
    out.display = expression::compile(fields.display);
    out.evaluation = expression::compile(fields.evaluation);
    out.asksFunctions = out.evaluation && out.evaluation->callsFunctions();
    return out;
}

void compiled_options::bind(const std::function<unsigned(std::string_view)>& position)
{
    const auto positions = [&](const std::optional<expression>& source, std::vector<unsigned>& out) {
        out.clear();
        if (source)
            for (const std::string& name : source->names()) out.push_back(position(name));
    };
    positions(display, displayInputs);
    positions(evaluation, evaluationInputs);
    evaluatedAt = 0;
}

void option_settling::clear()
{
    compiled.clear();
    changedAt.clear();
    bound = true;
}

void option_settling::declare(unsigned index, const SPMVar& variable)
{
    const bool isNew = index >= compiled.size();
    if (isNew) {
        compiled.resize(index + 1);
        changedAt.resize(index + 1);
    }
    if (compiled[index].text != variable.get_options()) compiled[index] = compiled_options::of(variable.get_options());
    // A new name may be one that an expression asks for, and a new expression has names to look up.
    bound = false;
    touch(index);
}

option_settling::former_value::former_value(unsigned index_, const SPMVar& variable)
    : index(index_), timestamp(variable.timestamp)
{
    if (variable.type <= SPM_VAR_BOOLEAN)
        number = variable.value.number.value;
    else if (variable.type == SPM_VAR_ENUM)
        number = variable.value.choice.item;
    else if (variable.type == SPM_VAR_STRING && variable.value.string.text)
        text = variable.value.string.text;
}

bool option_settling::former_value::equals(const SPMVar& variable) const
{
    const former_value other(index, variable);
    return number == other.number && text == other.text;
}

/// As an expression reads it. \param variable  the one it was taken from
expression_value option_settling::former_value::valueOf(const SPMVar& variable) const
{
    if (variable.type == SPM_VAR_STRING) return expression_value::of(text);
    if (variable.type != SPM_VAR_ENUM) return expression_value::of(number);
    return expression_value::of(variable.limits.choice.itemValues[static_cast<unsigned>(number)]);
}

expression_value option_settling::ownValue(unsigned index, const SPMVar& variable) const
{
    const unsigned number = formerNumbers[index];
    return number == 0 || number == toldBefore ? expression_value::of(variable) : formers[number - 1].valueOf(variable);
}

/// On the way to the settled state a variable may leave its value and come back.
void option_settling::forgetReturned(std::vector<SPMVar>& variables, std::vector<unsigned>& moved) const
{
    const auto hasReturned = [&](const former_value& former) {
        return !former.isTold && former.equals(variables[former.index]);
    };
    for (const former_value& former : formers)
        if (hasReturned(former)) variables[former.index].timestamp = former.timestamp;
    std::erase_if(moved, [&](unsigned index) {
        const unsigned number = formerNumbers[index];
        return number != 0 && number != toldBefore && hasReturned(formers[number - 1]);
    });
}

bool option_settling::isDue(unsigned index) const
{
    const compiled_options& own = compiled[index];
    if (!own.evaluation) return false;
    if (own.evaluatedAt == 0 || changedAt[index] > own.evaluatedAt) return true;
    return std::ranges::any_of(own.evaluationInputs, [&](unsigned input) {
        return input < changedAt.size() && changedAt[input] > own.evaluatedAt;
    });
}

void option_settling::settle(std::vector<SPMVar>& variables, const std::function<unsigned(std::string_view)>& position,
                             std::vector<unsigned>& moved)
{
    if (!std::exchange(bound, true))
        for (compiled_options& options : compiled) options.bind(position);
    const unsigned count = static_cast<unsigned>(variables.size());
    formers.clear();
    formerNumbers.assign(count, 0);
    std::erase_if(moved, [&](unsigned index) { return index >= count; }); // of a longer list that was replaced
    for (const unsigned index : moved) formerNumbers[index] = toldBefore;
    // Rounds through all variables, until one moves nothing. A round carries a change along at least one link of a
    // chain of expressions; a chain has fewer links than there are variables, so that more rounds than that mean a
    // circle, which is left as it stands. "##" reads the value from before the first round, so that "##+1" counts up
    // once and not each round.
    bool isMoving = true;
    for (unsigned round = 0; isMoving && round < count; ++round) {
        isMoving = false;
        for (unsigned i = 0; i < count; ++i) {
            // What a function answers may change without any variable, so that those who call one are asked in the
            // first round even when nothing they read has moved.
            if (!isDue(i) && (round > 0 || !compiled[i].asksFunctions)) continue;
            compiled[i].evaluatedAt = ++clock;
            const auto result =
                compiled[i].evaluation->evaluate({ownValue(i, variables[i]), variables, compiled[i].evaluationInputs});
            if (!result) continue;
            former_value former(i, variables[i]);
            if (!store_evaluated(variables[i], *result)) continue;
            variables[i].update_timestamp();
            touch(i);
            compiled[i].evaluatedAt = clock; // its own move is no reason to evaluate again
            isMoving = true;
            if (formerNumbers[i] != 0 && formerNumbers[i] != toldBefore) continue;
            former.isTold = formerNumbers[i] == toldBefore;
            if (!former.isTold) moved.push_back(i);
            formers.push_back(std::move(former));
            formerNumbers[i] = static_cast<unsigned>(formers.size());
        }
    }
    forgetReturned(variables, moved);
}

} // namespace vldv::base
