#pragma once
#include "platform/draw/geometry.h"

#include <vector>

namespace vldv::cli {

/// The part of an image that an option asks for, its corners put in order and what lies outside left out.
/// \param sides  left, top, right, bottom; right and bottom lie outside
/// \throws std::runtime_error that names the option when no sample is left
CRect part_of_image(const char* option, const std::vector<int>& sides, CSize image);

} // namespace vldv::cli
