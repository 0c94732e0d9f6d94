#pragma once
#include "surface/figures/resolution.h"
#include "surface/figures/selection_state.h"

#include <optional>

class CWnd;

namespace vldv::surface {

/// Shows size and step of the axes and lets the user correct them and their units. Step and size follow each other.
/// \param distance  a drag whose true length the user may enter: the steps of X and Y are then scaled alike
/// \return whether an axis was changed
bool run_resolution(CStorageDoc& document, unsigned image, const shown_axes& axes,
                    const std::optional<selection_rect>& distance, CWnd* parent);

} // namespace vldv::surface
