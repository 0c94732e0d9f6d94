#pragma once
#include "base/SPMVar.h"

#include <vector>

namespace vldv::spectra {

/// The options of a spectrum behind those of its base.
std::vector<SPMVar> fourier_options();

} // namespace vldv::spectra
