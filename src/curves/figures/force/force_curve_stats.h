#pragma once
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

/// What is found in a force curve: the slant line, where the probe is in contact, the zero line, where it is free, and
/// what lies between. A line's value at sample i is a + b * i. A stretch whose first and last sample are equal was not
/// found; its line is 0 then.
struct force_curve_stats {
    double slant_a = 0.0, slant_b = 0.0;
    double slant_rms = 0.0; ///< standard deviation of the samples from the line
    std::int32_t slant_first = 0, slant_last = 0;
    double zero_a = 0.0, zero_b = 0.0;
    double zero_rms = 0.0;
    std::int32_t zero_first = 0, zero_last = 0; ///< both the number of samples when there is none
    std::int32_t min_index = 0;                 ///< of the smallest value, the first of equals
    std::vector<std::int32_t> local_minima;
    using valley = std::pair<std::int32_t, std::int32_t>; ///< first and last sample
    std::uint32_t valley_count = 0;
    std::unique_ptr<valley[]> valleys;

    force_curve_stats() = default;
    force_curve_stats(const force_curve_stats& other) { _copyvar(other); }
    force_curve_stats(force_curve_stats&& other) noexcept = default;
    force_curve_stats& operator=(const force_curve_stats& other)
    {
        if (this != &other) _copyvar(other);
        return *this;
    }
    force_curve_stats& operator=(force_curve_stats&& other) noexcept = default;
    ~force_curve_stats() = default;

    bool hasSlant() const noexcept { return slant_first != slant_last; }
    bool hasZero() const noexcept { return zero_first != zero_last; }
    double zeroAt(double sample) const noexcept { return zero_a + zero_b * sample; }

    void clear() noexcept { *this = force_curve_stats(); }
    /// Replaces the valleys by `count` of zeros.
    void allocate_valleys(std::uint32_t count);
    void free_valleys() noexcept;
    void _copyvar(const force_curve_stats& other);
};
