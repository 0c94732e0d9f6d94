#pragma once
#include "curves/figures/force/force_curve_stats.h"
#include "curves/figures/sample_bits.h"
#include "primitives/spline/uniform_spline.h"

#include <optional>
#include <vector>

/// How the stretches of a force curve are found: it is smoothed, its steps from sample to sample are freed of spikes,
/// and those that are steep and those that are flat, measured by their spread, form runs.
namespace vldv::curves {

/// A run of samples; first and last are equal when there is none.
struct stretch {
    int first = 0, last = 0;
    bool isFound() const noexcept { return first != last; }
};

/// What smooths curves of one length; made once for all of them.
class curve_smoother {
public:
    explicit curve_smoother(int samples_);

    int samples() const noexcept { return count; }
    /// Samples on either side whose mean is taken; 0 where the spline smooths.
    int reach() const noexcept { return spline ? 0 : count <= mostForThree ? 1 : 2; }
    const primitives::uniform_spline* splineOrNull() const noexcept { return spline ? &*spline : nullptr; }

    /// Smoothed values count from the first one, so that equal values are exactly 0 whatever they are.
    /// \param out  as long as the curve, and not the curve itself
    void smooth(const double* y, double* out) const;

private:
    static constexpr int mostForThree = 64, mostForFive = 256;
    int count;
    std::optional<primitives::uniform_spline> spline;
};

/// Replaces values by the steps to the next one, the last step repeated.
void take_steps(double* values, int n) noexcept;
/// Replaces each inner value by the median of itself and its neighbours.
void filter_spikes(double* values, int n) noexcept;
/// Standard deviation of all values.
double spread_of(const double* values, int n) noexcept;
/// sqrt(mean of squares - mean^2), with 0 for a rest of rounding below 0.
double deviation(double meanSquare, double mean) noexcept;

/// Steps other than 0 that fall by more than the spread over `slantThreshold`: the first run of at least three.
stretch find_slant(const sample_bits& steep) noexcept;
/// Steps that stay within the spread times the threshold: the last run that is long enough, from the sample before it.
/// It must not begin at the start of the curve. Both ends are n when there is none.
stretch find_zero(const sample_bits& flat) noexcept;

struct curve_stretches {
    stretch slant, zero;
};
/// Both stretches of a curve. \param steps  freed of spikes; NaN is neither steep nor flat
/// \param spread  of the steps
/// \param gaps  which samples were not measured; a run of mostly such is none. Empty: all were
curve_stretches find_stretches(const double* steps, int n, double spread, double zeroThreshold, double slantThreshold,
                               const std::vector<bool>& gaps = {});

struct fitted_line {
    double a = 0.0, b = 0.0, rms = 0.0; ///< a + b x, and the deviation from it
};
/// The line of y over x through the measured samples of a stretch. Positions that are all equal give no slope.
/// \param x  positions, or null: the numbers of the samples  \param gaps  which were not measured; empty: all were
fitted_line fit_over(const double* x, const double* y, stretch of, const std::vector<bool>& gaps) noexcept;
/// Some sample of a stretch was not measured.
bool has_gap(stretch of, const std::vector<bool>& gaps) noexcept;
/// Keeps the stretches and the lines through them. \param fit  gives the line of a stretch
template <typename Fit>
void keep_stretches(const curve_stretches& found, const Fit& fit, force_curve_stats& stats)
{
    const auto& [slant, zero] = found;
    if (slant.isFound()) {
        const fitted_line line = fit(slant);
        stats.slant_a = line.a;
        stats.slant_b = line.b;
        stats.slant_rms = line.rms;
        stats.slant_first = slant.first;
        stats.slant_last = slant.last;
    }
    // Where there is no zero stretch, its ends tell so.
    stats.zero_first = zero.first;
    stats.zero_last = zero.last;
    if (zero.isFound()) {
        const fitted_line line = fit(zero);
        stats.zero_a = line.a;
        stats.zero_b = line.b;
        stats.zero_rms = line.rms;
    }
}

} // namespace vldv::curves
