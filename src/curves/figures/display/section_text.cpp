#include "curves/figures/display/section_text.h"

#include "base/text.h"
#include "base/units.h"
#include "curves/figures/force/force_analysis.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/physical.h"

#include <cmath>
#include <numbers>

namespace vldv::curves {

namespace {

/// "dX: 1.5 nm" in the unit in which it reads well.
std::string told(const char* name, double value, const char* units, bool isHeight)
{
    const char* const best = isHeight ? default_units_z(units, &value) : default_units(units, &value);
    return base::formatted("%s: %G %s", name, value + 0.0, best); // 0 has no sign
}

std::string told(const char* name, const quantity& what)
{
    return base::formatted("%s: %G %s", name, what.value + 0.0, what.units.c_str());
}

std::string distance_text(std::span<const std::int16_t> curve, const VLAxis& positions, const VLAxis& values,
                          const section_marks_told& of)
{
    const double dx = (of.marks.second - of.marks.first) * positions.scale;
    const auto length = [&] { return told("dX", of.isRelative ? dx : std::fabs(dx), positions.get_units(), false); };
    switch (of.wanted) {
    case stretch_value::fullLength:
        if (const auto arc = arc_length(curve, of.marks, positions, values))
            return told("dL", arc->value, arc->units.c_str(), false);
        return length();
    case stretch_value::integral:
        return told("dI", area_over_level(curve, of.marks, of.lowest, positions, values));
    case stretch_value::chordArea:
        return told("dS", area_over_chord(curve, of.marks, positions, values));
    case stretch_value::time:
        if (!of.rate || *of.rate == 0.0) return {};
        return base::formatted("Time: %G ms", stretch_time(of.marks, *of.rate, of.lineSamples));
    case stretch_value::length:
        break;
    }
    return length();
}

std::string height_text(const VLAxis& positions, const VLAxis& values, const section_marks_told& of)
{
    const auto shown = [&of](double difference) { return of.isRelative ? difference : std::fabs(difference); };
    if (!of.areMeasured) return of.tellsAngle ? "Angle: not measured" : "dY: not measured";
    const double dy = shown(of.secondValue - of.firstValue);
    if (!of.tellsAngle) return told("dY", dy, values.get_units(), true);
    if (units_convertable(values.get_units(), positions.get_units()) <= 0) return "Angle: 0 deg";
    constexpr double least = 1e-14;
    double dx = shown((of.marks.second - of.marks.first) * positions.scale);
    if (std::fabs(dx) < least) dx = 1.0;
    const double rise = convert_size(values.get_units(), positions.get_units(), dy);
    return base::formatted("Angle: %G deg", std::atan(rise / dx) * 180.0 / std::numbers::pi);
}

} // namespace

std::string marks_text(std::span<const std::int16_t> curve, const VLAxis& positions, const VLAxis& values,
                       const section_marks_told& of)
{
    switch (of.mode) {
    case marks_mode::verticalLines:
        return distance_text(curve, positions, values, of) + '\t' + height_text(positions, values, of);
    case marks_mode::crossbar:
        return told("X", of.position, positions.get_units(), false) + '\t' +
               told("Y", of.value, values.get_units(), true);
    case marks_mode::none:
        break;
    }
    return "\t";
}

std::string force_text(std::span<const std::int16_t> curve, const VLAxis& positions, const VLAxis& values,
                       const force_curve_stats& stats)
{
    std::string text;
    if (stats.hasSlant()) {
        const double scale = positions.scale == 0.0 ? 1.0 : positions.scale;
        text += base::formatted("\t%s: %G %s", slope_name(positions.get_units()), force_slope(stats, scale),
                                slope_units(values.get_units(), positions).c_str());
    }
    if (stats.hasZero() && !curve.empty()) {
        const double lowest = curve[static_cast<std::size_t>(stats.min_index)] * values.scale + values.start;
        text += '\t' + told("Fmin", lowest - stats.zeroAt(stats.min_index), values.get_units(), true) + '\t';
    }
    for (std::uint32_t i = 0; i < stats.valley_count; ++i)
        text += base::formatted(
            "\tS%u: %G %sx%s", i + 1,
            valley_area(curve.data(), {values.scale, values.start}, positions.scale, stats, stats.valleys[i]),
            values.get_units(), positions.get_units());
    return text;
}

std::string trend_text(const trend_line& trend, double positionScale)
{
    const double slope = positionScale == 0.0 ? trend.line.B : trend.line.B / positionScale;
    return base::formatted("A: %G\tB: %G\tR^2: %G\tSD: %G", trend.line.A, slope, trend.r2, trend.sd);
}

} // namespace vldv::curves
