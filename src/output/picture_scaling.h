#pragma once
#include "output/picture_writer.h"

#include <cstddef>
#include <vector>

namespace output {

/// The picture in another size, 3 bytes a pixel, rows without padding: means of the covered area where it shrinks,
/// whole pixels where it grows, each direction by itself. Sizes must be positive.
std::vector<std::byte> scaled_picture(const pixel_view& source, int width, int height);

} // namespace output
