#pragma once
#include <string>

namespace vldv::view {

/// Replaces a file by a text once it is written whole, and tells the user of a failure.
void save_table(const wchar_t* path, const std::string& text);

} // namespace vldv::view
