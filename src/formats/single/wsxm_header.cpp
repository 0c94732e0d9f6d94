#include "formats/single/wsxm_header.h"

#include "base/text.h"
#include "formats/shared/header_text.h"
#include "formats/shared/stated_number.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

const std::string& wsxm_header::value(const std::string& section, const std::string& label) const
{
    static const std::string none;
    const auto found = lines.find(section + "." + label);
    return found == lines.end() ? none : found->second;
}

std::uint64_t wsxm_header::count(const std::string& section, const std::string& label, std::uint64_t most) const
{
    return stated_count(value(section, label), most).value_or(0);
}

std::optional<quantity> wsxm_header::measure(const std::string& section, const std::string& label) const
{
    const std::string& text = value(section, label);
    if (text.empty()) return std::nullopt;
    return wsxm_quantity(text) ? stated_quantity(text) : quantity{std::nan(""), {}};
}

std::optional<quantity> wsxm_quantity(std::string text)
{
    if (text.find('.') == std::string::npos && std::ranges::count(text, ',') == 1) std::ranges::replace(text, ',', '.');
    std::string_view units;
    const auto number = stated_number(text, &units);
    return number ? std::optional(quantity{*number, normal_unit(units)}) : std::nullopt;
}

base::read_result<wsxm_header> read_wsxm_header(source& file)
{
    constexpr std::uint64_t maxHeaderBytes = 1u << 20;
    constexpr std::string_view endMark = "[Header end]";
    std::string text(static_cast<std::size_t>(std::min(file.size(), maxHeaderBytes)), '\0');
    if (!file.read(0, std::as_writable_bytes(std::span(text)))) return base::read_error{0, "header cannot be read"};
    const std::size_t mark = text.find(endMark);
    if (mark == std::string::npos) return base::read_error{text.size(), "the line [Header end] is missing"};
    wsxm_header header;
    // Right behind the line: programs write wrong numbers for "Image header size".
    header.end = mark + endMark.size();
    if (header.end < text.size() && text[header.end] == '\r') ++header.end;
    if (header.end < text.size() && text[header.end] == '\n') ++header.end;
    std::string section;
    std::size_t number = 0;
    for (const std::string_view each : base::split(std::string_view(text).substr(0, mark), '\n')) {
        const std::string line = header_text(each);
        if (++number == 2) header.kind = line;
        const std::size_t colon = line.find(':');
        if (line.starts_with('[') && line.ends_with(']'))
            section = line.substr(1, line.size() - 2);
        else if (colon != std::string::npos && number > 2)
            header.lines.emplace(section + "." + std::string(base::trimmed(std::string_view(line).substr(0, colon))),
                                 base::trimmed(std::string_view(line).substr(colon + 1)));
    }
    return header;
}

} // namespace vldv::formats
