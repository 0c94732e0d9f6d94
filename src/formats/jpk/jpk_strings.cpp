#include "formats/jpk/jpk_strings.h"

#include "base/text.h"
#include "formats/shared/header_text.h"

namespace vldv::formats {

namespace {

using string_table = std::map<std::string, std::string>;

/// The archive's start, else that of its first segment; may be empty.
std::string date_of(const jpk_archive& archive)
{
    for (const char* key : {"force-scan-series.header.start-time", "force-scan-map.start-time",
                            "quantitative-imaging-map.start-time", "quantitative-imaging-series.start-time"})
        if (const std::string& date = archive.header.value(key); !date.empty()) return date;
    return archive.segments.empty() ? std::string() : archive.segments.front().value("force-segment-header.time-stamp");
}

/// Lines of a segment that are not those of another channel.
string_table lines_for(const jpk_properties& segment, const std::string& channel)
{
    constexpr std::size_t most = 1000, longest = 1000;
    const std::string own = "channel." + channel + ".";
    string_table lines;
    for (const auto& [key, text] : segment.all()) {
        const bool isOther = (key.starts_with("channel.") && !key.starts_with(own)) || key == "channels.list";
        if (!isOther && !text.empty() && text.size() <= longest && lines.size() < most) lines.emplace(key, text);
    }
    return lines;
}

/// Sensitivity and spring constant from the conversions of the deflection: the channel of that name, or what is shown
/// as a force.
void add_cantilever(const jpk_channel_parts& parts, string_table& strings)
{
    const value_scale *distance = parts.first->slotIn("m"), *force = parts.first->slotIn("N");
    const bool isDeflection = parts.name.find("eflection") != std::string::npos || parts.units == "N";
    if (!distance || !isDeflection) return;
    strings.emplace("Sensitivity", base::general(distance->step) + " m/V");
    if (force && distance->step != 0.0)
        strings.emplace("Spring Constant", base::general(force->step / distance->step) + " N/m");
}

} // namespace

string_table jpk_document_strings(const jpk_archive& archive)
{
    constexpr std::size_t mostShared = 2000;
    string_table strings;
    for (const auto& [key, text] : archive.header.all())
        if (!text.empty()) strings.emplace(key, text);
    std::size_t sharedLines = 0;
    for (const auto& [key, text] : archive.shared.all())
        if (!text.empty() && sharedLines++ < mostShared) strings.emplace(key, text);
    if (const std::string date = date_of(archive); !date.empty()) strings.emplace("\\Date", date);
    if (!archive.places.empty()) strings.emplace("Curve places, m", archive.places);
    return strings;
}

void add_jpk_strings(const jpk_archive& archive, const jpk_channel_parts& parts, string_table& strings)
{
    add_cantilever(parts, strings);
    if (const std::string date = date_of(archive); !date.empty()) strings.emplace("\\Date", date);
    for (const jpk_properties& segment : archive.segments) join_strings(strings, lines_for(segment, parts.name));
}

} // namespace vldv::formats
