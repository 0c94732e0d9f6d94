#include "primitives/fit/partial_plane.h"

#include <cmath>

namespace vldv::primitives {

namespace {

/// Calls `use(column, row, sample)` for the samples that count, row by row.
template <class Use>
void for_each_sample(std::span<const std::int16_t> samples, int width, std::span<const sample_run> leftOut, Use use)
{
    const auto columns = static_cast<std::size_t>(width);
    for_each_kept(0, samples.size(), leftOut, [&](std::size_t first, std::size_t count) {
        std::size_t x = first % columns, y = first / columns;
        for (std::size_t i = first; i < first + count; ++i) {
            use(static_cast<double>(x), static_cast<double>(y), samples[i]);
            if (++x < columns) continue;
            x = 0;
            ++y;
        }
    });
}

/// Sums of products of what deviates from the means.
struct spread {
    double xx = 0.0, xy = 0.0, yy = 0.0, xz = 0.0, yz = 0.0;
};

/// The solution of the normal equations that is shortest, where there are many.
void solve(const spread& of, fitted_plane& plane) noexcept
{
    constexpr double smallest = 1e-12; // of the determinant, against the product of both variances
    const double determinant = of.xx * of.yy - of.xy * of.xy, both = of.xx + of.yy;
    if (both == 0.0) return;
    // Samples left out may leave the others on one line, as in a single row. Only the slope along that line is known
    // then, and the two below are the plane that does not tilt across it.
    if (determinant > smallest * both * both) {
        plane.slopeX = (of.xz * of.yy - of.yz * of.xy) / determinant;
        plane.slopeY = (of.yz * of.xx - of.xz * of.xy) / determinant;
    } else {
        plane.slopeX = of.xz / both;
        plane.slopeY = of.yz / both;
    }
}

} // namespace

plane_of_image fit_partial_plane(std::span<const std::int16_t> samples, int width,
                                 std::span<const sample_run> leftOut) noexcept
{
    plane_of_image out;
    double count = 0.0, x = 0.0, y = 0.0, z = 0.0;
    for_each_sample(samples, width, leftOut, [&](double column, double row, std::int16_t sample) {
        out.range.include({sample, sample});
        x += column;
        y += row;
        z += sample;
        ++count;
    });
    if (count == 0.0) return out;
    x /= count;
    y /= count;
    z /= count;
    // A second pass over what deviates from the means: sums of plain products would lose the digits that the slopes
    // live on.
    spread of;
    for_each_sample(samples, width, leftOut, [&](double column, double row, std::int16_t sample) {
        const double dx = column - x, dy = row - y, dz = sample - z;
        of.xx += dx * dx;
        of.xy += dx * dy;
        of.yy += dy * dy;
        of.xz += dx * dz;
        of.yz += dy * dz;
    });
    solve(of, out.plane);
    out.plane.offset = z - out.plane.slopeX * x - out.plane.slopeY * y;
    return out;
}

raw_moments partial_moments(std::span<const std::int16_t> samples, int width, const fitted_plane& plane,
                            std::span<const sample_run> leftOut) noexcept
{
    double count = 0.0;
    power_sums sums;
    for_each_sample(samples, width, leftOut, [&](double column, double row, std::int16_t sample) {
        const double rest = sample - (plane.offset + plane.slopeX * column + plane.slopeY * row), square = rest * rest;
        sums.second += square;
        sums.third += square * rest;
        sums.fourth += square * square;
        sums.absolute += std::fabs(rest);
        ++count;
    });
    // One sample that is a step away from 2^28 that lie on a plane still makes a thousand times as much.
    constexpr double rounding = 1e-12;
    if (sums.second / count < rounding) return {};
    return {0.0, sums.second / count, sums.third / count, sums.fourth / count, sums.absolute / count};
}

} // namespace vldv::primitives
