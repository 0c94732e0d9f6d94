#include "spectra/figures/features/feature_metrics.h"

#include "base/streams/rounding.h"
#include "base/units.h"

#include <algorithm>
#include <cmath>

namespace vldv::spectra {

namespace {

using figures = feature_figures;
using axes = feature_axes;

std::string x_units(const axes& of) { return of.x.get_units(); }
std::string z_units(const axes& of) { return of.z.get_units(); }
std::string area_units(const axes& of) { return x_units(of) + "^2"; }
std::string volume_units(const axes& of) { return x_units(of) + "^2x" + z_units(of); }

double pixel_count(const figures& of) { return static_cast<double>(of.pixels); }
double mean_height(const figures& of) { return static_cast<double>(of.heights.sum) / pixel_count(of); }

/// Standard deviation of the raw heights. Those of the values, with any zero, are the step of the axis times that.
double height_deviation(const figures& of)
{
    // About the whole number below the mean: all sums are exact, and what is left is no difference of large numbers.
    const double mean = mean_height(of), base = std::floor(mean);
    const auto shift = static_cast<std::uint64_t>(static_cast<std::int64_t>(base));
    // sum (z - b)^2 = sum z^2 - 2 b sum z + n b^2. The terms may leave 64 bits, but unsigned numbers wrap round: the
    // result, which fits, is right all the same.
    const std::uint64_t squares = static_cast<std::uint64_t>(of.heights.squares) -
                                  2 * shift * static_cast<std::uint64_t>(of.heights.sum) +
                                  shift * shift * static_cast<std::uint64_t>(of.pixels);
    const double rest =
        static_cast<double>(of.heights.sum - static_cast<std::int64_t>(base) * of.pixels) / pixel_count(of);
    return std::sqrt(std::max(static_cast<double>(squares) / pixel_count(of) - rest * rest, 0.0));
}

double ratio(double a, double b) { return b != 0.0 ? a / b : 0.0; }

// The tracing goes along the skeleton on both its sides.
double skeleton_length(const figures& of, const axes&, short) { return of.skeletonTracing / 2.0; }
double perimeter(const figures& of, const axes&, short) { return of.contourLength; }
double area(const figures& of, const axes&, short) { return pixel_count(of) * of.sampleArea; }
double volume(const figures& of, const axes& at, short zero)
{
    const auto above = static_cast<double>(of.heights.sum - std::int64_t{zero} * of.pixels);
    return (above * at.z.scale + pixel_count(of) * at.z.start) * of.sampleArea;
}
double roughness(const figures& of, const axes& at, short) { return height_deviation(of) * std::abs(at.z.scale); }
double roundness(const figures& of, const axes&, short)
{
    constexpr double rootOfPi = 1.772453850905516;
    // The outline of a disc of the same area over the own outline: 1 for an ideal disc, less for other shapes.
    return ratio(2.0 * std::sqrt(of.contourArea * of.sampleArea) * rootOfPi, of.contourLength);
}
double slenderness(const figures& of, const axes&, short) { return ratio(of.skeletonTracing, of.contourLength); }
double height(const figures& of, const axes& at, short zero)
{
    return (std::max(of.heights.highest, zero) - zero) * at.z.scale + at.z.start;
}
double average_height(const figures& of, const axes& at, short zero)
{
    return (mean_height(of) - zero) * at.z.scale + at.z.start;
}

constexpr feature_metric metrics[] = {
    {"L_skel", x_units, skeleton_length},
    {"P_proj", x_units, perimeter},
    {"S_px", area_units, area},
    {"V_px", volume_units, volume},
    {"RMS_Z", z_units, roughness},
    {"FF_1", [](const axes&) -> std::string { return "Rs/Rp"; }, roundness},
    {"FF_2", [](const axes&) -> std::string { return "2Lskel/Lp"; }, slenderness},
    {"H", z_units, height},
    {"H_av", z_units, average_height},
    {"RMS_H_av", z_units, roughness},
};

} // namespace

std::span<const feature_metric, featureMetrics> feature_metrics() noexcept { return metrics; }

feature_steps steps_of(const feature_axes& axes)
{
    return {std::abs(axes.x.scale), std::abs(convert_size(axes.y.get_units(), axes.x.get_units(), axes.y.scale))};
}

double tracing_length(std::span<const CPoint> points, double stepX, double stepY) noexcept
{
    std::int64_t along = 0, across = 0, slanted = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const CSize step = points[i] - points[i - 1];
        along += step.cx != 0 && step.cy == 0;
        across += step.cx == 0 && step.cy != 0;
        slanted += step.cx != 0 && step.cy != 0;
    }
    return static_cast<double>(along) * std::abs(stepX) + static_cast<double>(across) * std::abs(stepY) +
           static_cast<double>(slanted) * std::sqrt(stepX * stepX + stepY * stepY);
}

double polygon_area(std::span<const CPoint> points) noexcept
{
    if (points.size() < 3) return 0.0;
    // Twice the area as the sum of the triangles between the first corner and each side, in whole numbers; what a bend
    // counts too much another triangle takes away.
    std::int64_t twice = 0;
    for (std::size_t i = 2; i < points.size(); ++i) {
        const CSize a = points[i - 1] - points[0], b = points[i] - points[0];
        twice += std::int64_t{a.cx} * b.cy - std::int64_t{b.cx} * a.cy;
    }
    return base::round_half_up(static_cast<double>(std::abs(twice)) / 2.0);
}

} // namespace vldv::spectra
