#pragma once
#include "formats/shared/text_units.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::formats {

/// What a header says about the numbers below it.
struct table_header {
    enum class shape {
        open,   ///< the numbers decide
        matrix, ///< rows of an image
        grid,   ///< x, y and values of image points
        curve,  ///< columns over the first
    };
    shape form = shape::open;
    /// Rows in ascending y, each in descending x; else the top row stands first.
    bool startsAtLowerRight = false;
    /// Lines of the matrix are columns of the image from the left, each from the bottom up.
    bool linesAreColumns = false;
    /// The first line of numbers holds how many points follow.
    bool countFirst = false;
    std::size_t columns = 0, rows = 0; ///< of the matrix; 0 when not stated
    std::string channel;
    std::optional<quantity> width, height; ///< of the whole image
    std::optional<quantity> pixel;         ///< side of one point
    double factor = 1.0;                   ///< from a number to the value in `units`
    std::string units;                     ///< of the values
    std::string origin;                    ///< header fields that factor and units come from
    std::vector<column_heading> headings;  ///< when the header itself fixes the columns
    std::vector<std::string> notes;        ///< of fields that are damaged
    const char* writer = nullptr;          ///< the dialect, for people; null for plain tables
};

/// A header as lines of UTF-8 without their ends, in order; blank lines are left out.
using header_lines = std::vector<std::string>;

/// Reads the dialects that announce themselves in their first lines. A header of none of them gives an open one.
table_header parse_header(const header_lines& lines);

/// True when the first lines are unmistakably those of a dialect that `parse_header` knows.
bool is_certain_header(const header_lines& lines);

/// True for text exports whose numbers need a reader of their own.
bool is_foreign_header(const header_lines& lines);

/// The line that ends a header which may itself hold lines of numbers, or an empty text: looked for in `text`.
std::string_view header_end_mark(std::string_view text) noexcept;

/// Names and units of the columns from the last line of a header, when it names exactly `columns`; else empty. `used`
/// receives the number of that line in `lines`, or their count.
std::vector<column_heading> find_headings(const header_lines& lines, std::size_t columns, std::size_t& used);

/// True for a line with digits that heads columns all the same: "100 100 nm", sizes with their unit, and "0 T1 T2",
/// more names than numbers.
bool may_be_heading(std::string_view line);

/// "key: value", "key = value" and "key TAB value" lines as strings, all but line `skipped`; what is neither comes
/// together under "Header", repeated keys keep all their values.
std::map<std::string, std::string> header_strings(const header_lines& lines, std::size_t skipped);

} // namespace vldv::formats
