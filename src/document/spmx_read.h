#pragma once
#include "document/formats/source.h"

#include <string>

class VLFileReader;

namespace document {

/// Reads a native container into `target`, samples straight into the images. \return empty, or why it was refused
std::string read_spmx(formats::source& file, VLFileReader& target);

} // namespace document
