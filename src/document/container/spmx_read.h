#pragma once
#include "formats/source.h"

#include <string>
#include <vector>

class VLFileReader;

namespace document {

/// Reads a native container into `target`, samples straight into the images. \return empty, or why it was refused
/// \param warnings  is told of streams whose samples do not fill their dimensions: what is missing counts as 0
std::string read_spmx(formats::source& file, VLFileReader& target, std::vector<std::string>& warnings);

} // namespace document
