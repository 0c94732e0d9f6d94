#pragma once
#include "platform/draw/geometry.h"
#include "primitives/map/range.h"
#include "primitives/map/sample_runs.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vldv::view {

/// A window of samples as they are shown: as many as the picture has pixels.
struct fitted_window {
    const std::int16_t* samples = nullptr;
    int step = 0;                   ///< bytes from row to row
    primitives::height_range range; ///< of all samples of the window
};

/// Where samples of an image lie in the picture of a window of it: the pixels whose middles show them, at least one in
/// each direction; empty where the window shows none. `window` and `size` are not empty.
VLDV_INTERNAL_API CRect shown_part(CRect part, const CRect& window, CSize size) noexcept;

/// Brings windows of an image to the size of a picture and keeps the last one: what changes colours alone needs no new
/// one.
class VLDV_INTERNAL_API window_fitter {
public:
    /// \param image   samples of the whole frame, rows of `rowLength`
    /// \param window  the part on show; inside the image
    fitted_window fit(const std::int16_t* image, int rowLength, const CRect& window, CSize size);
    /// The samples have changed.
    void forget() noexcept { last = {}; }

private:
    struct request {
        const std::int16_t* image = nullptr;
        int rowLength = 0;
        CRect window;
        CSize size;
        bool operator==(const request&) const = default;
    };
    request last;
    primitives::height_range range;
    std::vector<std::int16_t> buffer;
};

/// The range of the samples of a part of an image, as a region of interest; the last one is kept, so that what changes
/// colours alone reads none.
class VLDV_INTERNAL_API range_keeper {
public:
    /// \param image  samples of the whole frame, rows of `rowLength`
    /// \param part   inside the image, not empty
    /// \param unmeasured  samples of the image that do not count, in rising order, unless the part has no others
    primitives::height_range of(const std::int16_t* image, int rowLength, const CRect& part,
                                std::span<const primitives::sample_run> unmeasured = {});
    /// The samples have changed.
    void forget() noexcept { lastImage = nullptr; }

private:
    const std::int16_t* lastImage = nullptr; ///< with the same samples not measured, until they change
    CRect lastPart;
    primitives::height_range range;
};

} // namespace vldv::view
