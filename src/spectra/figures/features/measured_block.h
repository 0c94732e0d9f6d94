#pragma once
#include "platform/draw/geometry.h"
#include "primitives/map/sample_runs.h"
#include "primitives/resample/resample.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vldv::spectra {

/// A rectangle of an image for a search of features: samples that were not measured are no part of any, and of no
/// level.
class VLDV_INTERNAL_API measured_block {
public:
    /// \param whole       the image, without gaps between its rows; must outlive this
    /// \param rect        inside it
    /// \param unmeasured  samples of the image, in rising order \throws std::bad_alloc
    measured_block(primitives::const_height_block whole, const CRect& rect,
                   std::span<const primitives::sample_run> unmeasured);
    measured_block(const measured_block&) = delete;
    measured_block& operator=(const measured_block&) = delete;

    /// Those of the rectangle, what was not measured below every threshold.
    primitives::const_height_block heights() const noexcept { return shown; }
    /// Measured heights without their places; the rectangle itself where all are.
    primitives::const_height_block measured() const noexcept;
    std::size_t leftOut() const noexcept { return missing; }

private:
    primitives::const_height_block shown;
    std::vector<std::int16_t> filled, kept; ///< empty while all was measured
    std::size_t missing = 0;
};

} // namespace vldv::spectra
