#include "curves/figures/force/force_analysis.h"

#include "base/text.h"
#include "base/units.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/physical.h"

#include <algorithm>
#include <cmath>

namespace vldv::curves {

namespace {

std::string per(const char* values, const char* x) { return std::string(*values ? values : "1") + "/" + x; }

/// Over evenly spaced samples.
void analyse_samples(const force_samples& curve, const std::vector<double>& y, const force_search& search,
                     force_analysis& out)
{
    const int n = static_cast<int>(y.size());
    get_force_curve_stats(y.data(), n, search.zeroThreshold, search.slantThreshold, out.stats, curve.gaps);
    find_loc_fmin(y.data(), n, out.stats, search.window);
    get_force_curve_valleys(y.data(), n, out.stats);
    for (std::uint32_t k = 0; k < out.stats.valley_count; ++k)
        out.areas.push_back(valley_area(curve.raw.data(), {curve.values.scale, curve.values.start}, curve.x.scale,
                                        out.stats, out.stats.valleys[k]));
    out.slope = force_slope(out.stats, curve.x.scale);
    out.lowest = force_minimum(y.data(), out.stats);
}

/// Over measured positions.
void analyse_places(const std::vector<double>& x, const std::vector<double>& y, const std::vector<bool>& gaps,
                    const force_search& search, force_analysis& out)
{
    const int n = static_cast<int>(y.size());
    out.way = way_of_positions(x.data(), n);
    get_parametric_curve_stats(x.data(), y.data(), n, search.slantThreshold, search.zeroThreshold, out.stats, gaps);
    find_loc_fmin(y.data(), n, out.stats, search.window, x.data());
    get_force_curve_valleys(y.data(), n, out.stats, x.data());
    for (std::uint32_t k = 0; k < out.stats.valley_count; ++k)
        out.areas.push_back(valley_area_over(x.data(), y.data(), out.stats, out.stats.valleys[k]));
    out.slope = force_slope(out.stats, 1.0);
    out.lowest = force_minimum(y.data(), out.stats, x.data());
}

} // namespace

void count_from_begin(int first, bool runsOverSamples, force_curve_stats& stats)
{
    for (std::int32_t* const each :
         {&stats.slant_first, &stats.slant_last, &stats.zero_first, &stats.zero_last, &stats.min_index})
        *each += first;
    if (!stats.hasSlant()) stats.slant_first = stats.slant_last = 0;
    for (std::int32_t& each : stats.local_minima) each += first;
    for (std::uint32_t k = 0; k < stats.valley_count; ++k)
        stats.valleys[k] = {stats.valleys[k].first + first, stats.valleys[k].second + first};
    if (!runsOverSamples) return;
    // a + b (i - first) = (a - b first) + b i.
    stats.slant_a -= stats.slant_b * first;
    stats.zero_a -= stats.zero_b * first;
}

force_analysis analyse_force(const force_samples& curve, const force_search& search)
{
    force_analysis out;
    if (curve.raw.empty()) return out;
    const std::vector<double> y = physical_values(curve.raw, curve.values);
    if (curve.places.empty())
        analyse_samples(curve, y, search, out);
    else
        analyse_places(physical_values(curve.places, curve.x), y, curve.gaps, search, out);
    if (!out.stats.hasSlant() || !std::isfinite(*out.slope)) out.slope.reset();
    if (out.stats.hasZero()) out.minimum = out.lowest;
    if (curve.first != 0) count_from_begin(static_cast<int>(curve.first), curve.places.empty(), out.stats);
    return out;
}

std::string slope_units(const char* values, const VLAxis& x)
{
    if (*x.get_units()) return per(values, x.get_units());
    return per(values, x == VLAxis() ? "sample" : "x");
}

const char* slope_name(const char* xUnits) noexcept
{
    if (units_convertable(xUnits, "m") > 0) return "dF/dZ";
    return units_convertable(xUnits, "s") > 0 ? "dF/dt" : "dF/dX";
}

bool is_held_part(const char* name)
{
    const std::string text = base::lower_ascii(name ? name : "");
    return std::ranges::any_of(std::initializer_list<const char*>{"pause", "dwell", "hold", "modulation"},
                               [&](const char* word) { return text.find(word) != std::string::npos; });
}

} // namespace vldv::curves
