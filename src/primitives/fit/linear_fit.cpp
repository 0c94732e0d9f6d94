#include "primitives/fit/linear_fit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

/// Variance of 0 … count - 1; 1 where that is 0, so that it can divide.
double index_variance(double count) noexcept
{
    const double mean = (count - 1.0) / 2.0;
    // (n - 1) (2 n - 1) / 6 is the mean of the squares 0, 1, 4 ... (n - 1)^2.
    const double variance = ((2.0 * count - 3.0) * count + 1.0) / 6.0 - mean * mean;
    return std::fabs(variance) < 1e-14 ? 1.0 : variance;
}

struct sums {
    double values = 0.0, moment = 0.0;
};

/// Sums of a row less `base` and of each number times its column. Eight partial sums side by side, in an order that
/// does not depend on the machine.
template <class Number>
sums sum_row(const Number* row, int columns, double base) noexcept
{
    constexpr int lanes = 8;
    double values[lanes] = {}, moment[lanes] = {};
    int c = 0;
    for (; c + lanes <= columns; c += lanes)
        for (int lane = 0; lane < lanes; ++lane) {
            const double z = static_cast<double>(row[c + lane]) - base;
            values[lane] += z;
            moment[lane] += z * (c + lane);
        }
    sums total;
    for (; c < columns; ++c) {
        const double z = static_cast<double>(row[c]) - base;
        total.values += z;
        total.moment += z * c;
    }
    for (int lane = 0; lane < lanes; ++lane) {
        total.values += values[lane];
        total.moment += moment[lane];
    }
    return total;
}

template <class Number>
linear_fit fit(const Number* data, int rows, int columns) noexcept
{
    if (rows <= 0 || columns <= 0) return {};
    // Heights count from the first: what all have in common costs no digits, and a constant leaves nothing.
    const auto base = static_cast<double>(data[0]);
    double total = 0.0, columnMoment = 0.0, rowMoment = 0.0;
    for (int r = 0; r < rows; ++r) {
        const sums row = sum_row(data + std::ptrdiff_t{r} * columns, columns, base);
        total += row.values;
        columnMoment += row.moment;
        rowMoment += row.values * r;
    }
    // On a full grid columns and rows do not depend on each other, so that the normal equations of the plane fall
    // apart: each slope is the covariance of its index with the heights over the variance of the index.
    const double width = columns, height = rows, count = width * height;
    const double meanColumn = (width - 1.0) / 2.0, meanRow = (height - 1.0) / 2.0, mean = total / count;
    linear_fit plane;
    plane.B = (columnMoment / count - meanColumn * mean) / index_variance(width);
    plane.C = (rowMoment / count - meanRow * mean) / index_variance(height);
    plane.A = base + (mean - plane.B * meanColumn - plane.C * meanRow);
    return plane;
}

template <class Number>
void remove(Number* data, int rows, int columns, linear_fit* out) noexcept
{
    const linear_fit plane = fit(data, rows, columns);
    if (out) *out = plane;
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) *data++ -= static_cast<Number>(plane.A + plane.C * r + plane.B * c);
}

} // namespace

void fit_plane(const double* data, int rows, int columns, linear_fit* out) noexcept
{
    if (out) *out = fit(data, rows, columns);
}

void remove_plane(double* data, int rows, int columns, linear_fit* out) noexcept { remove(data, rows, columns, out); }

void remove_plane_32f(float* data, int rows, int columns, linear_fit* out) noexcept
{
    remove(data, rows, columns, out);
}

void moments(double* out, int order, const double* data, int columns, int rows) noexcept
{
    if (order <= 0) return;
    std::fill_n(out, order, 0.0);
    const std::ptrdiff_t count = std::ptrdiff_t{std::max(columns, 0)} * std::max(rows, 0);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        double power = 1.0;
        for (int k = 0; k < order; ++k) out[k] += power *= data[i];
    }
    for (int k = 0; k < order && count > 0; ++k) out[k] /= static_cast<double>(count);
}
