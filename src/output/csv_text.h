#pragma once
#include "vldv_api.h"

#include <string>
#include <string_view>
#include <vector>

namespace vldv::output {

/// A line of a table of comma-separated values with its line end (RFC 4180, with a line feed alone): cells with commas,
/// quotes or line ends stand in quotes.
VLDV_INTERNAL_API std::string csv_line(const std::vector<std::string>& cells);

/// A table whose cells are parted by tabs and whose lines end in "\r\n" or "\n", with commas. A cell that begins with a
/// quotation mark ends at its partner and may hold tabs and line ends; marks inside are doubled.
std::string comma_separated(std::string_view tabbed);

} // namespace vldv::output
