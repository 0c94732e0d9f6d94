#pragma once
#include "base/SPMDataStream.h"
#include "curves/figures/force/force_analysis.h"
#include "vldv_api.h"

#include <string>
#include <vector>

class CStorageDoc;

namespace vldv::curves {

/// One force curve of an image.
struct placed_curve {
    unsigned sub = 0;
    int column = -1, row = -1; ///< of a volume's grid
    bool isHeld = false;       ///< the probe neither approaches nor leaves
    force_samples samples;     ///< none when it was not measured
    std::size_t voids = 0;     ///< samples that were not measured
};

/// The force curves of an image of one or three dimensions, each as long as it was measured, and what they are measured
/// against. Looks into the document, which must not change meanwhile.
struct force_image {
    unsigned image = 0;
    SPMDataStream converted, convertedX; ///< when the samples are not 16-bit
    VLAxis values, x;                    ///< of the samples; of the parameter stream, else along the curves
    std::string parameter;               ///< label of the parameter stream; empty without one
    std::vector<placed_curve> curves;
};

constexpr unsigned noImage = unsigned(-1);
/// The image that holds what another is measured against, when it is there and fits: as many curves, or those of one
/// sub-image for all. \return `noImage` without one
VLDV_INTERNAL_API unsigned parameter_of(const CStorageDoc& document, unsigned image);

/// True for an image that only tells where another was measured.
VLDV_INTERNAL_API bool is_parameter(const CStorageDoc& document, unsigned image);
/// True for images of one or three dimensions that hold forces or vertical deflections and are no parameter.
VLDV_INTERNAL_API bool is_force_image(const CStorageDoc& document, unsigned image);

/// \throws std::runtime_error when samples have no type; std::bad_alloc
VLDV_INTERNAL_API force_image force_curves_of(const CStorageDoc& document, unsigned image);

} // namespace vldv::curves
