#include "base/text.h"
#include "base/variables/declaration.h"
#include "base/variables/expression.h"

#include <algorithm>

namespace vldv::base {

namespace {

/// "1:Name" of a numbered list, or a name that is key and label.
declared_item item_of(std::string_view text)
{
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || !whole_integer(text.substr(0, colon)))
        return {std::string(text), std::string(text)};
    return {std::string(trimmed(text.substr(0, colon))), std::string(text.substr(colon + 1))};
}

/// Position of the ")" behind which a comma and another "(" come, blanks between them allowed.
std::size_t end_of_enclosed(std::string_view text)
{
    for (std::size_t at = text.find(')'); at != std::string_view::npos; at = text.find(')', at + 1)) {
        const std::string_view behind = trimmed(text.substr(at + 1));
        if (behind.starts_with(',') && trimmed(behind.substr(1)).starts_with('(')) return at;
    }
    return std::string_view::npos;
}

} // namespace

std::vector<declared_item> supplied_items(const declared_item& item)
{
    const auto rule = expression::compile(item.key);
    const auto result = rule ? rule->evaluate({}) : std::nullopt;
    std::vector<declared_item> items;
    if (!result) return items;
    const std::string supplied = result->asText();
    std::string_view rest = trimmed(supplied);
    while (!rest.empty()) {
        // Names may hold commas and parentheses, so that an item in parentheses ends only before the next one.
        const bool enclosed = rest.starts_with('(');
        const std::size_t end = std::min(enclosed ? end_of_enclosed(rest) : rest.find(','), rest.size());
        std::string_view text = rest.substr(0, end);
        if (enclosed) {
            text.remove_prefix(1);
            if (end == rest.size() && text.ends_with(')')) text.remove_suffix(1);
        }
        items.push_back(item_of(trimmed(text)));
        const std::size_t comma = rest.find(',', end);
        rest = comma == std::string_view::npos ? std::string_view() : trimmed(rest.substr(comma + 1));
    }
    return items;
}

} // namespace vldv::base
