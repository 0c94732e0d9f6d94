#pragma once
#include "platform/draw/geometry.h"
#include "view/dialogs/resolution.h"
#include "vldv_api.h"

#include <optional>

class CWnd;

namespace vldv::view {

/// What was measured in an image, whose true size the user may know.
struct measured_distance {
    CSize samples;  ///< from its first point to its last, with signs
    int height = 0; ///< steps of the values between them; 0 when it tells nothing
};

/// Shows size and step of the axes and lets the user correct them and their units. Step and size follow each other; a
/// curve has no Y.
/// \param distance  the steps of X and Y are scaled alike when its true length is entered, those of Z when its height
/// is
/// \return whether an axis was changed
VLDV_INTERNAL_API bool run_resolution(CStorageDoc& document, unsigned image, const shown_axes& axes,
                                      const std::optional<measured_distance>& distance, CWnd* parent);

} // namespace vldv::view
