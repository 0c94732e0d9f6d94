#include "cli/output/csv_text.h"

namespace vldv::cli {

namespace {

std::string quoted(const std::string& cell)
{
    if (cell.find_first_of(",\"\r\n") == std::string::npos) return cell;
    std::string out = "\"";
    for (const char each : cell) out += each == '"' ? std::string("\"\"") : std::string(1, each);
    return out + '"';
}

} // namespace

std::string csv_line(const std::vector<std::string>& cells)
{
    std::string line;
    for (const std::string& cell : cells) line += (&cell == &cells.front() ? "" : ",") + quoted(cell);
    return line + '\n';
}

} // namespace vldv::cli
