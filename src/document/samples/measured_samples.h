#pragma once
#include "document/MinMaxInfo.h"
#include "document/samples/unmeasured_samples.h"
#include "vldv_api.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

class CStorageDoc;

namespace vldv::document {

/// The 16-bit samples of an image without what stands behind the ends of its curves and what was not measured. The
/// document must outlive this and not change.
class VLDV_INTERNAL_API measured_samples {
public:
    measured_samples(const CStorageDoc& document_, unsigned image_);

    unsigned imageNumber() const noexcept { return image; }
    /// Those of a sub-image: as they stand in the document, or a copy where some do not count, which lasts until the
    /// next call. Empty when nothing was measured. \throws std::bad_alloc
    std::span<const std::int16_t> of(unsigned sub);
    /// Lowest and highest of a sub-image; nothing when nothing was measured.
    std::optional<CMinMaxInfo> rangeOf(unsigned sub);
    const unmeasured_samples& unmeasured() const noexcept { return voids; }

private:
    const CStorageDoc& document;
    unsigned image;
    std::size_t points = 0;
    std::vector<std::size_t> lengths; ///< of all curves; empty when they are whole
    unmeasured_samples voids;
    std::vector<std::int16_t> copy;
};

} // namespace vldv::document
