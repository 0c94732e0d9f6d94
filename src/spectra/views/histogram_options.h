#pragma once
#include "base/SPMVar.h"
#include "base/VLAxis.h"

#include <vector>

namespace vldv::spectra {

/// The options of a histogram behind those of its base, with a choice among the axes of its values.
/// \param values  null: there is nothing to choose from
std::vector<SPMVar> histogram_options(const VLAxesContainer* values);

} // namespace vldv::spectra
