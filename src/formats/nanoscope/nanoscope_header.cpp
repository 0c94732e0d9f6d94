#include "formats/nanoscope/nanoscope_header.h"
#include "formats/shared/stated_number.h"

#include "base/text.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

/// Header texts are Latin-1; software of later years also wrote UTF-8.
/// Control characters come from damage alone and would not survive in the native container; they become blanks.
std::string to_utf8(std::string_view text)
{
    std::string utf8 = base::is_utf8(text) ? std::string(text) : base::latin1_to_utf8(text);
    for (char& c : utf8)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    return utf8;
}

std::string without_blanks(std::string_view text)
{
    std::string out(text);
    std::erase(out, ' ');
    return out;
}

nanoscope_list kind_of(std::string_view name)
{
    if (name.ends_with("image list"))
        return name.find("force") == std::string_view::npos ? nanoscope_list::image : nanoscope_list::force_image;
    const std::string bare = without_blanks(name);
    const bool isScan = bare == "ciaoscanlist" || bare == "afmlist" || bare == "stmlist" || bare == "ncafmlist";
    return isScan ? nanoscope_list::scan : nanoscope_list::other;
}

/// Takes one line up to CR or LF from the front of `text`, with all line ends behind it.
std::string_view take_line(std::string_view& text) noexcept
{
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    const std::size_t next = text.find_first_not_of("\r\n", line.size());
    text.remove_prefix(std::min(next, text.size()));
    return line;
}

/// "@2:Z scale" begins with a group number; the first colon behind it ends the name.
std::size_t group_length(std::string_view name) noexcept
{
    if (!name.starts_with('@')) return 0;
    const std::size_t digitsEnd = std::min(name.find_first_not_of("0123456789", 1), name.size());
    const bool hasGroup = digitsEnd > 1 && digitsEnd < name.size() && name[digitsEnd] == ':';
    return hasGroup ? digitsEnd + 1 : 1;
}

/// Nothing for a line without a colon.
std::optional<nanoscope_line> parse_line(std::string_view text)
{
    const std::size_t group = group_length(text);
    const std::size_t colon = text.find(':', group);
    if (colon == std::string_view::npos) return std::nullopt;
    nanoscope_line line;
    line.name = to_utf8(base::trimmed(text.substr(0, colon)));
    line.key = base::lower_ascii(base::trimmed(text.substr(group, colon - group)));
    line.value = to_utf8(base::trimmed(text.substr(colon + 1)));
    line.typed = group != 0;
    if (line.key.empty()) return std::nullopt;
    return line;
}

const std::string* find_line(const std::vector<nanoscope_line>& lines, std::string_view key, bool typed) noexcept
{
    const auto found = std::find_if(lines.begin(), lines.end(),
                                    [&](const nanoscope_line& line) { return line.typed == typed && line.key == key; });
    return found == lines.end() ? nullptr : &found->value;
}

std::optional<double> leading(const std::string* text) { return text ? stated_number(*text) : std::nullopt; }

void index_settings(nanoscope_header& header, nanoscope_list kind)
{
    for (const nanoscope_section& section : header.sections) {
        if (section.kind != kind) continue;
        for (const nanoscope_line& line : section.lines)
            (line.typed ? header.typedSettings : header.settings).emplace(line.key, line.value);
    }
}

} // namespace

const std::string* nanoscope_section::find(std::string_view key) const noexcept { return find_line(lines, key, false); }

const std::string* nanoscope_section::findTyped(std::string_view key) const noexcept
{
    return find_line(lines, key, true);
}

std::optional<double> nanoscope_section::number(std::string_view key) const { return leading(find(key)); }

std::uint32_t nanoscope_header::version() const noexcept
{
    const std::string* text = setting("version");
    const auto number = text ? base::whole_integer(*text) : std::nullopt;
    return number && *number > 0 && *number <= 0xFFFFFFFFll ? static_cast<std::uint32_t>(*number) : 0;
}

std::optional<std::uint64_t> nanoscope_header::length() const
{
    const std::string* text = sections.empty() ? nullptr : sections.front().find("data length");
    return text ? leading_count(*text) : std::nullopt;
}

const std::string* nanoscope_header::setting(std::string_view key) const noexcept
{
    const auto found = settings.find(key);
    return found == settings.end() ? nullptr : &found->second;
}

std::optional<double> nanoscope_header::settingNumber(std::string_view key) const { return leading(setting(key)); }

const std::string* nanoscope_header::typedSetting(std::string_view key) const noexcept
{
    const auto found = typedSettings.find(key);
    return found == typedSettings.end() ? nullptr : &found->second;
}

const nanoscope_section* nanoscope_header::section(std::string_view name) const noexcept
{
    const auto found = std::find_if(sections.begin(), sections.end(),
                                    [&](const nanoscope_section& section) { return section.name == name; });
    return found == sections.end() ? nullptr : &*found;
}

std::size_t nanoscope_header::count(nanoscope_list kind) const noexcept
{
    return static_cast<std::size_t>(
        std::count_if(sections.begin(), sections.end(), [&](const auto& section) { return section.kind == kind; }));
}

nanoscope_header parse_nanoscope_header(std::string_view text)
{
    nanoscope_header header;
    std::string_view rest = text.substr(0, text.find('\x1A'));
    bool ended = false;
    while (!rest.empty() && !ended) {
        const std::string_view line = take_line(rest);
        const bool marked = line.starts_with('\\') || line.starts_with('?'); // "?" in the text variant
        if (marked && line.substr(1).starts_with('*')) {
            nanoscope_section section;
            section.name = base::lower_ascii(base::trimmed(line.substr(2)));
            section.kind = kind_of(section.name);
            ended = section.name.ends_with("list end");
            if (!ended) header.sections.push_back(std::move(section));
        } else if (line.starts_with('\\') && !header.sections.empty()) {
            if (auto parsed = parse_line(line.substr(1))) header.sections.back().lines.push_back(std::move(*parsed));
        }
    }
    header.textLength = static_cast<std::size_t>(rest.data() - text.data());
    index_settings(header, nanoscope_list::scan);
    index_settings(header, nanoscope_list::other);
    return header;
}

std::optional<std::uint64_t> leading_count(std::string_view text)
{
    constexpr double exactLimit = 9007199254740992.0; // 2^53
    const auto number = stated_number(text);
    if (!number || !(*number >= 0.0 && *number <= exactLimit) || *number != std::floor(*number)) return std::nullopt;
    return static_cast<std::uint64_t>(*number);
}

} // namespace vldv::formats
