#include "base/text/text_list.h"

#include "base/text.h"

namespace vldv::base {

namespace {

/// Reads the entry at the front and removes it with its comma.
std::string take_entry(std::string_view& text)
{
    text = trimmed(text);
    std::string entry;
    std::size_t i = 0;
    if (text.starts_with('"')) {
        for (i = 1; i < text.size() && text[i] != '"'; ++i) {
            const bool escapes = text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == '"' || text[i + 1] == '\\');
            entry += text[escapes ? ++i : i];
        }
    } else {
        entry = trimmed(text.substr(0, text.find(',')));
    }
    const std::size_t comma = text.find(',', i);
    text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    return entry;
}

} // namespace

std::vector<std::string> parse_list(std::string_view text)
{
    std::vector<std::string> entries;
    while (!trimmed(text).empty()) entries.push_back(take_entry(text));
    return entries;
}

std::string write_list(const std::vector<std::string>& entries)
{
    std::string out;
    for (const std::string& entry : entries) {
        if (!out.empty()) out += ',';
        out += '"';
        for (const char c : entry) {
            if (c == '"' || c == '\\') out += '\\';
            out += c;
        }
        out += '"';
    }
    return out;
}

std::optional<std::string> list_entry(std::string_view text, std::size_t index)
{
    for (std::size_t i = 0; !trimmed(text).empty(); ++i) {
        std::string entry = take_entry(text);
        if (i == index) return entry;
    }
    return std::nullopt;
}

} // namespace vldv::base
