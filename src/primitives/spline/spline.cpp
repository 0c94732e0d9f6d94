#include "primitives/spline/spline.h"

#include <algorithm>
#include <cstddef>
#include <vector>

void build_spline(const double* x, const double* y, int n, double* second)
{
    if (n <= 0) return;
    // The natural spline: with h the distances and M the second derivatives, equal slopes on both sides of point i mean
    // h(i-1) M(i-1) + 2 (h(i-1) + h(i)) M(i) + h(i) M(i+1) = 6 ((y(i+1) - y(i)) / h(i) - (y(i) - y(i-1)) / h(i-1)).
    // Each equation has three unknowns, so that one sweep down and one up solve all in n steps.
    second[0] = second[n - 1] = 0.0;
    // Elimination of the system that makes slopes meet; after it second[i] = second[i] - upper[i] * second[i + 1].
    std::vector<double> upper(static_cast<std::size_t>(n));
    for (int i = 1; i + 1 < n; ++i) {
        const double before = x[i] - x[i - 1], after = x[i + 1] - x[i];
        const double bend = 6.0 * ((y[i + 1] - y[i]) / after - (y[i] - y[i - 1]) / before);
        const double pivot = 2.0 * (before + after) - before * upper[static_cast<std::size_t>(i - 1)];
        upper[static_cast<std::size_t>(i)] = after / pivot;
        second[i] = (bend - before * second[i - 1]) / pivot;
    }
    for (int i = n - 2; i > 0; --i) second[i] -= upper[static_cast<std::size_t>(i)] * second[i + 1];
}

int find_spline_point(const double* x, int n, double at) noexcept
{
    if (n < 2) return 0;
    const auto above = static_cast<int>(std::upper_bound(x, x + n, at) - x);
    return std::clamp(above - 1, 0, n - 2);
}

void eval_spline_factors(const double* x, int segment, double at, double factors[4]) noexcept
{
    const double width = x[segment + 1] - x[segment];
    const double right = (at - x[segment]) / width, left = 1.0 - right, curvature = width * width / 6.0;
    // The value is left y0 + right y1 + ((left^3 - left) M0 + (right^3 - right) M1) width^2 / 6.
    factors[0] = left;
    factors[1] = right;
    factors[2] = (left * left * left - left) * curvature;
    factors[3] = (right * right * right - right) * curvature;
}

double eval_spline_point(const double* x, const double* y, const double* second, int n, double at) noexcept
{
    if (n < 2) return n == 1 ? y[0] : 0.0;
    const int i = find_spline_point(x, n, at);
    double factors[4];
    eval_spline_factors(x, i, at, factors);
    return factors[0] * y[i] + factors[1] * y[i + 1] + factors[2] * second[i] + factors[3] * second[i + 1];
}
