#include "base/declaration.h"
#include "base/expression.h"
#include "base/text.h"

#include <algorithm>

namespace base {

namespace {

/// "1:Name" of a numbered list, or a name that is key and label.
declared_item item_of(std::string_view text)
{
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || !whole_integer(text.substr(0, colon)))
        return {std::string(text), std::string(text)};
    return {std::string(trimmed(text.substr(0, colon))), std::string(text.substr(colon + 1))};
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
        const std::size_t end = std::min(enclosed ? rest.find("),(") : rest.find(','), rest.size());
        std::string_view text = rest.substr(0, end);
        if (enclosed) {
            text.remove_prefix(1);
            if (end == rest.size() && text.ends_with(')')) text.remove_suffix(1);
        }
        items.push_back(item_of(trimmed(text)));
        rest = trimmed(rest.substr(std::min(end + (enclosed ? 2 : 1), rest.size())));
    }
    return items;
}

} // namespace base
