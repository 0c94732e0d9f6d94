#pragma once
#include "base/VLAxis.h"
#include "vldv_api.h"

class CStorageDoc;

namespace vldv::view {

constexpr unsigned valueAxes = unsigned(-1); ///< the "dimension" of the values in the document's axes

/// Which axes of an image a view shows.
struct shown_axes {
    unsigned x = 0, y = 0, z = 0;
};

/// Replaces steps and units of the axes as one step that can be undone, and tells the views.
/// \param y  of no concern to a curve
VLDV_INTERNAL_API void set_resolution(CStorageDoc& document, unsigned image, const shown_axes& axes, const VLAxis& x,
                                      const VLAxis& y, const VLAxis& z);

} // namespace vldv::view
