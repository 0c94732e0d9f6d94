#pragma once
#include "formats/recording.h"

#include <span>
#include <string>

namespace vldv::formats {

/// Decodes run-length coded pixels of 4 or 8 bits (by the picture's bit count) into `out`, whose bits are zero and
/// whose rows run bottom-up as the code does. Pixels that the code skips keep index 0.
/// \return an error text, or empty
std::string decode_bmp_rle(std::span<const std::byte> code, picture& out);

} // namespace vldv::formats
