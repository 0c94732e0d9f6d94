#pragma once
#include "platform/geometry.h"

#include <cstdint>
#include <span>
#include <vector>

namespace surface {

/// A window of samples as they are shown: as many as the picture has pixels.
struct fitted_window {
    const std::int16_t* samples = nullptr;
    int step = 0; ///< bytes from row to row
};

/// Brings windows of an image to the size of a picture. Keeps its buffer.
class window_fitter {
public:
    /// \param image   samples of the whole frame, rows of `rowLength`
    /// \param window  the part on show; inside the image
    fitted_window fit(const std::int16_t* image, int rowLength, const CRect& window, CSize size);

private:
    std::vector<std::int16_t> buffer;
};

} // namespace surface
