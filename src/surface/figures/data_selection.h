#pragma once
#include "base/SPMDataStream.h"
#include "plugins/PluginRequest.h"
#include "surface/figures/selection_state.h"

#include <span>
#include <vector>

namespace vldv::surface {

/// What is selected, as modules are told, by the mode: the rectangles that make up a region, from the lowest row on;
/// the measured segment or the arms of an angle; marks; corners of curves, the active one first, or of the traced
/// object. Nothing lies outside the image.
std::vector<VLPluginDataSelection> data_selections(const selection_state& state, CSize image);

/// Gives `target`, which has the outline of `source`, the box of all selected rectangles as shape and samples; leaves
/// it as it is without any.
void copy_selected(SPMDataStream& target, const SPMDataStream& source, std::span<const VLPluginDataSelection> selected);

} // namespace vldv::surface
