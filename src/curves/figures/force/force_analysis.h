#pragma once
#include "base/VLAxis.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/force/force_curve_stats.h"
#include "vldv_api.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vldv::curves {

/// A force curve as it is analysed, contact first: the raw samples from the first to the last that was measured.
struct force_samples {
    std::span<const std::int16_t> raw;
    VLAxis values;                        ///< of the samples
    std::span<const std::int16_t> places; ///< as many samples of the parameter stream; empty without one
    VLAxis x;                             ///< of `places`, else along the curve
    std::size_t first = 0;                ///< number of the first in the curve
    std::vector<bool> gaps{};             ///< which of them were not measured; empty for none
};

/// Thresholds as of `get_force_curve_stats`, and samples on either side of a local minimum.
struct force_search {
    double zeroThreshold = 1.0, slantThreshold = 1.0;
    int window = 100;
};

/// Everything that the analysis says of a curve, whose samples are numbered from its own beginning.
struct force_analysis {
    force_curve_stats stats;       ///< lines over the position of a parameter stream, else over the samples' numbers
    std::optional<double> slope;   ///< of the contact against the zero line; nothing without contact
    std::optional<double> minimum; ///< smallest value above the zero line; nothing without that line
    double lowest = 0.0;           ///< the same, above 0 where there is no line
    std::vector<double> areas;     ///< of the valleys, in values times x
    position_way way = position_way::travels; ///< of the parameter stream: of any other no lines were looked for
};

/// Analyses a curve over its parameter stream where it has one, else over its axis. \throws std::bad_alloc
VLDV_INTERNAL_API force_analysis analyse_force(const force_samples& curve, const force_search& search = {});

/// Numbers the samples of a part of a curve, whose first is number `first`, by their places in the whole curve.
/// \param runsOverSamples  the lines count samples, too, and not positions
void count_from_begin(int first, bool runsOverSamples, force_curve_stats& stats);

/// "nN/nm"; what is measured against mere numbers counts for a sample, "nN/sample", or for a step of an unnamed x,
/// "nN/x". Never ends in "/". \param x  the axis or parameter stream
VLDV_INTERNAL_API std::string slope_units(const char* values, const VLAxis& x);
/// "dF/dZ" over a length, "dF/dt" over a time, else "dF/dX".
VLDV_INTERNAL_API const char* slope_name(const char* xUnits) noexcept;

/// True for the name of a part in which the probe is held: "Pause", "Dwell 2", "Hold", "Modulation".
VLDV_INTERNAL_API bool is_held_part(const char* name);

} // namespace vldv::curves
