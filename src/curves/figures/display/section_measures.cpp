#include "curves/figures/display/section_measures.h"

#include "base/streams/rounding.h"
#include "base/units.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace vldv::curves {

namespace {

/// Whole samples between two marks, in order.
struct sample_range {
    std::size_t low, high;

    sample_range(const marked_stretch& marks, std::size_t samples)
        : low(inside(marks.first, samples)), high(inside(marks.second, samples))
    {
        if (low > high) std::swap(low, high);
    }
    std::size_t count() const noexcept { return high - low; }

private:
    static std::size_t inside(double at, std::size_t samples)
    {
        return static_cast<std::size_t>(std::clamp(base::nearest_int(at), 0, static_cast<int>(samples) - 1));
    }
};

double sum_of(std::span<const std::int16_t> curve, const sample_range& range)
{
    std::int64_t sum = 0;
    for (std::size_t i = range.low; i < range.high; ++i) sum += curve[i];
    return static_cast<double>(sum);
}

/// Raw steps times samples as an area, in a unit that reads well.
quantity area_of(double stepsTimesSamples, const VLAxis& positions, const VLAxis& values)
{
    const char *const x = positions.get_units(), *const y = values.get_units();
    if (units_convertable(y, x) <= 0)
        return {stepsTimesSamples * values.scale * positions.scale, std::string(y) + "x" + x};
    double area = stepsTimesSamples * convert_size(y, x, values.scale) * positions.scale;
    const std::string square = std::string(x) + "^2";
    const char* const best = default_units(square.c_str(), &area);
    return {area, best};
}

} // namespace

std::optional<quantity> arc_length(std::span<const std::int16_t> curve, const marked_stretch& marks,
                                   const VLAxis& positions, const VLAxis& values)
{
    if (curve.empty() || units_convertable(values.get_units(), positions.get_units()) <= 0 || positions.scale == 0.0)
        return std::nullopt;
    const double ratio = convert_size(values.get_units(), positions.get_units(), values.scale) / positions.scale;
    const sample_range range(marks, curve.size());
    double length = 0.0;
    for (std::size_t i = range.low; i < range.high; ++i) length += std::hypot(1.0, (curve[i] - curve[i + 1]) * ratio);
    return quantity{length * positions.scale, positions.get_units()};
}

quantity area_over_level(std::span<const std::int16_t> curve, const marked_stretch& marks, int lowest,
                         const VLAxis& positions, const VLAxis& values)
{
    if (curve.empty()) return {};
    const sample_range range(marks, curve.size());
    return area_of(sum_of(curve, range) - lowest * static_cast<double>(range.count()), positions, values);
}

quantity area_over_chord(std::span<const std::int16_t> curve, const marked_stretch& marks, const VLAxis& positions,
                         const VLAxis& values)
{
    if (curve.empty()) return {};
    const sample_range range(marks, curve.size());
    const double chord = 0.5 * (curve[range.low] + curve[range.high]) * static_cast<double>(range.count());
    return area_of(sum_of(curve, range) - chord, positions, values);
}

double stretch_time(const marked_stretch& marks, double rate, std::uint32_t lineSamples) noexcept
{
    return std::fabs(marks.second - marks.first) * 1000.0 / rate / (2.0 * lineSamples + 1.0);
}

} // namespace vldv::curves
