#pragma once
#include "base/SPMVar.h"
#include "base/VLAxis.h"

#include <vector>

namespace vldv::curves {

/// The options of a view of pairs behind those of its base. \param x,y  value axes of the two images, or null
std::vector<SPMVar> pair_options(const VLAxesContainer* x, const VLAxesContainer* y);
/// Makes the margins follow the options that the user sets.
void tie_pair_margins(SPMVar* options, unsigned count);

} // namespace vldv::curves
