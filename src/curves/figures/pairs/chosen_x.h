#pragma once
#include "base/SPMDataStream.h"
#include "vldv_api.h"

#include <optional>

class CStorageDoc;

namespace vldv::curves {

/// Measures an image of a document against `x`, as one step of that image's history: against `x` itself when it is an
/// image of the document, else against the one that has its name and description, which takes its data with a step of
/// its own, else against a new image. What X itself was measured against stays behind.
/// \return the number of that image; nothing, with nothing changed, where `x` has not one dimension, is the image
/// itself, or there is no such image
VLDV_INTERNAL_API std::optional<unsigned> measure_against(CStorageDoc& document, unsigned image,
                                                          const SPMDataStream& x);

} // namespace vldv::curves
