#pragma once
#include "base/streams/byte_reader.h"
#include "formats/text/row_gaps.h"
#include "formats/text/text_lines.h"
#include "formats/text/text_numbers.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vldv::formats {

class source;

/// Numbers in rows of equal length.
struct number_table {
    std::vector<double> values; ///< row after row, missing points are NaN
    std::size_t columns = 0;
    std::size_t rows = 0;
    std::string comments;           ///< UTF-8, the lines between the numbers that hold none
    std::vector<std::string> notes; ///< what was left out
    bool isCut = false;             ///< the last line lacks its end
    row_gaps gaps;                  ///< between the rows of a table of which the header does not state the size

    double at(std::size_t row, std::size_t column) const noexcept { return values[row * columns + column]; }
    std::vector<double> column(std::size_t index) const;
};

/// What a header states of the numbers below it; 0 where it is silent.
struct stated_table {
    std::size_t columns = 0, rows = 0;
    /// Every line is a row, `rows` of them are read, and a line that holds no numbers ends them.
    bool linesAreRows = false;
    /// The lines are rows of an image: a comment mark or a word in one stands for a number that is lost.
    bool isMatrix = false;
    std::size_t rowFields = 0; ///< of such a row when it comes first; 0 when none does
};

/// Reads the lines of numbers behind `at`, which moves behind the last one read. Without stated columns all lines must
/// be as long as the first; a last line that is shorter is left out with a note, any other is refused. With them the
/// numbers must be just as many as stated, and lines may break rows in an orderly way: all alike, between rows only,
/// or each row in the same places. Other lines have lost a number or hold one too many.
base::read_result<number_table> read_numbers(const text_content& content, line_cursor& at, const number_layout& layout,
                                             const stated_table& stated, source& file);

} // namespace vldv::formats
