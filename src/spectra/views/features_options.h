#pragma once
#include "base/SPMVar.h"

#include <vector>

class SPMDataStream;

namespace vldv::spectra {

/// The options of features behind those of a histogram without its axis; last come the choices of axes.
/// \param stream  the image; null for none
std::vector<SPMVar> features_options(const SPMDataStream* stream);

} // namespace vldv::spectra
