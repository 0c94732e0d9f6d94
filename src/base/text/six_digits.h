#pragma once

namespace vldv::base {

/// A value axis for integer samples: physical = start + raw * scale.
struct raw_axis {
    double start;
    double scale;
    /// The raw sample nearest to a physical value, halves up, not clamped.
    double raw(double physical) const noexcept;
};

/// `value` as the file format keeps it: rounded to six significant decimal digits.
double six_digits(double value) noexcept;

/// The finest axis with start and scale of at most six digits on which all of [lo, hi] has a raw sample between
/// `rawMin` and `rawMax` within half a step, but not finer than (hi - lo) / (rawMax - rawMin): bounds that are rawMin
/// and rawMax themselves stay so. An empty range (lo == hi) gives scale 1, or coarser where a start of six digits lies
/// too far off, and raw 0 where the start says the value. Both bounds must be finite and lo <= hi; rawMin < rawMax.
/// The scale is positive and normal, never 0.
raw_axis six_digit_axis(double lo, double hi, double rawMin, double rawMax) noexcept;

} // namespace vldv::base
