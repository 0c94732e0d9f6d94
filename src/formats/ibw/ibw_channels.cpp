#include "formats/ibw/ibw_channels.h"

#include "base/text.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"

#include <cmath>

namespace vldv::formats {

namespace {

bool is_force(const ibw_wave& wave) { return wave.footer.ends_with("Force") || wave.note.contains("Indexes"); }

/// "0,1008,2015": what is no number is NaN.
std::vector<double> numbers_of(const ibw_wave& wave, const char* key)
{
    std::vector<double> numbers;
    const auto line = wave.note.find(key);
    if (line == wave.note.end()) return numbers;
    for (const std::string_view each : base::split(line->second, ','))
        if (!base::trimmed(each).empty()) numbers.push_back(lone_number(each).value_or(NAN));
    return numbers;
}

} // namespace

std::optional<double> ibw_note_number(const ibw_wave& wave, const char* key)
{
    const auto line = wave.note.find(key);
    const auto number = line == wave.note.end() ? std::nullopt : stated_number(line->second);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

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

value_scale ibw_channel_scale(const ibw_wave& wave, const std::string& channel)
{
    const value_scale own{1.0, 0.0, wave.units, "wave " + wave.name};
    if (!is_mfp3d(wave)) return own;
    const std::string key = channel + "Unit";
    if (const auto found = wave.note.find(key); found != wave.note.end())
        return {1.0, 0.0, normal_unit(found->second), key};
    if (is_force(wave) || channel.empty()) return own;
    static const struct {
        const char *begin, *units;
    } rows[] = {{"Height", "m"},     {"ZSensor", "m"}, {"Deflection", "m"}, {"Amplitude", "m"},
                {"Phase", "\u00B0"}, {"Current", "A"}, {"Frequency", "Hz"}};
    const std::string origin = "the channel's name, " + channel;
    for (const auto& row : rows)
        if (channel.starts_with(row.begin)) return {1.0, 0.0, row.units, origin};
    return {1.0, 0.0, "V", origin};
}

void add_ibw_deflection(recorded_image& image, const ibw_wave& wave, const std::string& channel,
                        const value_scale& scale)
{
    if (!channel.starts_with("Defl") || scale.units != "m") return;
    if (const auto constant = ibw_note_number(wave, "SpringConstant"); constant && *constant > 0)
        add_calibration(image, scale, {*constant, 0.0, "N", ""});
    if (const auto sensitivity = ibw_note_number(wave, "InvOLS"); sensitivity && *sensitivity > 0) // m/V
        add_calibration(image, scale, {1.0 / *sensitivity, 0.0, "V", ""});
}

/// An entry of "Indexes" that is no number, is not behind the one before it or stands behind the last point counts as
/// not written; one behind the last point ends the curve.
std::vector<ibw_segment> ibw_segments(const ibw_wave& wave, std::size_t points)
{
    constexpr std::size_t mostSegments = 1000;
    const std::vector<double> indexes = numbers_of(wave, "Indexes"), directions = numbers_of(wave, "Direction");
    std::vector<ibw_segment> segments;
    std::size_t first = 0;
    for (std::size_t i = 1; i < indexes.size() && first < points && segments.size() <= mostSegments; ++i) {
        if (!(indexes[i] >= static_cast<double>(first + 1))) continue;
        const std::size_t end =
            indexes[i] < static_cast<double>(points) ? static_cast<std::size_t>(indexes[i]) : points;
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
    if (segments.size() < 2 || segments.size() > mostSegments) return {{"", 0, points}};
    segments.back().count = points - segments.back().first; // its index is that of the last point
    return segments;
}

} // namespace vldv::formats
