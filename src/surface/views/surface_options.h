#pragma once
#include "base/SPMDataStream.h"
#include "base/SPMVar.h"

#include <vector>

namespace vldv::surface {

/// The options that a surface adds to those of every image view, with their defaults. Last come the choices of axes of
/// the image, as many as it has.
/// \param stream  the image; null for none
std::vector<SPMVar> surface_options(const SPMDataStream* stream);

} // namespace vldv::surface
