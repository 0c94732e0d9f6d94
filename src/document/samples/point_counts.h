#pragma once
#include "vldv_api.h"

#include <cstddef>

class CStorageDoc;

// The texts that count samples without a measurement: "\Void points" and, of those, "\Absurd points".

namespace vldv::document {

/// How many samples of an image count as not measured, as its reader told; 0 when the text counts those of another
/// size.
VLDV_INTERNAL_API std::size_t unmeasured_points(const CStorageDoc& document, unsigned image);

/// Takes the texts from an image that is a part of the one whose samples were counted.
void drop_point_counts(CStorageDoc& document, unsigned image);

/// Adds to the texts how many samples were counted, "3 of 32", as a part of the last undo step: before an image gets
/// another size in it.
void state_counted_points(CStorageDoc& document, unsigned image);

} // namespace vldv::document
