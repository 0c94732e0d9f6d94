#include "cli/option_table.h"

#include "base/declaration.h"
#include "base/expression.h"
#include "base/text.h"

namespace cli {

namespace {

/// What is wrong with a declaration that can be read; empty when nothing is.
std::string expression_problem(const base::declaration& declared)
{
    const base::option_fields fields = base::split_options(declared.options);
    std::string reason;
    if (!fields.display.empty() && !base::expression::compile(fields.display, &reason))
        return "display \"" + std::string(fields.display) + "\": " + reason;
    if (!fields.evaluation.empty() && !base::expression::compile(fields.evaluation, &reason))
        return "evaluation \"" + std::string(fields.evaluation) + "\": " + reason;
    for (const base::declared_item& item : declared.items)
        if (base::is_function_item(item) && !base::expression::compile(item.key, &reason))
            return "items \"" + item.key + "\": " + reason;
    return {};
}

std::string limits_problem(const base::declaration& declared)
{
    if (declared.minimum > declared.maximum) return "the minimum is above the maximum";
    return declared.step < 0.0 ? "the step is negative" : "";
}

} // namespace

option_table read_option_table(std::istream& in)
{
    option_table table;
    std::string line;
    for (unsigned number = 1; std::getline(in, line); ++number) {
        if (line.ends_with('\r')) line.pop_back();
        if (base::trimmed(line).empty()) continue;
        const auto complain = [&](const std::string& problem) {
            table.problems.push_back(base::formatted("line %u: ", number) + problem);
        };
        const std::size_t tab = line.find('\t');
        const std::string text = line.substr(0, tab);
        std::string problem;
        const base::declaration declared = base::parse_declaration(text, &problem);
        if (declared.type != SPM_VAR_NONE && declared.name.empty()) problem = "there is no name";
        if (problem.empty()) problem = expression_problem(declared);
        if (problem.empty()) problem = limits_problem(declared);
        if (!problem.empty()) {
            complain(problem);
            continue;
        }
        SPMVar variable;
        variable.Init(text);
        if (tab != std::string::npos && !variable.from_string(line.c_str() + tab + 1))
            complain("the default \"" + line.substr(tab + 1) + "\" is no value of \"" + declared.name + "\"");
        table.variables.push_back(std::move(variable));
    }
    return table;
}

} // namespace cli
