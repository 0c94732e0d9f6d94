#include "document/container/storable_text.h"

#include <array>
#include <span>
#include <string_view>

namespace vldv::document::storable_text {

namespace {

constexpr std::array<std::string_view, 3> closingTags = {"</var>\n", "</depends>\n", "</subimage>\n"};
/// What ends an attribute behind its quote: the tag's end in its line, or another attribute.
constexpr std::array<std::string_view, 8> attributeEnds = {">\n",        "/>\n",          " name=\"",  " blocksize=\"",
                                                           " offset=\"", " parameter=\"", " scale=\"", " units=\""};
constexpr std::array<std::string_view, 2> keyEnds = {">", "/>"};

/// Replaces every quote that one of `ends` follows.
std::string without_ending_quotes(std::string text, std::span<const std::string_view> ends)
{
    for (std::size_t at = text.find('"'); at != std::string::npos; at = text.find('"', at + 1))
        for (const std::string_view end : ends)
            if (text.compare(at + 1, end.size(), end) == 0) text[at] = '\'';
    return text;
}

} // namespace

std::string key(std::string text) { return without_ending_quotes(std::move(text), keyEnds); }

std::string attribute(std::string text) { return without_ending_quotes(std::move(text), attributeEnds); }

std::string content(std::string text)
{
    for (const std::string_view tag : closingTags) {
        std::string parted;
        std::size_t from = 0;
        for (std::size_t at = text.find(tag); at != std::string::npos; at = text.find(tag, from)) {
            parted.append(text, from, at + tag.size() - 1 - from);
            parted += ' ';
            from = at + tag.size() - 1;
        }
        if (from != 0) text = parted.append(text, from);
    }
    return text;
}

} // namespace vldv::document::storable_text
