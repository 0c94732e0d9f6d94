#pragma once
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace test_support {

/// One object of a sample file, as the folder's MANIFEST.tsv tells it. Columns by name: "file", "kind", "object",
/// "name", "nx", "ny", "x_size", "y_size", "xy_unit", "z_unit", "z_min", "z_max", "z_mean", "top_left" …
struct manifest_row {
    std::map<std::string, std::string> cells;

    /// Empty when there is no such column or the cell is empty.
    std::string text(const std::string& column) const;
    /// Nothing when the cell is empty or no number.
    std::optional<double> number(const std::string& column) const;
    /// "file: name" for messages.
    std::string title() const;
};

/// The samples folder for a format ("nanoscope"), without a slash at its end.
std::string sample_folder(const std::string& format);

/// All rows in their order; empty when the folder or its manifest is not there, so that a test can be skipped.
std::vector<manifest_row> read_manifest(const std::string& format);

/// The rows of one kind ("image", "picture", "reject" …).
std::vector<manifest_row> manifest_rows(const std::string& format, const std::string& kind);

/// The bytes of a file; empty when it cannot be read.
std::vector<std::byte> read_sample(const std::string& format, const std::string& file);

} // namespace test_support
