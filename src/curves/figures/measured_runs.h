#pragma once
#include "curves/figures/profile.h"
#include "document/MinMaxInfo.h"
#include "vldv_api.h"

namespace vldv::curves {

/// Calls `use(first, end)` with the samples of a curve that were measured and lie behind each other.
template <class Use>
void for_each_measured_run(const profile& section, unsigned curve, Use use)
{
    const std::size_t length = section.lengthOf(curve);
    if (section.gaps.empty()) {
        if (length > 0) use(std::size_t{0}, length);
        return;
    }
    for (std::size_t first = 0; first < length;) {
        while (first < length && !section.isMeasured(curve, first)) ++first;
        std::size_t end = first;
        while (end < length && section.isMeasured(curve, end)) ++end;
        if (end > first) use(first, end);
        first = end;
    }
}

/// Range of what was measured of all curves.
VLDV_INTERNAL_API CMinMaxInfo measured_range(const profile& section);

} // namespace vldv::curves
