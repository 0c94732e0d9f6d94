#include "output/csv_text.h"

#include <algorithm>

namespace vldv::output {

namespace {

std::string quoted(const std::string& cell)
{
    if (cell.find_first_of(",\"\r\n") == std::string::npos) return cell;
    std::string out = "\"";
    for (const char each : cell) out += each == '"' ? std::string("\"\"") : std::string(1, each);
    return out + '"';
}

/// Takes a cell off the front of `rest`, up to the tab or line end behind it.
std::string taken_cell(std::string_view& rest)
{
    std::string cell;
    if (rest.starts_with('"')) {
        rest.remove_prefix(1);
        while (!rest.empty()) {
            const bool isMark = rest.front() == '"', isDoubled = rest.starts_with("\"\"");
            if (isMark && !isDoubled) {
                rest.remove_prefix(1);
                break;
            }
            cell += rest.front();
            rest.remove_prefix(isDoubled ? 2 : 1);
        }
    }
    const std::size_t end = std::min(rest.find_first_of("\t\r\n"), rest.size());
    cell += rest.substr(0, end); // what follows a closing mark belongs to the cell
    rest.remove_prefix(end);
    return cell;
}

} // namespace

std::string csv_line(const std::vector<std::string>& cells)
{
    std::string line;
    for (const std::string& cell : cells) line += (&cell == &cells.front() ? "" : ",") + quoted(cell);
    return line + '\n';
}

std::string comma_separated(std::string_view tabbed)
{
    std::string table;
    while (!tabbed.empty()) {
        std::vector<std::string> cells{taken_cell(tabbed)};
        while (tabbed.starts_with('\t')) {
            tabbed.remove_prefix(1);
            cells.push_back(taken_cell(tabbed));
        }
        if (tabbed.starts_with('\r')) tabbed.remove_prefix(1);
        if (tabbed.starts_with('\n')) tabbed.remove_prefix(1);
        table += csv_line(cells);
    }
    return table;
}

} // namespace vldv::output
