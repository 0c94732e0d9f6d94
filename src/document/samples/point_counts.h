#pragma once
#include "primitives/map/sample_runs.h"
#include "vldv_api.h"

#include <cstddef>
#include <span>

class CStorageDoc;

// The texts that count samples without a measurement: "\Void points" and, of those, "\Absurd points".

namespace vldv::document {

/// How many samples of an image count as not measured, as its reader told; 0 when the text counts those of another
/// size.
VLDV_INTERNAL_API std::size_t unmeasured_points(const CStorageDoc& document, unsigned image);

/// Gives an image that is a part of one of two dimensions what its texts tell of the samples inside. Where it lies its
/// axes tell. It has no such texts when it is another image's part, or the places in the whole are not told.
VLDV_INTERNAL_API void keep_part_of_points(CStorageDoc& part, unsigned image, const CStorageDoc& whole, unsigned from);

/// Replaces the texts, as a part of the last undo step, for an image of another size.
/// \param samples  of the image then \param unmeasured  those that were not measured, in rising order; not empty
VLDV_INTERNAL_API void replace_points(CStorageDoc& document, unsigned image, std::size_t samples,
                                      std::span<const primitives::sample_run> unmeasured);

/// Makes the texts of an image that was computed, whatever they told before. \param unmeasured  may be empty
VLDV_INTERNAL_API void tell_points(CStorageDoc& document, unsigned image,
                                   std::span<const primitives::sample_run> unmeasured);

/// Adds to the texts how many samples were counted, "3 of 32", and takes away which they are, as a part of the last
/// undo step: before an image gets another shape in it.
void state_counted_points(CStorageDoc& document, unsigned image);

} // namespace vldv::document
