#include "support/manifest.h"

#include "base/text.h"

#include <fstream>
#include <iterator>

namespace test_support {

namespace {

std::vector<std::string> cells_of(std::string line)
{
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::vector<std::string> cells;
    for (const std::string_view piece : base::split(line, '\t')) cells.emplace_back(piece);
    return cells;
}

} // namespace

std::string manifest_row::text(const std::string& column) const
{
    const auto cell = cells.find(column);
    return cell == cells.end() ? std::string() : cell->second;
}

std::optional<double> manifest_row::number(const std::string& column) const { return base::whole_number(text(column)); }

std::string manifest_row::title() const { return text("file") + ": " + text("object") + " " + text("name"); }

std::string sample_folder(const std::string& format) { return std::string(VLDV_SAMPLES) + "/" + format; }

std::vector<manifest_row> read_manifest(const std::string& format)
{
    std::ifstream in(sample_folder(format) + "/MANIFEST.tsv");
    std::string line;
    if (!std::getline(in, line)) return {};
    const std::vector<std::string> columns = cells_of(line);
    std::vector<manifest_row> rows;
    while (std::getline(in, line)) {
        const std::vector<std::string> cells = cells_of(line);
        manifest_row row;
        for (std::size_t i = 0; i < cells.size() && i < columns.size(); ++i) row.cells[columns[i]] = cells[i];
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<manifest_row> manifest_rows(const std::string& format, const std::string& kind)
{
    std::vector<manifest_row> rows = read_manifest(format);
    std::erase_if(rows, [&](const manifest_row& row) { return row.text("kind") != kind; });
    return rows;
}

std::vector<std::byte> read_sample(const std::string& format, const std::string& file)
{
    std::ifstream in(sample_folder(format) + "/" + file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const auto* first = reinterpret_cast<const std::byte*>(bytes.data());
    return {first, first + bytes.size()};
}

} // namespace test_support
