#include "primitives/spline/uniform_spline.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>

using namespace vldv;

namespace vldv::primitives {

namespace {

/// The four cubic B-splines that live on a span, at the fraction `u` of it.
uniform_spline::weights basis_at(double u) noexcept
{
    const double v = 1.0 - u;
    return {v * v * v / 6.0, (3.0 * u * u * u - 6.0 * u * u + 4.0) / 6.0, (3.0 * v * v * v - 6.0 * v * v + 4.0) / 6.0,
            u * u * u / 6.0};
}

} // namespace

uniform_spline::uniform_spline(int samples_, int spans_)
{
    assert(samples_ >= 4 && "a cubic needs four numbers");
    const std::int64_t count = std::clamp(spans_, 1, samples_ - 3), last = samples_ - 1;
    weightsOf.reserve(static_cast<std::size_t>(samples_));
    for (std::int64_t i = 0; i <= last; ++i) {
        const std::int64_t span = std::min(i * count / last, count - 1);
        while (static_cast<std::int64_t>(begins.size()) <= span) begins.push_back(static_cast<int>(i));
        weightsOf.push_back(basis_at(static_cast<double>(i * count - span * last) / static_cast<double>(last)));
    }
    begins.push_back(samples_);
    factorise();
}

void uniform_spline::factorise()
{
    const auto count = static_cast<std::size_t>(coefficients());
    constexpr std::size_t band = 4;                      // the diagonal and three beside it
    std::vector<std::array<double, band>> normal(count); // [k][b] is element (k, k - b)
    for (std::size_t s = 0; s + 1 < begins.size(); ++s)
        for (int i = begins[s]; i < begins[s + 1]; ++i) {
            const double* const w = weightsOf[static_cast<std::size_t>(i)].of;
            for (std::size_t k = 0; k < band; ++k)
                for (std::size_t b = 0; b <= k; ++b) normal[s + k][b] += w[k] * w[k - b];
        }
    std::vector<double> diagonal(count);
    factors.resize(count);
    for (std::size_t k = 0; k < count; ++k) {
        // L D L' of the normal matrix without roots, row by row. A sample weighs four neighbouring coefficients, so
        // that elements more than three beside the diagonal are 0 and stay so: the work grows with the length and not
        // with its cube.
        const std::size_t reach = std::min(k, band - 1);
        std::array<double, band> scaled{}; // row k of L D
        for (std::size_t b = reach; b >= 1; --b) {
            double value = normal[k][b];
            for (std::size_t c = b + 1; c <= reach; ++c) value -= scaled[c] * factors[k - b].left[c - b - 1];
            scaled[b] = value;
        }
        double pivot = normal[k][0];
        for (std::size_t b = 1; b <= reach; ++b) {
            factors[k].left[b - 1] = scaled[b] / diagonal[k - b];
            pivot -= scaled[b] * factors[k].left[b - 1];
        }
        diagonal[k] = pivot;
        factors[k].inverse = 1.0 / pivot;
    }
}

void uniform_spline::fit(const double* row, double* out) const noexcept
{
    // The right side of the normal equations, then L forwards, D, and L' backwards.
    const int count = coefficients();
    const tables of = view();
    std::fill_n(out, count, 0.0);
    for (int s = 0; s < of.spans; ++s) {
        double sum[4] = {};
        for (int i = of.begins[s]; i < of.begins[s + 1]; ++i)
            for (int k = 0; k < 4; ++k) sum[k] += row[i] * of.weightsAt[i].of[k];
        for (int k = 0; k < 4; ++k) out[s + k] += sum[k];
    }
    for (int k = 1; k < count; ++k)
        for (int b = 1; b <= std::min(k, 3); ++b) out[k] -= out[k - b] * of.factors[k].left[b - 1];
    for (int k = 0; k < count; ++k) out[k] *= of.factors[k].inverse;
    for (int k = count - 2; k >= 0; --k)
        for (int b = 1; b <= std::min(count - 1 - k, 3); ++b) out[k] -= out[k + b] * of.factors[k + b].left[b - 1];
}

void uniform_spline::evaluate(const double* coefficient, double* row) const noexcept
{
    const tables of = view();
    for (int s = 0; s < of.spans; ++s, ++coefficient)
        for (int i = of.begins[s]; i < of.begins[s + 1]; ++i) {
            const double* const w = of.weightsAt[i].of;
            row[i] = (coefficient[0] * w[0] + coefficient[1] * w[1]) + (coefficient[2] * w[2] + coefficient[3] * w[3]);
        }
}

} // namespace vldv::primitives

void b_spline_1d(double* values, int n, int spans)
{
    if (n < 4) return;
    const primitives::uniform_spline spline(n, spans);
    std::vector<double> coefficients(static_cast<std::size_t>(spline.coefficients()));
    spline.fit(values, coefficients.data());
    spline.evaluate(coefficients.data(), values);
}
