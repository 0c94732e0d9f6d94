#include "platform/dialogs/options_file.h"

#include "base/text.h"
#include "platform/files/Exceptions.h"
#include "platform/files/text_file.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

namespace vldv::platform {

namespace {

constexpr std::uintmax_t maxFileBytes = 64u << 20; // far beyond any set of options
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// What stands between quoted pieces for what no line can hold.
constexpr std::array<std::pair<char, std::string_view>, 3> escapes = {
    {{'\n', "\"\\n\""}, {'\r', "\"\\r\""}, {'\0', "\"\\0\""}}};

std::string in_quotes(std::string_view text)
{
    std::string out = "\"";
    for (const char c : text) {
        const auto* const escape = std::ranges::find(escapes, c, &std::pair<char, std::string_view>::first);
        if (escape != escapes.end())
            out += escape->second;
        else
            out.append(c == '"' ? 2 : 1, c);
    }
    return out += '"';
}

/// Inverse of `in_quotes`; any other text stays as it is.
std::string without_quotes(std::string_view text)
{
    if (text.size() < 2 || text.front() != '"' || text.back() != '"') return std::string(text);
    std::string out;
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        if (text[i] != '"') {
            out += text[i];
            continue;
        }
        const std::string_view rest = text.substr(i);
        const auto* const escape = std::ranges::find_if(escapes, [&](const auto& each) {
            return rest.starts_with(each.second) && rest.size() > each.second.size();
        });
        if (escape != escapes.end()) {
            out += escape->first;
            i += escape->second.size() - 1;
        } else if (rest[1] == '"' && rest.size() > 2) {
            out += text[i++];
        } else {
            return std::string(text);
        }
    }
    return out;
}

/// The line up to the last ";" outside quotes.
std::string without_comment(std::string_view line)
{
    const std::string text(line);
    std::size_t end = text.size();
    // Outside quotes, so that the next search may begin behind it as at the front of a line.
    for (int from = 0, found = 0; (found = untokenized_find(text.c_str() + from, ';', 0)) >= 0; from += found + 1)
        end = static_cast<std::size_t>(from + found);
    return text.substr(0, end);
}

/// What one line says, without its end.
struct parsed_line {
    std::optional<std::string> section;
    std::optional<options_entry> entry;
};

parsed_line parse_line(std::string_view line)
{
    const std::string kept = without_comment(line);
    const std::string_view text = base::trimmed(kept);
    if (text.empty() || text.front() == ';') return {};
    if (text.size() >= 2 && text.front() == '[' && text.back() == ']')
        return {.section = without_quotes(text.substr(1, text.size() - 2)), .entry = {}};
    const std::size_t split = text.front() == '"'
                                  ? static_cast<std::size_t>(untokenized_find(std::string(text).c_str(), '=', 0))
                                  : text.find('=');
    if (split >= text.size()) return {};
    return {.section = {},
            .entry = options_entry{without_quotes(base::trimmed(text.substr(0, split))),
                                   without_quotes(base::trimmed(text.substr(split + 1)))}};
}

/// Steps through the lines of a text.
class line_reader {
public:
    explicit line_reader(std::string_view text_) : text(text_), at(text_.starts_with(byteOrderMark) ? 3 : 0) {}

    /// Takes the next line. \return false at the end
    bool next()
    {
        start = at;
        if (start == text.size()) return false;
        const std::size_t stop = std::min(text.find_first_of("\r\n", start), text.size());
        line = text.substr(start, stop - start);
        at = std::min(stop + (text.substr(stop, 2) == "\r\n" ? 2 : 1), text.size());
        lineEnd = text.substr(stop, at - stop);
        return true;
    }

    std::string_view text, line, lineEnd;
    std::size_t start = 0; ///< of the line
    std::size_t at;        ///< behind the line and its end
};

bool is_single_line(std::string_view text) { return text.find_first_of("\r\n") == std::string_view::npos; }

/// Plain as long as the reader takes it back as it is.
std::string header_line(const std::string& name)
{
    const std::string plain = "[" + name + "]";
    return is_single_line(plain) && parse_line(plain).section == name ? plain : "[" + in_quotes(name) + "]";
}

std::string entry_line(const options_entry& entry)
{
    for (const std::string& key : {entry.key, in_quotes(entry.key)}) {
        const std::string plain = key + "=" + entry.value + ";";
        const std::string safe = key + "=" + in_quotes(entry.value) + ";";
        for (const std::string& line : {plain, safe})
            if (is_single_line(line) && parse_line(line).entry == entry) return line;
    }
    return in_quotes(entry.key) + "=" + in_quotes(entry.value) + ";";
}

/// Where the lines of a section stand in a text: behind its header, up to the next one.
struct section_place {
    bool isFound = false, isHeaderEnded = true;
    std::size_t begin, end;
};

section_place find_section(std::string_view text, const std::string& name)
{
    section_place place{.begin = text.size(), .end = text.size()};
    for (line_reader lines(text); lines.next();) {
        const std::optional<std::string> found = parse_line(lines.line).section;
        if (!found) continue;
        if (place.isFound) {
            place.end = lines.start;
            break;
        }
        if (*found != name) continue;
        place.isFound = true;
        place.isHeaderEnded = !lines.lineEnd.empty();
        place.begin = lines.at;
    }
    return place;
}

std::string content_of(const std::filesystem::path& file) { return read_text_file(file, maxFileBytes); }

} // namespace

std::vector<options_section> parse_options(std::string_view text)
{
    std::vector<options_section> sections;
    for (line_reader lines(text); lines.next();) {
        parsed_line line = parse_line(lines.line);
        if (line.section)
            sections.push_back({std::move(*line.section), {}});
        else if (line.entry && !sections.empty())
            sections.back().entries.push_back(std::move(*line.entry));
    }
    return sections;
}

std::string replace_options(std::string_view text, const options_section& section)
{
    line_reader first(text);
    const std::string lineEnd(first.next() && !first.lineEnd.empty() ? first.lineEnd : "\n");
    const section_place place = find_section(text, section.name);
    std::string out(text.substr(0, place.begin));
    if (!place.isFound) {
        if (!out.empty() && out.back() != '\n' && out.back() != '\r') out += lineEnd;
        out += header_line(section.name) + lineEnd;
    } else if (!place.isHeaderEnded) {
        out += lineEnd;
    }
    out += "; This section was automatically generated" + lineEnd;
    for (const options_entry& entry : section.entries) out += entry_line(entry) + lineEnd;
    return out.append(text.substr(place.end));
}

std::vector<options_entry> read_options_file(const std::filesystem::path& file, std::string_view name)
{
    for (options_section& section : parse_options(content_of(file)))
        if (section.name == name) return std::move(section.entries);
    return {};
}

void write_options_file(const std::filesystem::path& file, const options_section& section)
{
    std::error_code error;
    const bool isThere = std::filesystem::exists(file, error) || error;
    const std::string text = replace_options(isThere ? content_of(file) : std::string(), section);
    write_text_file(file, text);
}

} // namespace vldv::platform
