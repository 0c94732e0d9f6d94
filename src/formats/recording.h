#pragma once
#include "base/SPMDataStream.h"
#include "platform/draw/bitmap.h"

#include <cstddef>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace vldv::formats {

/// One channel of a file: samples with their axes, and the text parameters that belong to it.
struct recorded_image {
    SPMDataStream stream;
    std::map<std::string, std::string> strings;
    std::vector<std::string>
        notes{}; ///< what is to be said of the samples; each becomes a warning that names the image
};

/// A bitmap, rows bottom-up on 32-bit boundaries, plain or with the standard 5-5-5 or 8-8-8 fields: what the document
/// makes a height image with an overlay from.
struct picture {
    BITMAPINFOHEADER header;
    std::vector<RGBQUAD> palette;
    std::vector<std::byte> bits;
};

/// All that a foreign file holds, in its order. A reader gives every image an id (stream name) that is unique in it.
struct recording {
    std::vector<std::variant<recorded_image, picture>> items;
    std::map<std::string, std::string> strings;
    std::string title; ///< overrides the file name as title when not empty
    /// What the user has to know: what was left out, what is not as the file meant it. A text each, without the file.
    std::vector<std::string> warnings{};
};

} // namespace vldv::formats
