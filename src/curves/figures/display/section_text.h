#pragma once
#include "base/VLAxis.h"
#include "curves/figures/display/section_measures.h"
#include "curves/figures/force/force_curve_stats.h"
#include "curves/figures/trend_line.h"
#include "vldv_api.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vldv::curves {

/// "marks_mode"
enum class marks_mode { verticalLines = 0, crossbar = 1, none = 2 };

/// What the marks of a section stand at. Values and positions are in the units of their axes.
struct section_marks_told {
    marks_mode mode = marks_mode::verticalLines;
    bool isRelative = true; ///< differences with their sign
    stretch_value wanted = stretch_value::length;
    bool tellsAngle = false;                    ///< in place of the height
    marked_stretch marks;                       ///< the two vertical lines, samples
    double firstValue = 0.0, secondValue = 0.0; ///< of the curve there
    bool areMeasured = true;                    ///< both
    double position = 0.0, value = 0.0;         ///< of the crossbar
    std::optional<double> rate;                 ///< lines a second, when the image tells
    std::uint32_t lineSamples = 0;              ///< of dimension 0
    int lowest = 0;                             ///< raw sample over which the integral counts
};
/// X and Y of the marks: "dX: 12 nm\tdY: 3 nm", "X: …\tY: …" or "\t", without a line end.
VLDV_INTERNAL_API std::string marks_text(std::span<const std::int16_t> curve, const VLAxis& positions,
                                         const VLAxis& values, const section_marks_told& told);

/// Slope, adhesion and areas of the valleys of a force curve, each behind a tab; empty when nothing was found.
VLDV_INTERNAL_API std::string force_text(std::span<const std::int16_t> curve, const VLAxis& positions,
                                         const VLAxis& values, const force_curve_stats& stats);
/// "A: …\tB: …\tR^2: …\tSD: …" with the slope over the positions.
VLDV_INTERNAL_API std::string trend_text(const trend_line& trend, double positionScale);

} // namespace vldv::curves
