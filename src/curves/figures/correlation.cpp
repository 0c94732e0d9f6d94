#include "curves/figures/correlation.h"

#include "primitives/fft/spectrum_1d.h"

#include <algorithm>
#include <cassert>
#include <numeric>
#include <vector>

namespace vldv::curves {

namespace {

std::vector<double> as_doubles(std::span<const float> y) { return {y.begin(), y.end()}; }

std::vector<double> sums_of_products(const std::vector<double>& y)
{
    std::vector<double> out(y.size());
    primitives::autocorrelation(y, out);
    return out;
}

/// Divides by the first number unless that is 0.
void normalise(const std::vector<double>& sums, std::span<float> out)
{
    const double whole = sums.empty() || sums[0] == 0.0 ? 1.0 : sums[0];
    std::ranges::transform(sums, out.begin(), [&](double sum) { return static_cast<float>(sum / whole); });
}

/// The curve without its mean, which no difference feels.
std::vector<double> centred(std::span<const float> y)
{
    std::vector<double> out = as_doubles(y);
    if (out.empty()) return out;
    const double base = out[0];
    double sum = 0.0;
    for (const double value : out) sum += value - base;
    const double mean = base + sum / static_cast<double>(out.size());
    for (double& value : out) value -= mean;
    return out;
}

/// Sum of (z[i] - z[i + k])^2 over `count` pairs, in partial sums side by side.
double sum_of_squares(const double* z, const double* shifted, std::size_t count) noexcept
{
    constexpr std::size_t lanes = 8;
    double part[lanes] = {}, sum = 0.0;
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const double difference = z[i + lane] - shifted[i + lane];
            part[lane] += difference * difference;
        }
    for (; i < count; ++i) sum += (z[i] - shifted[i]) * (z[i] - shifted[i]);
    return std::accumulate(part, part + lanes, sum);
}

/// A sum of squares of differences that is found as the rest of two large sums is good to some 1e-15 of these. Where
/// less than this share is left, it is summed up as it stands.
constexpr double leastShare = 1e-6;

} // namespace

void autocorrelate(std::span<const float> y, std::span<float> out)
{
    std::vector<double> sums = sums_of_products(as_doubles(y));
    for (std::size_t k = 0; k < sums.size(); ++k) sums[k] /= static_cast<double>(sums.size() - k);
    normalise(sums, out);
}

void autocorrelate_cyclic(std::span<const float> y, std::span<float> out)
{
    // Of the 2 n - k pairs, n - k lie in the first turn and as many in the second; the k between them are those of the
    // distance n - k.
    const std::vector<double> sums = sums_of_products(as_doubles(y));
    std::vector<double> cyclic(sums.size());
    for (std::size_t k = 0; k < sums.size(); ++k) cyclic[k] = 2.0 * sums[k] + (k > 0 ? sums[sums.size() - k] : 0.0);
    normalise(cyclic, out);
}

void structure(std::span<const float> y, std::span<float> out)
{
    assert(out.size() >= y.size());
    const std::vector<double> z = centred(y), products = sums_of_products(z);
    const std::size_t n = z.size();
    // (a - b)^2 = a^2 + b^2 - 2 a b: squares of all first and all second members of the pairs, from one pair up.
    double squares = 0.0;
    for (std::size_t k = n; k-- > 0;) {
        squares += z[k] * z[k] + z[n - 1 - k] * z[n - 1 - k];
        double sum = squares - 2.0 * products[k];
        if (sum < leastShare * products[0]) sum = sum_of_squares(z.data(), z.data() + k, n - k);
        out[k] = static_cast<float>(sum / static_cast<double>(n - k));
    }
}

void structure_cyclic(std::span<const float> y, std::span<float> out)
{
    assert(out.size() >= y.size());
    const std::vector<double> z = centred(y), products = sums_of_products(z);
    const std::size_t n = z.size();
    for (std::size_t k = 0; k < n; ++k) {
        double sum = 2.0 * (products[0] - products[k] - (k > 0 ? products[n - k] : 0.0));
        if (sum < leastShare * products[0])
            sum = sum_of_squares(z.data(), z.data() + k, n - k) +
                  (k > 0 ? sum_of_squares(z.data() + (n - k), z.data(), k) : 0.0);
        out[k] = static_cast<float>(sum / static_cast<double>(n));
    }
}

void structure_reference(std::span<const float> y, std::span<float> out)
{
    const std::vector<float> curve(y.begin(), y.end());
    for (std::size_t k = 0; k < curve.size(); ++k) {
        float sum = 0.0f;
        for (std::size_t i = 0; i + k < curve.size(); ++i) sum += (curve[i] - curve[i + k]) * (curve[i] - curve[i + k]);
        out[k] = sum / static_cast<float>(curve.size() - k);
    }
}

void structure_cyclic_reference(std::span<const float> y, std::span<float> out)
{
    std::vector<float> twice(y.begin(), y.end());
    twice.insert(twice.end(), y.begin(), y.end());
    for (std::size_t k = 0; k < y.size(); ++k) {
        float sum = 0.0f;
        for (std::size_t i = 0; i < twice.size() / 2; ++i) sum += (twice[i] - twice[i + k]) * (twice[i] - twice[i + k]);
        out[k] = sum / static_cast<float>(twice.size() / 2);
    }
}

} // namespace vldv::curves
