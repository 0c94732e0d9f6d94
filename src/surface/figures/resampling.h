#pragma once
#include "base/SPMDataStream.h"
#include "primitives/resample/resample.h"

#include <string>

class CStorageDoc;

namespace vldv::surface {

constexpr int mostSideSamples = 32768; ///< of a resampled image

/// What a user chooses for an image that is to have another size.
struct resample_choice {
    int width = 1, height = 1; ///< samples
    primitives::interpolation method = primitives::interpolation::nearest;
};

/// A copy of a stream of 16-bit images, every sub-image in the chosen size, its axes following: a feature keeps its
/// place. \return the reason why it cannot be made, with `target` as it was, or empty
std::string resample_stream(const SPMDataStream& source, const resample_choice& choice, SPMDataStream& target);

/// Resamples an image of a document as a step that can be undone, and tells its views.
/// \return the reason why nothing was changed, or empty
std::string resample_image(CStorageDoc& document, unsigned image, const resample_choice& choice);

} // namespace vldv::surface
