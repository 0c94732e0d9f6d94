#pragma once
#include <string>
#include <vector>

namespace vldv::cli {

/// Rows of cells as lines of columns, two blanks apart, every line behind `indent`. Rows may be of different lengths;
/// widths count characters, not bytes.
std::string aligned(const std::vector<std::vector<std::string>>& rows, const std::string& indent = {});

} // namespace vldv::cli
