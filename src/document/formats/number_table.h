#pragma once
#include "base/byte_reader.h"
#include "document/formats/text_lines.h"
#include "document/formats/text_numbers.h"

#include <cstddef>
#include <string>
#include <vector>

namespace formats {

class source;

/// Numbers in rows of equal length.
struct number_table {
    std::vector<double> values; ///< row after row, missing points are NaN
    std::size_t columns = 0;
    std::size_t rows = 0;
    std::string comments; ///< UTF-8, the lines between the numbers that hold none
    std::string note;     ///< what was left out; empty when nothing was

    double at(std::size_t row, std::size_t column) const noexcept { return values[row * columns + column]; }
    std::vector<double> column(std::size_t index) const;
};

/// Reads the lines of numbers behind `start`. Without `columns` all lines must be as long as the first; a last line
/// that is shorter is left out with a note, any other is refused. With `columns`, and `rows` if known, lines may break
/// anywhere and the numbers must be just as many.
base::read_result<number_table> read_numbers(const text_content& content, line_cursor start,
                                             const number_layout& layout, std::size_t columns, std::size_t rows,
                                             source& file);

} // namespace formats
