#include "cli/choice/option_table.h"

#include "base/text.h"
#include "base/variables/declaration.h"
#include "base/variables/expression.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace vldv::cli {

namespace {

constexpr std::uint64_t maxArrayBytes = 64u << 20; ///< options are shown as text, two characters a byte
constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

/// What is wrong with a declaration that can be read; empty when nothing is.
std::string expression_problem(const base::declaration& declared)
{
    const base::option_fields fields = base::split_options(declared.options);
    std::string reason;
    if (!fields.display.empty() && !base::expression::compile(fields.display, &reason))
        return "display \"" + base::excerpt(fields.display) + "\": " + reason;
    if (!fields.evaluation.empty() && !base::expression::compile(fields.evaluation, &reason))
        return "evaluation \"" + base::excerpt(fields.evaluation) + "\": " + reason;
    for (const base::declared_item& item : declared.items)
        if (base::is_function_item(item) && !base::expression::compile(item.key, &reason))
            return "items \"" + base::excerpt(item.key) + "\": " + reason;
    return {};
}

std::string name_problem(const std::string& name)
{
    if (name.empty()) return "there is no name";
    const bool isReadable = std::ranges::all_of(name, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.';
    });
    return isReadable ? "" : "the name \"" + base::excerpt(name) + R"(" holds more than letters, digits, "_" and ".")";
}

std::string limits_problem(const base::declaration& declared)
{
    if (declared.type == SPM_VAR_ARRAY && std::uint64_t{declared.length} * declared.elementSize > maxArrayBytes)
        return "the array is larger than 64 MiB";
    if (declared.minimum > declared.maximum) return "the minimum is above the maximum";
    if (declared.type == SPM_VAR_INT && std::ceil(declared.minimum) > std::floor(declared.maximum))
        return "there is no whole number between the limits";
    return declared.step < 0.0 ? "the step is negative" : "";
}

} // namespace

option_table read_option_table(std::istream& in)
{
    option_table table;
    std::string line;
    for (unsigned number = 1; std::getline(in, line); ++number) {
        if (number == 1 && line.starts_with(byteOrderMark)) line.erase(0, byteOrderMark.size());
        if (line.ends_with('\r')) line.pop_back();
        if (base::trimmed(line).empty()) continue;
        const auto complain = [&](const std::string& problem) {
            table.problems.push_back(base::formatted("line %u: ", number) + problem);
        };
        const std::size_t tab = line.find('\t');
        const std::string text = line.substr(0, tab);
        std::string problem;
        const base::declaration declared = base::parse_declaration(text, &problem);
        if (line.find('\0') != std::string::npos) problem = "a zero byte";
        if (problem.empty()) problem = name_problem(declared.name);
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

} // namespace vldv::cli
