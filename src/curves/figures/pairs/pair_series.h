#pragma once
#include "vldv_api.h"

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

class SPMDataStream;

namespace vldv::curves {

/// The samples of a curve over those of another image with the same numbers, as far as both go. Raw.
struct pair_series {
    std::vector<double> x, y;
    std::vector<bool> gaps; ///< which pairs were not measured; empty when all were

    std::size_t size() const noexcept { return y.size(); }
    bool isEmpty() const noexcept { return y.empty(); }
    bool isMeasured(std::size_t at) const { return gaps.empty() || !gaps[at]; }
};

/// A one-dimensional image with the texts that tell how long its curves are and what of them was not measured; null
/// where there are none.
struct pair_image {
    const SPMDataStream* stream = nullptr;
    const char *lengths = nullptr, *voids = nullptr;
};

/// Calls `use(first, end)` for each stretch of pairs that were measured.
template <class Use>
void for_each_measured_stretch(const pair_series& series, Use use)
{
    for (std::size_t first = 0; first < series.size();) {
        while (first < series.size() && !series.isMeasured(first)) ++first;
        std::size_t end = first;
        while (end < series.size() && series.isMeasured(end)) ++end;
        if (end > first) use(first, end);
        first = end;
    }
}

} // namespace vldv::curves
