#pragma once
#include "cli/pictures/drawing.h"
#include "cli/results/picture_choice.h"
#include "output/picture_writer.h"

#include <cstddef>
#include <vector>

namespace vldv::cli {

/// The pixels of a surface: row 0 is the lowest of the surface and the last of the picture.
struct plain_picture {
    std::vector<std::byte> pixels;
    int width = 0, height = 0;
    output::pixel_view view() const;
};

/// \return empty, or why there is no picture
std::string draw_plain(const CStorageDoc& document, const picture_number& which, const picture_options& options,
                       plain_picture& picture);

/// What puts the pixels on a page, as long as they are there.
drawing drawing_of(const plain_picture& picture);

} // namespace vldv::cli
