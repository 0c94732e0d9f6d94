#include "formats/nid/nid_header.h"

#include "base/text.h"
#include "formats/shared/file_start.h"
#include "formats/shared/header_text.h"
#include "formats/shared/stated_number.h"
#include "formats/text/text_lines.h"

#include <algorithm>
#include <limits>

namespace vldv::formats {

namespace {

constexpr std::string_view firstSection = "[DataSet]";
constexpr std::string_view endMark = "\r\n\r\n#!";
constexpr std::uint64_t longestHeader = 64u << 20;

} // namespace

const std::string* nid_section::find(std::string_view key) const noexcept
{
    const auto found = std::ranges::find_if(entries, [&](const auto& entry) { return entry.first == key; });
    return found == entries.end() ? nullptr : &found->second;
}

std::string nid_section::text(std::string_view key) const
{
    const std::string* value = find(key);
    return value ? std::string(base::trimmed(*value)) : std::string();
}

std::optional<double> nid_section::number(std::string_view key) const
{
    const std::string* value = find(key);
    return value ? lone_number(*value) : std::nullopt;
}

std::optional<unsigned> nid_section::count(std::string_view key) const
{
    const std::string* value = find(key);
    const auto number = value ? stated_count(*value, std::numeric_limits<unsigned>::max()) : std::nullopt;
    return number ? std::optional(static_cast<unsigned>(*number)) : std::nullopt;
}

const nid_section* nid_header::find(std::string_view name) const
{
    const auto found = sections.find(name);
    return found == sections.end() ? nullptr : &found->second;
}

bool is_nid_header(std::string_view head) noexcept
{
    return head.starts_with(firstSection) && head.substr(firstSection.size()).starts_with("\r\n");
}

base::read_result<nid_header> read_nid_header(source& file)
{
    if (!is_nid_header(read_start(file, 64))) return base::read_error{0, "not a Nanosurf header"};
    const auto text = read_text_before(file, endMark, longestHeader);
    if (!text) return text.error();
    nid_header header;
    header.dataStart = text->size() + endMark.size();
    nid_section ignored;
    nid_section* section = &ignored;
    line_cursor lines(*text);
    std::string_view line;
    while (lines.next(line)) {
        if (line.starts_with('[') && line.ends_with(']')) {
            const auto [entry, isNew] = header.sections.try_emplace(header_text(line.substr(1, line.size() - 2)));
            section = isNew ? &entry->second : &ignored;
        } else if (const std::size_t equals = line.find('=');
                   equals != std::string_view::npos && !line.starts_with("--")) {
            section->entries.emplace_back(header_text(line.substr(0, equals)), header_text(line.substr(equals + 1)));
        }
    }
    return header;
}

} // namespace vldv::formats
