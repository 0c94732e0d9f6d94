#pragma once
#include "cli/pictures/drawing.h"
#include "platform/draw/geometry.h"

#include <functional>
#include <optional>
#include <string>

class CDCView;
class CScale;
class CStorageDoc;

namespace vldv::cli {

/// A window on one surface of a document, and what stands in it.
struct surface_window {
    unsigned image = 0, sub = 0;
    std::function<void(CScale&)> setUpScale;
    std::string scaling; ///< value of "scaling.z"; empty leaves what the view has
    bool isHighlighted = false, isCompact = false;
    std::optional<CRect> part; ///< samples that give the range of heights; all when none
    std::optional<CSize> size; ///< pixels; that in which the window opens when none
    /// Sets further options of the view. \return the reason why it cannot, or empty
    std::function<std::string(CDCView&)> setOptions;
};

/// Draws the window, legend and all. The image consists of 16-bit samples.
/// \return the reason why there is no picture, or empty
std::string draw_surface_window(CStorageDoc& document, const surface_window& window, const drawing_user& use);

} // namespace vldv::cli
