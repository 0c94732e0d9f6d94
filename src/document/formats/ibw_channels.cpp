#include "document/formats/ibw_channels.h"

#include "base/text.h"
#include "document/formats/text_units.h"

#include <cmath>

namespace formats {

namespace {

bool is_force(const ibw_wave& wave) { return wave.footer.ends_with("Force") || wave.note.contains("Indexes"); }

/// "0,1008,2015": what is no number is NaN.
std::vector<double> numbers_of(const ibw_wave& wave, const char* key)
{
    std::vector<double> numbers;
    const auto line = wave.note.find(key);
    if (line == wave.note.end()) return numbers;
    for (const std::string_view each : base::split(line->second, ','))
        if (!base::trimmed(each).empty()) numbers.push_back(base::whole_number(each).value_or(NAN));
    return numbers;
}

} // namespace

bool is_mfp3d(const ibw_wave& wave)
{
    return wave.footer.ends_with("MFP3D") || wave.footer.ends_with("Force") || wave.note.contains("ImagingMode");
}

ibw_channel split_ibw_channel(const std::string& label)
{
    ibw_channel result{label, {}, scan_direction::unknown};
    const std::size_t suffix = label.rfind("Mod");
    if (suffix != std::string::npos && suffix != 0 &&
        label.find_first_not_of("0123456789", suffix + 3) == std::string::npos && suffix + 3 < label.size()) {
        result.channel = label.substr(0, suffix);
        result.suffix = label.substr(suffix);
    }
    const directed_name name = split_direction(result.channel);
    result.channel = name.channel;
    result.direction = name.direction;
    return result;
}

std::string ibw_channel_units(const ibw_wave& wave, const std::string& channel)
{
    if (!is_mfp3d(wave)) return wave.units;
    if (const auto own = wave.note.find(channel + "Unit"); own != wave.note.end()) return normal_unit(own->second);
    if (is_force(wave)) return wave.units;
    static const struct {
        const char *begin, *units;
    } rows[] = {{"Height", "m"},     {"ZSensor", "m"}, {"Deflection", "m"}, {"Amplitude", "m"},
                {"Phase", "\u00B0"}, {"Current", "A"}, {"Frequency", "Hz"}};
    for (const auto& row : rows)
        if (channel.starts_with(row.begin)) return row.units;
    return channel.empty() ? wave.units : "V";
}

std::vector<ibw_segment> ibw_segments(const ibw_wave& wave, std::size_t points)
{
    const std::vector<double> indexes = numbers_of(wave, "Indexes"), directions = numbers_of(wave, "Direction");
    std::vector<ibw_segment> segments;
    std::size_t first = 0;
    for (std::size_t i = 1; i < indexes.size(); ++i) {
        const bool isLast = i + 1 == indexes.size();
        const bool isIn = indexes[i] > static_cast<double>(first) && indexes[i] <= static_cast<double>(points);
        if (!isIn && !isLast) return {{"", 0, points}};
        const std::size_t end = isLast ? points : static_cast<std::size_t>(indexes[i]);
        const double direction = i < directions.size() ? directions[i] : NAN; // the first entry stands for no segment
        const char* name = direction == 1    ? "Approach"
                           : direction == -1 ? "Retract"
                           : direction == 0  ? "Dwell"
                                             : "Segment";
        std::size_t same = 1;
        for (const ibw_segment& each : segments) same += each.name.starts_with(name) ? 1 : 0;
        segments.push_back({same > 1 ? name + (" " + std::to_string(same)) : name, first, end - first});
        first = end;
    }
    if (segments.size() < 2 || segments.size() > 1000 || segments.back().count == 0) return {{"", 0, points}};
    return segments;
}

} // namespace formats
