#include "cli/output/aligned.h"

#include "base/text.h"
#include "cli/output/terminal.h"

#include <algorithm>

namespace vldv::cli {

namespace {

std::size_t characters(const std::string& text) { return base::widen(text).size(); }

} // namespace

std::string aligned(const std::vector<std::vector<std::string>>& rows, const std::string& indent)
{
    std::vector<std::vector<std::string>> shown = rows;
    for (auto& row : shown)
        for (std::string& cell : row) cell = visible_text(cell); // a line end in one would look like a row
    std::vector<std::size_t> widths;
    for (const auto& row : shown) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], characters(row[i]));
    }
    std::string text;
    for (const auto& row : shown) {
        std::string line = indent;
        for (std::size_t i = 0; i < row.size(); ++i)
            line += row[i] + std::string(widths[i] - characters(row[i]) + 2, ' ');
        text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }
    return text;
}

} // namespace vldv::cli
