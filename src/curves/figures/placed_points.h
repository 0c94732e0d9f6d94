#pragma once
#include "curves/figures/profile.h"
#include "vldv_api.h"

#include <vector>

namespace vldv::curves {

/// Points that keep their place on an image whose number of samples changes: taken from where they were put last, so
/// that an image that becomes what it was finds them where they were.
class VLDV_INTERNAL_API placed_points {
public:
    /// They are put somewhere else; the next image that is asked for is the one that they are put on.
    void forget() noexcept { lengths.clear(); }
    /// The points on an image with these lengths, in samples.
    void settle(const std::vector<std::int64_t>& now, std::vector<grid_point>& points);

private:
    std::vector<std::int64_t> lengths;
    std::vector<grid_point> put;
};

} // namespace vldv::curves
