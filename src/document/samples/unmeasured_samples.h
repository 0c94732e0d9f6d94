#pragma once
#include "primitives/map/sample_runs.h"
#include "vldv_api.h"

#include <cstddef>
#include <vector>

class CStorageDoc;

namespace vldv::document {

/// Which samples of an image were not measured, as its texts tell. They hold numbers that are no heights.
class VLDV_INTERNAL_API unmeasured_samples {
public:
    unmeasured_samples(const CStorageDoc& document, unsigned image);

    bool isEmpty() const noexcept { return runs.empty(); }
    /// Those of a sub-image, counted from its first sample, in rising order.
    std::vector<primitives::sample_run> of(unsigned sub) const;
    /// Samples of the whole image that count as not measured while no text tells which they are: nobody can leave
    /// them out.
    std::size_t unplaced() const noexcept { return hidden; }

private:
    std::vector<primitives::sample_run> runs; ///< through the whole image
    std::size_t frame = 0;                    ///< samples of a sub-image
    std::size_t hidden = 0;
};

} // namespace vldv::document
