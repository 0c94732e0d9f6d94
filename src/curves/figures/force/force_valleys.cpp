#include "curves/figures/force/force_curve.h"

#include "base/streams/rounding.h"
#include "primitives/spline/uniform_spline.h"

#include <algorithm>
#include <cmath>

using namespace vldv;

namespace {

/// The search for valleys in one curve.
class valley_search {
public:
    /// \param x_  positions of the samples; null for their numbers
    valley_search(const double* y_, int n_, const force_curve_stats& stats, const double* x_)
        : y(y_), x(x_), n(n_), end(stats.zero_first)
    {
        for (int i = 0; i < n; ++i) rest.push_back(y[i] - stats.zero_a - place(i) * stats.zero_b);
        start = first_below(first_sample(stats));
        smooth();
    }

    std::vector<force_curve_stats::valley> find() const
    {
        std::vector<force_curve_stats::valley> found;
        for (int i = start; i < end;) {
            const int low = behind_low(i);
            const int peak = highest(low, behind_low(behind_peak(low)));
            const force_curve_stats::valley cut = cut_off(i, peak);
            if (cut.second - cut.first > 1) found.push_back(cut);
            i = peak;
        }
        return found;
    }

private:
    double place(int i) const noexcept { return x ? x[i] : i; }
    double r(int i) const noexcept { return rest[static_cast<std::size_t>(i)]; }
    double t(int i) const noexcept { return shape[static_cast<std::size_t>(i)]; }
    double distance(int i, int k) const noexcept { return std::fabs(r(i) - r(k)); }

    /// Where the lines cross, or the middle of the slant stretch when that comes first.
    int first_sample(const force_curve_stats& stats) const noexcept
    {
        const double crossing = -(stats.slant_a - stats.zero_a) / (stats.slant_b - stats.zero_b);
        return std::min(sample_at(crossing), base::nearest_int((stats.slant_first + stats.slant_last) * 0.5));
    }

    /// The sample nearest to a position.
    int sample_at(double position) const noexcept
    {
        if (!x) return std::clamp(base::nearest_int(position), 0, n - 1);
        const double* const nearest = std::min_element(
            x, x + n, [&](double a, double b) { return std::fabs(a - position) < std::fabs(b - position); });
        return static_cast<int>(nearest - x);
    }

    /// From there the sample nearest to where the curve goes below the zero line.
    int first_below(int from) const noexcept
    {
        int i = from;
        while (i < end && r(i) >= 0.0) ++i;
        return i > from && std::fabs(r(i)) > std::fabs(r(i - 1)) ? i - 1 : i;
    }

    /// The curve in which dips and peaks are looked for. A long one is smoothed as it is, a short one above its line.
    void smooth()
    {
        shape.assign(y, y + n);
        constexpr int fewSamples = 32;
        if (end - start > fewSamples) {
            b_spline_1d(shape.data() + start, end - start, std::min(base::nearest_int((end - start) / 16.0), 16));
            return;
        }
        const auto three = [&](int i) { return (r(i - 1) + r(i) + r(i + 1)) / 3.0; };
        for (int i = std::max(start, 2); i <= std::min(end, n - 3); ++i)
            shape[static_cast<std::size_t>(i)] = (r(i - 2) + r(i - 1) + r(i) + r(i + 1) + r(i + 2)) / 5.0;
        if (start < 2 && n > 2) shape[1] = three(1);
        if (end > n - 3 && n > 2) shape[static_cast<std::size_t>(n - 2)] = three(n - 2);
        if (end > n - 2) shape[static_cast<std::size_t>(n - 1)] = r(n - 1);
    }

    /// The first sample after `from` that lies above the one before it, or the end.
    int behind_low(int from) const noexcept
    {
        for (int i = from + 1; i < end; ++i)
            if (t(i - 1) < t(i)) return i;
        return end;
    }
    /// The first sample after `from` that lies below the one before it, or the end.
    int behind_peak(int from) const noexcept
    {
        for (int i = from + 1; i < end; ++i)
            if (t(i) < t(i - 1)) return i;
        return end;
    }
    /// The highest sample from `from` to before `to`, the first of equals; `from` at least.
    int highest(int from, int to) const noexcept
    {
        int found = from;
        for (int i = from + 1; i < to; ++i)
            if (r(i) > r(found)) found = i;
        return found;
    }

    /// Moves the higher end of a valley down its flank to the height of the lower one.
    force_curve_stats::valley cut_off(int a, int b) const noexcept
    {
        const int peak = b;
        if (r(a) > r(b)) {
            while (a < peak && r(a + 1) > r(b)) ++a;
            if (a < peak && distance(a, b) > distance(a + 1, b)) ++a;
        }
        if (r(b) > r(a) && a < peak) {
            while (b - 1 > a && r(b - 1) > r(a)) --b;
            if (a < b && distance(a, b) > distance(a, b - 1)) --b;
        }
        return {a, b};
    }

    const double *y, *x;
    int n, start = 0, end;
    std::vector<double> rest, shape;
};

} // namespace

void get_force_curve_valleys(const double* y, int n, force_curve_stats& stats, const double* x)
{
    if (!stats.hasSlant() || !stats.hasZero()) return;
    const std::vector<force_curve_stats::valley> found = valley_search(y, n, stats, x).find();
    if (found.empty()) return;
    stats.allocate_valleys(static_cast<std::uint32_t>(found.size()));
    std::copy(found.begin(), found.end(), stats.valleys.get());
}
