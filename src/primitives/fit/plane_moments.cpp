#include "primitives/fit/plane_moments.h"

#include "primitives/fit/line_fit.h"
#include "primitives/simd/kernels.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vldv::primitives {

namespace {

__extension__ typedef __int128 wide_int;

/// Keeps whole and half numbers exact where a division of two rounded operands would not.
double quotient(wide_int numerator, wide_int denominator) noexcept
{
    const wide_int whole = numerator / denominator;
    return static_cast<double>(whole) +
           static_cast<double>(numerator - whole * denominator) / static_cast<double>(denominator);
}

/// Slope along a side of `length` lines of `across` samples, from the sum of all and the sum of each times its index:
/// (moment / count - centre * mean) / ((length^2 - 1) / 12), without a division before the last.
double slope_of(std::int64_t sum, wide_int moment, std::int64_t length, std::int64_t across) noexcept
{
    if (length < 2) return 0.0;
    const wide_int numerator = 12 * moment - 6 * static_cast<wide_int>(length - 1) * sum;
    return quotient(numerator, static_cast<wide_int>(across) * length * (length * length - 1));
}

/// Adds the powers of a row without the line offset + slope * column. The sums of a row are gathered by themselves, so
/// that those over the image stay as exact as theirs.
void add_powers(power_sums& total, std::span<const std::int16_t> row, double offset, double slope) noexcept
{
    power_sums sums;
    std::size_t i = kernels().addPowers(sums, row.data(), row.size(), offset, slope);
    for (; i < row.size(); ++i) {
        const double z = row[i] - (offset + slope * static_cast<double>(i)), square = z * z;
        sums.second += square;
        sums.third += square * z;
        sums.fourth += square * square;
        sums.absolute += std::fabs(z);
    }
    total.second += sums.second;
    total.third += sums.third;
    total.fourth += sums.fourth;
    total.absolute += sums.absolute;
}

/// Variance of the indices 0 … n - 1, or 1 where they do not vary.
double index_variance(double n) noexcept
{
    const double centre = (n - 1.0) * 0.5;
    const double variance = ((2.0 * n - 3.0) * n + 1.0) / 6.0 - centre * centre;
    constexpr double none = 1e-14;
    return std::fabs(variance) < none ? 1.0 : variance;
}

} // namespace

plane_of_image fit_plane(std::span<const std::int16_t> samples, int width) noexcept
{
    const auto columns = static_cast<std::size_t>(width);
    const auto count = static_cast<std::int64_t>(samples.size()), across = static_cast<std::int64_t>(width);
    const std::int64_t rows = count / across;
    plane_of_image out;
    std::int64_t sum = 0;
    wide_int momentX = 0, momentY = 0;
    for (std::int64_t y = 0; y < rows; ++y) {
        const auto row = samples.subspan(static_cast<std::size_t>(y) * columns, columns);
        const height_range range = find_range(row);
        out.range = {std::min(out.range.minimum, range.minimum), std::max(out.range.maximum, range.maximum)};
        const row_sums sums = sum_row(row);
        sum += sums.sum;
        momentX += sums.moment;
        momentY += static_cast<wide_int>(y) * sums.sum;
    }
    out.plane.slopeX = slope_of(sum, momentX, across, rows);
    out.plane.slopeY = slope_of(sum, momentY, rows, across);
    out.plane.offset = quotient(sum, count) - out.plane.slopeX * (0.5 * static_cast<double>(across - 1)) -
                       out.plane.slopeY * (0.5 * static_cast<double>(rows - 1));
    return out;
}

plane_of_image fit_plane_reference(std::span<const std::int16_t> samples, int width)
{
    const auto columns = static_cast<std::size_t>(width), rows = samples.size() / columns;
    std::vector<double> columnSums(columns), rowSums(rows);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        columnSums[i % columns] += samples[i];
        rowSums[i / columns] += samples[i];
    }
    const double w = static_cast<double>(columns), h = static_cast<double>(rows);
    double mean = 0.0, alongX = 0.0, alongY = 0.0;
    for (std::size_t j = 0; j < columns; ++j) {
        mean += columnSums[j] / (w * h);
        alongX += static_cast<double>(j) * (columnSums[j] / h) / w;
    }
    for (std::size_t i = 0; i < rows; ++i) alongY += static_cast<double>(i) * (rowSums[i] / w) / h;
    const double cx = (w - 1.0) * 0.5, cy = (h - 1.0) * 0.5;
    plane_of_image out{find_range_reference(samples), {}};
    out.plane.slopeX = (alongX - cx * mean) / index_variance(w);
    out.plane.slopeY = (alongY - cy * mean) / index_variance(h);
    out.plane.offset = mean - out.plane.slopeX * cx - out.plane.slopeY * cy;
    return out;
}

raw_moments residual_moments(std::span<const std::int16_t> samples, int width, const fitted_plane& plane) noexcept
{
    const auto columns = static_cast<std::size_t>(width), rows = samples.size() / columns;
    power_sums sums;
    for (std::size_t y = 0; y < rows; ++y)
        add_powers(sums, samples.subspan(y * columns, columns), plane.offset + plane.slopeY * static_cast<double>(y),
                   plane.slopeX);
    const double count = static_cast<double>(samples.size());
    return {0.0, sums.second / count, sums.third / count, sums.fourth / count, sums.absolute / count};
}

raw_moments residual_moments_reference(std::span<const std::int16_t> samples, int width, const fitted_plane& plane)
{
    const auto columns = static_cast<std::size_t>(width);
    std::vector<double> residual(samples.begin(), samples.end());
    for (std::size_t i = 0; i < residual.size(); ++i)
        residual[i] -= plane.offset + plane.slopeX * static_cast<double>(i % columns) +
                       plane.slopeY * static_cast<double>(i / columns);
    const double count = static_cast<double>(residual.size());
    raw_moments out;
    for (const double z : residual) {
        out.m1 += z / count;
        out.m2 += z * z / count;
        out.m3 += z * z * z / count;
        out.m4 += z * z * z * z / count;
    }
    for (const double z : residual) out.meanDeviation += std::fabs(z - out.m1) / count;
    return out;
}

} // namespace vldv::primitives
