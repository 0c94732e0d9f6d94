#pragma once
#include "vldv_api.h"

#include <cstdint>

namespace vldv::platform {

/// The part of a curve that a pane shows along X, as fractions of the curve's length: 0 is its first sample, 1 its
/// last.
struct VLDV_INTERNAL_API shown_part {
    double from = 0.0, to = 1.0;

    double width() const noexcept { return to - from; }
    bool isWhole() const noexcept { return from <= 0.0 && to >= 1.0; }
    /// Where a fraction of the curve stands in the pane: 0 at its left, 1 at its right, beyond them out of sight.
    double toPane(double share) const noexcept { return (share - from) / width(); }
    double fromPane(double share) const noexcept { return from + share * width(); }
    bool operator==(const shown_part&) const = default;
};

/// A part that is smaller by `factor`, with what stands at `around`, a fraction of the pane, still there as far as the
/// curve's ends allow. It keeps a few samples at least.
VLDV_INTERNAL_API shown_part zoomed(const shown_part& part, double factor, double around,
                                    std::uint32_t samples) noexcept;
/// The same width further along the curve by a fraction of the pane, up to the curve's ends.
VLDV_INTERNAL_API shown_part panned(const shown_part& part, double by) noexcept;

} // namespace vldv::platform
