#pragma once
#include "platform/app/Host.h"

namespace vldv::view {

/// What a file holds, read whole and let go again: the first surface in the colours that a new window would have, and a
/// line for each image. A file that cannot be read, or is too large to be read in passing, gives a text that says so.
/// \param side  longest side of the picture, pixels
file_preview preview_file(const std::wstring& path, int side);

} // namespace vldv::view
