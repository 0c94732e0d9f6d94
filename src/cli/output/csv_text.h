#pragma once
#include <string>
#include <vector>

namespace vldv::cli {

/// A line of a table of comma-separated values with its line end (RFC 4180, with a line feed alone): cells with commas,
/// quotes or line ends stand in quotes.
std::string csv_line(const std::vector<std::string>& cells);

} // namespace vldv::cli
