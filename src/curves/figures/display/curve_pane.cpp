#include "curves/figures/display/curve_pane.h"

#include "base/streams/rounding.h"
#include "base/units.h"

#include <algorithm>
#include <cmath>

namespace vldv::curves {

namespace {

/// The user's range in units of the values; nothing when it cannot be used.
std::optional<double> usable_range(const VLAxis& values, const std::optional<fixed_heights>& fixed)
{
    if (!fixed || units_convertable(fixed->units.c_str(), values.get_units()) <= 0) return std::nullopt;
    const double range = convert_size(fixed->units.c_str(), values.get_units(), fixed->range);
    return std::isfinite(range) && range > 0.0 ? std::optional(range) : std::nullopt;
}

double start_of(const VLAxis& values, const fixed_heights& fixed, double lowest)
{
    return fixed.start ? convert_size(fixed.units.c_str(), values.get_units(), *fixed.start) : lowest;
}

} // namespace

curve_pane curve_pane::finer(int parts) const noexcept
{
    curve_pane made = *this;
    made.size = {(size.cx - 1) * parts + 1, (size.cy - 1) * parts + 1};
    made.pixelsPerStep *= parts;
    made.offset *= parts;
    return made;
}

double curve_pane::samplesPerColumn() const noexcept
{
    return samples >= 2 && size.cx >= 2 ? (samples - 1.0) * part.width() / (size.cx - 1.0) : 1.0;
}

double curve_pane::firstShown() const noexcept { return std::max(samples - 1.0, 0.0) * part.from; }
double curve_pane::lastShown() const noexcept { return std::max(samples - 1.0, 0.0) * part.to; }

int curve_pane::column(double sample) const noexcept
{
    return base::nearest_int((sample - firstShown()) / samplesPerColumn());
}

int curve_pane::row(double raw) const noexcept
{
    return size.cy - base::nearest_int((raw - lowest) * pixelsPerStep - offset) - 1;
}

double curve_pane::share(double raw) const noexcept
{
    return ((raw - lowest) * pixelsPerStep - offset) / std::max(size.cy - 1, 1);
}

curve_pane make_pane(CSize size, std::uint32_t samples, const CMinMaxInfo& range, const VLAxis& values, double zero,
                     const std::optional<fixed_heights>& fixed)
{
    curve_pane pane{size, samples, (size.cy - 1.0) / range.range, 0.0, range.minimum};
    const std::optional<double> given = usable_range(values, fixed);
    if (!given) return pane;
    pane.isFixed = true;
    pane.pixelsPerStep = (size.cy - 1.0) * values.scale / *given;
    const double lowest = range.minimum * values.scale + zero;
    // Rows for a unit of the values are those for a step over the step.
    pane.offset = (start_of(values, *fixed, lowest) - lowest) * (size.cy - 1.0) / *given;
    return pane;
}

pane_heights heights_of(const curve_pane& pane, const CMinMaxInfo& range, const VLAxis& values, double zero,
                        const std::optional<fixed_heights>& fixed)
{
    const double lowest = range.minimum * values.scale + zero;
    if (!pane.isFixed) return {range.range * values.scale, lowest};
    return {usable_range(values, fixed).value_or(0.0), start_of(values, *fixed, lowest)};
}

} // namespace vldv::curves
