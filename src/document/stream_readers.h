#pragma once
#include "base/SPMDataStream.h"
#include "vldv_api.h"

#include <istream>

// Readers of one channel from a stream that holds a file of a kind that is known, without the other files of its scan.

/// Reads the first object of a Digital Surf file. \return false, with `stream` as it was, when it cannot be read
VLDV_API bool sur_reader(std::istream& in, SPMDataStream& stream);

/// Reads the image of a Pacific Nanotechnology file. \return false, with `stream` as it was, when it cannot be read
VLDV_API bool pni_reader(std::istream& in, SPMDataStream& stream);
