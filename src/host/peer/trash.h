#pragma once
#include <string>

namespace vldv::host {

/// Moves a file to the desktop's trash, under a name that the toolkit can write when its own has bytes that are no
/// UTF-8. \return false when it stayed where it was
bool move_to_trash(const std::wstring& path);

} // namespace vldv::host
