#include "curves/figures/force/force_curve_stats.h"

#include <algorithm>

void force_curve_stats::allocate_valleys(std::uint32_t count)
{
    free_valleys();
    if (count == 0) return;
    valleys = std::make_unique<valley[]>(count);
    valley_count = count;
}

void force_curve_stats::free_valleys() noexcept
{
    valleys.reset();
    valley_count = 0;
}

void force_curve_stats::_copyvar(const force_curve_stats& other)
{
    force_curve_stats copy;
    copy.local_minima = other.local_minima;
    copy.allocate_valleys(other.valley_count);
    std::copy_n(other.valleys.get(), other.valley_count, copy.valleys.get());
    copy.slant_a = other.slant_a;
    copy.slant_b = other.slant_b;
    copy.slant_rms = other.slant_rms;
    copy.slant_first = other.slant_first;
    copy.slant_last = other.slant_last;
    copy.zero_a = other.zero_a;
    copy.zero_b = other.zero_b;
    copy.zero_rms = other.zero_rms;
    copy.zero_first = other.zero_first;
    copy.zero_last = other.zero_last;
    copy.min_index = other.min_index;
    *this = std::move(copy);
}
