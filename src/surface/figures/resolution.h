#pragma once
#include "base/VLAxis.h"
#include "surface/figures/selection_state.h"

#include <optional>

class CStorageDoc;
class CWnd;

namespace vldv::surface {

/// Which axes of an image a view shows.
struct shown_axes {
    unsigned x = 0, y = 0, z = 0;
};

/// Replaces steps and units of the axes as one step that can be undone, and tells the views.
void set_resolution(CStorageDoc& document, unsigned image, const shown_axes& axes, const VLAxis& x, const VLAxis& y,
                    const VLAxis& z);

/// Shows size and step of the axes and lets the user correct them and their units. Step and size follow each other.
/// \param distance  a drag whose true length the user may enter: the steps of X and Y are then scaled alike
/// \return whether an axis was changed
bool run_resolution(CStorageDoc& document, unsigned image, const shown_axes& axes,
                    const std::optional<selection_rect>& distance, CWnd* parent);

} // namespace vldv::surface
