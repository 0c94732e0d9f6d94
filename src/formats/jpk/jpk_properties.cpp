#include "formats/jpk/jpk_properties.h"

#include "base/text.h"
#include "formats/shared/header_text.h"
#include "formats/shared/stated_number.h"

#include <vector>

namespace vldv::formats {

namespace {

void append_utf16(std::string& out, unsigned code)
{
    const char bytes[] = {static_cast<char>(code & 0xFF), static_cast<char>(code >> 8)};
    out += base::utf16_to_utf8({bytes, 2}, false);
}

/// Resolves `\:`, `\=`, `\n` and `\u00B5`; other bytes are Latin-1.
std::string unescaped(std::string_view text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += base::latin1_to_utf8(text.substr(i, 1));
            continue;
        }
        const char next = text[++i];
        const auto code = next == 'u' && text.size() - i > 4
                              ? base::whole_integer("0x" + std::string(text.substr(i + 1, 4)))
                              : std::nullopt;
        if (code) {
            append_utf16(out, static_cast<unsigned>(*code));
            i += 4;
        } else {
            out += next == 'n' || next == 't' || next == 'r' ? ' ' : next;
        }
    }
    return clean_text(out);
}

/// Most lines hold neither escapes nor letters beyond ASCII.
std::string plain_or_unescaped(std::string_view text)
{
    for (const char c : text)
        if (c == '\\' || static_cast<unsigned char>(c) >= 0x80 || static_cast<unsigned char>(c) < 0x20)
            return unescaped(text);
    return std::string(base::trimmed(text));
}

/// The first "=" that no backslash precedes.
std::size_t separator(std::string_view line)
{
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\\')
            ++i;
        else if (line[i] == '=')
            return i;
    }
    return std::string_view::npos;
}

} // namespace

jpk_properties::jpk_properties(std::string_view text)
{
    for (const std::string_view each : base::split(text, '\n')) {
        const std::string_view line = base::trimmed(each);
        const std::size_t equals = separator(line);
        if (line.starts_with('#') || line.starts_with('!') || equals == std::string_view::npos) continue;
        lines.emplace(plain_or_unescaped(line.substr(0, equals)), plain_or_unescaped(line.substr(equals + 1)));
    }
}

const std::string& jpk_properties::value(const std::string& key) const
{
    static const std::string none;
    const auto found = lines.find(key);
    return found == lines.end() ? none : found->second;
}

std::optional<double> jpk_properties::number(const std::string& key) const { return lone_number(value(key)); }

void jpk_properties::resolve(const jpk_properties& shared)
{
    constexpr std::string_view mark = ".*";
    constexpr std::size_t maxLines = 20000; // references may name the same lines again and again
    std::vector<std::pair<std::string, std::string>> added;
    for (const auto& [key, number] : lines) {
        if (!std::string_view(key).ends_with(mark)) continue;
        const std::string reference = key.substr(0, key.size() - mark.size());
        const std::size_t dot = reference.rfind('.'), nameAt = dot == std::string::npos ? 0 : dot + 1;
        const std::string name = reference.substr(nameAt), from = name + "." + number + ".";
        // Without a place in front the name tells it: what "force-segment-header-info" holds is of
        // "force-segment-header".
        constexpr std::string_view ending = "-info";
        std::string to = reference.substr(0, nameAt);
        if (to.empty() && name.ends_with(ending)) to = name.substr(0, name.size() - ending.size()) + ".";
        for (auto line = shared.lines.lower_bound(from); line != shared.lines.end() && line->first.starts_with(from);
             ++line)
            if (added.size() < maxLines) added.emplace_back(to + line->first.substr(from.size()), line->second);
    }
    for (auto& [key, text] : added) lines.emplace(std::move(key), std::move(text));
}

} // namespace vldv::formats
