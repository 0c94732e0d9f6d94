#include "curves/force_analysis.h"

#include "base/text.h"
#include "base/units.h"
#include "curves/force_curve.h"
#include "curves/physical.h"

#include <algorithm>
#include <cmath>

namespace curves {

namespace {

std::string per(const char* values, const char* x) { return std::string(*values ? values : "1") + "/" + x; }

/// Over evenly spaced samples.
void analyse_samples(const force_samples& curve, const std::vector<double>& y, const force_search& search,
                     force_analysis& out)
{
    const int n = static_cast<int>(y.size());
    get_force_curve_stats(y.data(), n, search.zeroThreshold, search.slantThreshold, out.stats);
    find_loc_fmin(y.data(), n, out.stats, search.window);
    get_force_curve_valleys(y.data(), n, out.stats);
    for (std::uint32_t k = 0; k < out.stats.valley_count; ++k)
        out.areas.push_back(valley_area(curve.raw.data(), {curve.values.scale, curve.values.start}, curve.x.scale,
                                        out.stats, out.stats.valleys[k]));
    out.slope = force_slope(out.stats, curve.x.scale);
    out.lowest = force_minimum(y.data(), out.stats);
}

/// Over measured positions.
void analyse_places(const std::vector<double>& x, const std::vector<double>& y, const force_search& search,
                    force_analysis& out)
{
    const int n = static_cast<int>(y.size());
    out.way = way_of_positions(x.data(), n);
    get_parametric_curve_stats(x.data(), y.data(), n, search.slantThreshold, search.zeroThreshold, out.stats);
    find_loc_fmin(y.data(), n, out.stats, search.window, x.data());
    get_force_curve_valleys(y.data(), n, out.stats, x.data());
    for (std::uint32_t k = 0; k < out.stats.valley_count; ++k)
        out.areas.push_back(valley_area_over(x.data(), y.data(), out.stats, out.stats.valleys[k]));
    out.slope = force_slope(out.stats, 1.0);
    out.lowest = force_minimum(y.data(), out.stats, x.data());
}

} // namespace

force_analysis analyse_force(const force_samples& curve, const force_search& search)
{
    force_analysis out;
    if (curve.raw.empty()) return out;
    const std::vector<double> y = physical_values(curve.raw, curve.values);
    if (curve.places.empty())
        analyse_samples(curve, y, search, out);
    else
        analyse_places(physical_values(curve.places, curve.x), y, search, out);
    if (!out.stats.hasSlant() || !std::isfinite(*out.slope)) out.slope.reset();
    if (out.stats.hasZero()) out.minimum = out.lowest;
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

} // namespace curves
