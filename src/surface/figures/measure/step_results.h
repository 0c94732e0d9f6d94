#pragma once
#include "base/SPMDataStream.h"
#include "document/StorageDoc.h"
#include "surface/figures/measure/step_search.h"
#include "surface/figures/sample_mask.h"
#include "vldv_api.h"

#include <deque>
#include <vector>

namespace vldv::surface {

inline constexpr const char* stepsMaskName = "steps_mask";

/// The steps of an image as one drawing: a bitmap over it with 1 where a step runs.
class step_mask : public sample_mask {
public:
    step_mask(const std::deque<surface_step>& steps, CSize image_);
    VLPluginDecoration record(const VLAxis& x, const VLAxis& y);
};

/// The columns of a step along the rows, over axes like those of its image and over lines: "step0" for number 0. Steps
/// that are met from the right count their columns from there.
/// \param width  columns of the image
SPMDataStream make_step_stream(const surface_step& step, unsigned number, steps_direction direction, int width,
                               const VLAxis& x, const VLAxis& y);

inline constexpr unsigned noImage = unsigned(-1);

/// What earlier searches left: the images whose names begin with "step", in rising order.
/// \param kept  is none of them, whatever its name
VLDV_INTERNAL_API std::vector<unsigned> step_images(const CStorageDoc& document, unsigned kept = noImage);
/// Removes them, the last one first.
VLDV_INTERNAL_API void remove_step_images(CStorageDoc& document, unsigned kept = noImage);
/// Appends an image for each step of an image, numbered from `firstNumber`; the settings, as people are shown them,
/// become its strings, and the name of the image.
/// \param axisX, axisY  axes of the image that the columns and the rows are measured with
/// \return the number that follows
VLDV_INTERNAL_API unsigned add_step_images(CStorageDoc& document, unsigned image, const std::deque<surface_step>& steps,
                                           const step_settings& settings, unsigned firstNumber = 0, unsigned axisX = 0,
                                           unsigned axisY = 0);

} // namespace vldv::surface
