#include "formats/nanoscope/nanoscope_force.h"

#include "base/text.h"
#include "base/units.h"
#include "formats/nanoscope/nanoscope_scale.h"

#include <cmath>

namespace vldv::formats {

namespace {

bool is_deflection(const nanoscope_section& section)
{
    return base::lower_ascii(nanoscope_channel(section)).find("defl") != std::string::npos;
}

/// Volts of raw 1: the hard scale counts here, for the hard value is no more than what the display was set to.
value_scale volts(const nanoscope_section& section, const nanoscope_value& hard)
{
    value_scale scale;
    if (hard.hardScale) {
        scale.step = *hard.hardScale;
        scale.units = nanoscope_units(hard.hardScaleUnits.substr(0, hard.hardScaleUnits.find("/LSB")));
        scale.origin = "hard scale of Z scale = " + base::shortest(scale.step) + " " + hard.hardScaleUnits;
    } else if (hard.value) {
        const double bytes = section.number("bytes/pixel").value_or(2.0);
        scale.step = *hard.value / std::exp2(bytes == 4.0 ? 32.0 : 16.0);
        scale.units = hard.units;
        scale.origin = "Z scale = " + base::shortest(*hard.value) + " " + hard.units;
    } else {
        scale = {std::nan(""), 0.0, "", "no number in Z scale"};
    }
    return scale;
}

/// `volts` times the sensitivity that the soft scale names; nothing when there is none.
std::optional<value_scale> with_sensitivity(const nanoscope_header& header, const nanoscope_section& section,
                                            const nanoscope_value& hard, const value_scale& volts)
{
    const std::string* line = hard.bracket.empty() ? nullptr : header.typedSetting(base::lower_ascii(hard.bracket));
    if (!line) return std::nullopt;
    nanoscope_value soft = parse_nanoscope_value(*line);
    if (!soft.value) return std::nullopt;
    const bool isAssumed = soft.units.empty() && is_deflection(section);
    if (isAssumed) soft.units = "nm/V";
    if (soft.units.empty() && *soft.value == 1.0) return std::nullopt; // the volts once more
    value_scale scale = volts;
    double factor = 1.0;
    scale.units = multiply_units(volts.units, soft.units, factor);
    scale.step *= *soft.value * factor;
    scale.origin += ", " + hard.bracket + " = " + base::shortest(*soft.value) + " " + soft.units +
                    (isAssumed ? " (unit assumed)" : "");
    return scale;
}

/// The force that bends the cantilever by `deflection`.
std::optional<value_scale> as_force(const nanoscope_section& section, const value_scale& deflection)
{
    const auto spring = section.number("spring constant");
    if (!is_usable_factor(spring) || !is_deflection(section) || units_convertable(deflection.units.c_str(), "nm") <= 0)
        return std::nullopt;
    value_scale scale = deflection;
    scale.step = convert_size(deflection.units.c_str(), "nm", deflection.step) * *spring;
    scale.units = "nN";
    scale.origin += ", Spring Constant = " + base::shortest(*spring) + " N/m";
    return scale;
}

/// Value of the line with this key, else of the first whose key begins so, in the channel's own list, else in any
/// other: newer files write "Ramp Size Zsweep" and "Ramp Begin DC Sample Bias".
const std::string* ramp_line(const nanoscope_header& header, const nanoscope_section& section, std::string_view key)
{
    if (const std::string* own = section.findTyped(key)) return own;
    for (const nanoscope_line& line : section.lines)
        if (line.typed && line.key.starts_with(key)) return &line.value;
    const auto found = header.typedSettings.lower_bound(key);
    return found != header.typedSettings.end() && found->first.starts_with(key) ? &found->second : nullptr;
}

/// A ramp setting in the units of what is driven.
value_scale ramp_value(const nanoscope_header& header, const nanoscope_section& section, std::string_view key)
{
    value_scale result{0.0, 0.0, "", ""};
    const std::string* line = ramp_line(header, section, key);
    if (!line) return result;
    const nanoscope_value hard = parse_nanoscope_value(*line);
    if (!hard.value || !std::isfinite(*hard.value)) return result;
    result.step = *hard.value;
    result.units = hard.units;
    const std::string* soft = hard.bracket.empty() ? nullptr : header.typedSetting(base::lower_ascii(hard.bracket));
    const nanoscope_value sensitivity = soft ? parse_nanoscope_value(*soft) : nanoscope_value{};
    if (!is_usable_factor(sensitivity.value)) return result;
    double factor = 1.0;
    result.units = multiply_units(hard.units, sensitivity.units, factor);
    result.step *= *sensitivity.value * factor;
    return result;
}

} // namespace

std::vector<value_scale> nanoscope_force_scales(const nanoscope_header& header, const nanoscope_section& section)
{
    const std::string* line = section.findTyped("z scale");
    if (!line) return {{1.0, 0.0, "", "no Z scale in the header"}};
    const nanoscope_value hard = parse_nanoscope_value(*line);
    std::vector<value_scale> scales{volts(section, hard)};
    if (const auto physical = with_sensitivity(header, section, hard, scales.front())) {
        scales.insert(scales.begin(), *physical);
        if (const auto force = as_force(section, *physical)) scales.insert(scales.begin(), *force);
    }
    return scales;
}

std::vector<std::string> nanoscope_force_doubts(const nanoscope_header& header, const nanoscope_section& section)
{
    std::vector<std::string> doubts;
    const std::string* line = section.findTyped("z scale");
    const nanoscope_value hard = line ? parse_nanoscope_value(*line) : nanoscope_value{};
    if (hard.statesHardScale && !hard.hardScale && hard.value)
        doubts.emplace_back("the hard scale in Z scale is no number: values follow from the hard value");
    if (std::string doubt = nanoscope_sensitivity_doubt(header, section); !doubt.empty())
        doubts.push_back(std::move(doubt));
    if (section.find("spring constant") && !is_usable_factor(section.number("spring constant")) &&
        is_deflection(section))
        doubts.emplace_back("Spring Constant is 0 or no number: values are no force");
    return doubts;
}

bool is_nanoscope_time(const nanoscope_header& header, const nanoscope_section& section)
{
    const std::string* kind = section.find("x data type");
    if (!kind) kind = header.setting("x data type"); // of the force list
    return kind && base::lower_ascii(*kind).starts_with("time");
}

bool is_nanoscope_bias(const nanoscope_header& header, const nanoscope_section& section)
{
    const std::string* channel = ramp_line(header, section, "ramp channel");
    return channel && parse_nanoscope_value(*channel).display.find("Bias") != std::string::npos;
}

std::vector<std::string> nanoscope_ramp_doubts(const nanoscope_header& header, const nanoscope_section& section)
{
    std::vector<std::string> doubts;
    if (is_nanoscope_time(header, section)) return doubts;
    const bool isBias = is_nanoscope_bias(header, section);
    const std::string* line = ramp_line(header, section, isBias ? "ramp end" : "ramp size");
    if (!line) return doubts;
    const nanoscope_value hard = parse_nanoscope_value(*line);
    const std::string* soft = hard.bracket.empty() ? nullptr : header.typedSetting(base::lower_ascii(hard.bracket));
    if (soft && !is_usable_factor(parse_nanoscope_value(*soft).value))
        doubts.push_back(hard.bracket + " is 0 or no number: the ramp is not converted with it");
    if (nanoscope_ramp(header, section, 2) == VLAxis())
        doubts.emplace_back(isBias ? "Ramp Begin and Ramp End are equal or no numbers: samples are counted"
                                   : "Ramp Size is 0 or no number: samples are counted");
    return doubts;
}

VLAxis nanoscope_ramp(const nanoscope_header& header, const nanoscope_section& section, unsigned points)
{
    if (points < 2 || is_nanoscope_time(header, section)) return {};
    if (is_nanoscope_bias(header, section)) {
        const value_scale begin = ramp_value(header, section, "ramp begin"),
                          end = ramp_value(header, section, "ramp end");
        if (begin.step == end.step) return {};
        return {begin.step, (end.step - begin.step) / (points - 1), begin.units.c_str()};
    }
    const value_scale size = ramp_value(header, section, "ramp size");
    if (size.step == 0.0) return {};
    const double length = std::fabs(size.step);
    return {length, -length / (points - 1), size.units.c_str()};
}

} // namespace vldv::formats
