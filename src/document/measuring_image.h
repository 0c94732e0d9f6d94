#pragma once
#include "vldv_api.h"

#include <optional>

class CStorageDoc;

namespace vldv::document {

/// The other image that an image is measured against, by the name of its parameter stream.
VLDV_INTERNAL_API std::optional<unsigned> measuring_image(const CStorageDoc& document, unsigned image);
/// Whether another image is measured against this one: it is shown as that one's axis.
VLDV_INTERNAL_API bool measures_another(const CStorageDoc& document, unsigned image);

} // namespace vldv::document
