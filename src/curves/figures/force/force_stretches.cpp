#include "curves/figures/force/force_stretches.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vldv::curves {

curve_smoother::curve_smoother(int samples_) : count(samples_)
{
    if (count > mostForFive) spline.emplace(count, base::nearest_int(count / 64.0));
}

void curve_smoother::smooth(const double* y, double* out) const
{
    const int n = count;
    std::vector<double> moved(y, y + n);
    for (double& value : moved) value -= y[0];
    if (spline) {
        std::vector<double> coefficients(static_cast<std::size_t>(spline->coefficients()));
        spline->fit(moved.data(), coefficients.data());
        spline->evaluate(coefficients.data(), out);
        return;
    }
    y = moved.data();
    std::copy_n(y, n, out);
    for (int i = 1; i < n - 1; ++i) {
        const double three = y[i - 1] + y[i] + y[i + 1];
        const bool hasFive = reach() == 2 && i >= 2 && i < n - 2;
        out[i] = hasFive ? (three + y[i - 2] + y[i + 2]) / 5.0 : three / 3.0;
    }
}

void take_steps(double* values, int n) noexcept
{
    for (int i = 0; i + 1 < n; ++i) values[i] = values[i + 1] - values[i];
    if (n > 0) values[n - 1] = n > 1 ? values[n - 2] : 0.0;
}

void filter_spikes(double* values, int n) noexcept
{
    if (n < 3) return;
    double before = values[0];
    for (int i = 1; i + 1 < n; ++i) {
        const double here = values[i], after = values[i + 1];
        // The median of three is max(min(a, b), min(max(a, b), c)). `before` is the neighbour as it was, not its
        // median.
        const double low = here < before ? here : before, high = here < before ? before : here;
        const double least = after < high ? after : high;
        values[i] = least < low ? low : least;
        before = here;
    }
}

double deviation(double meanSquare, double mean) noexcept
{
    const double variance = meanSquare - mean * mean;
    return variance > 0.0 ? std::sqrt(variance) : 0.0;
}

double spread_of(const double* values, int n) noexcept
{
    double sum = 0.0, squares = 0.0;
    for (int i = 0; i < n; ++i) {
        sum += values[i];
        squares += values[i] * values[i];
    }
    return n > 0 ? deviation(squares / n, sum / n) : 0.0;
}

stretch find_slant(const sample_bits& steep) noexcept
{
    const int n = steep.size();
    for (int i = 0; i < n;) {
        const int first = steep.next(i, true);
        if (first == n) break;
        const int last = steep.next(first, false) - 1;
        if (last > first + 1) return {first, last};
        i = last + 2;
    }
    return {};
}

stretch find_zero(const sample_bits& flat) noexcept
{
    const int n = flat.size(), enough = base::nearest_int(n / 10.0);
    // From the end backwards: the probe is free at the end of a curve. A run counts with the sample before it, because
    // its first step leads from there.
    for (int end = n; end >= 0;) {
        const int last = flat.previous(end - 1, true);
        const int before = flat.previous(last - 1, false); // the run begins behind it
        if (last < 0 || before < 0) break;
        if (last - before + 1 >= enough) return {before, last};
        end = before;
    }
    return {n, n};
}

namespace {

bool is_mostly_gap(stretch of, const std::vector<bool>& gaps)
{
    if (gaps.empty() || !of.isFound()) return false;
    const auto voids = std::count(gaps.begin() + of.first, gaps.begin() + of.last + 1, true);
    return 2 * voids > of.last - of.first + 1;
}

/// What `find` finds among the bits outside of gaps.
template <typename Find>
stretch find_measured(std::vector<std::uint64_t>& bits, int n, const std::vector<bool>& gaps, const Find& find)
{
    stretch found = find({bits.data(), n});
    for (; is_mostly_gap(found, gaps); found = find({bits.data(), n}))
        for (int i = found.first; i <= found.last; ++i)
            bits[static_cast<std::size_t>(i / 64)] &= ~(std::uint64_t{1} << (i % 64));
    return found;
}

} // namespace

curve_stretches find_stretches(const double* steps, int n, double spread, double zeroThreshold, double slantThreshold,
                               const std::vector<bool>& gaps)
{
    const double level = spread * zeroThreshold;
    const auto words = static_cast<std::size_t>(sample_bits::wordsFor(n));
    std::vector<std::uint64_t> steep(words), flat(words);
    for (int i = 0; i < n; ++i) {
        const auto bit = static_cast<unsigned>(i % 64), word = static_cast<unsigned>(i / 64);
        steep[word] |= std::uint64_t{slantThreshold * steps[i] <= -spread && steps[i] != 0.0} << bit;
        flat[word] |= std::uint64_t{std::fabs(steps[i]) <= level} << bit;
    }
    return {find_measured(steep, n, gaps, find_slant), find_measured(flat, n, gaps, find_zero)};
}

bool has_gap(stretch of, const std::vector<bool>& gaps) noexcept
{
    if (gaps.empty()) return false;
    const auto end = gaps.begin() + of.last + 1;
    return std::find(gaps.begin() + of.first, end, true) != end;
}

fitted_line fit_over(const double* x, const double* y, stretch of, const std::vector<bool>& gaps) noexcept
{
    const auto isMeasured = [&](int i) { return gaps.empty() || !gaps[static_cast<std::size_t>(i)]; };
    const auto at = [x](int i) { return x ? x[i] : double{1.0} * i; };
    double count = 0.0;
    for (int i = of.first; i <= of.last; ++i) count += isMeasured(i) ? 1.0 : 0.0;
    if (count == 0.0) return {};
    // Means of differences from the first sample keep their digits.
    const double startX = at(of.first), startY = y[of.first];
    double meanX = startX, meanY = startY;
    for (int i = of.first; i <= of.last; ++i) {
        if (!isMeasured(i)) continue;
        meanX += (at(i) - startX) / count;
        meanY += (y[i] - startY) / count;
    }
    double spread = 0.0, product = 0.0;
    for (int i = of.first; i <= of.last; ++i) {
        if (!isMeasured(i)) continue;
        spread += (at(i) - meanX) * (at(i) - meanX);
        product += (at(i) - meanX) * (y[i] - meanY);
    }
    fitted_line line;
    line.b = spread > 0.0 ? product / spread : 0.0;
    line.a = meanY - line.b * meanX;
    double sum = 0.0, squares = 0.0;
    for (int i = of.first; i <= of.last; ++i) {
        if (!isMeasured(i)) continue;
        const double rest = y[i] - meanY - line.b * (at(i) - meanX);
        sum += rest;
        squares += rest * rest;
    }
    line.rms = deviation(squares / count, sum / count);
    return line;
}

} // namespace vldv::curves
