#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <string>
#include <vector>

namespace vldv::formats {

/// Tag of the grid's length along the fast axis: what makes a TIFF file an image of this instrument.
constexpr unsigned jpkGridTag = 0x8042;

/// Reads all channels of an image file, both directions of a channel into one image.
/// \param ids  those that are in use; the new ones are added
base::read_result<recording> read_jpk_image(source& file, std::vector<std::string>& ids);

} // namespace vldv::formats
