#pragma once
#include "base/SPMDataStream.h"
#include "platform/draw/geometry.h"

namespace vldv::surface {

/// Gives `target` the samples of `source` inside `bounds`, of all sub-images, with the axes of both dimensions
/// beginning at its corner; all else of `target` stays. `bounds` is cut to the image. Used for copies of a selection
/// and for the window that magnifies it, which is written again and again.
/// \return a length changed. With nothing inside, or an image of other than two dimensions, nothing is done.
/// \throws std::bad_alloc with `target` unchanged
bool write_crop(SPMDataStream& target, const SPMDataStream& source, const CRect& bounds);

} // namespace vldv::surface
