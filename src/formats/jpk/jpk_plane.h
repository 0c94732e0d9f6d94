#pragma once
#include "formats/shared/force/directions.h"
#include "formats/shared/tiff_directory.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vldv::formats {

/// One directory of an image file: a channel in one direction.
struct jpk_plane {
    channel_plane plane;
    std::vector<value_scale> others; ///< further calibrations
    SPMVarArrayType type = SPM_ARRAY_INT16;
    std::optional<double> unmeasured; ///< raw number of points that were not measured
    bool isTopFirst = false;
    std::uint32_t rowsPerStrip = 0;
    std::vector<double> offsets, counts;
    std::map<std::string, std::string> strings;
};

/// What the file calls the channel of a directory; may be empty.
std::string jpk_channel_name(const tiff_directory& directory);

/// True for a small picture of the whole instead of a channel.
bool is_jpk_thumbnail(const tiff_directory& directory);

/// \param first  the first directory of the file, which holds what all share
base::read_result<jpk_plane> describe_jpk_plane(std::uint64_t fileBytes, const tiff_directory& directory,
                                                const tiff_directory& first);

/// Texts of the file, from its first directory.
std::map<std::string, std::string> jpk_document_texts(const tiff_directory& first);

} // namespace vldv::formats
