#pragma once
#include "document/Decorations.h"
#include "vldv_api.h"

class CStorageDoc;

namespace vldv::surface {

/// What was drawn sample by sample stands in one group of an image's drawings: a mask of the objects, one of the
/// steps, each under its name. \return the mask of a name, or null
const document::decoration* kept_mask(const document::decorations* drawings, const char* name);
/// Keeps a mask with an image in place of the one of its name; the others stay.
VLDV_INTERNAL_API void store_mask(CStorageDoc& document, unsigned image, const VLPluginDecoration& mask);

} // namespace vldv::surface
