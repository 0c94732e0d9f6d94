#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace vldv::formats {

/// Lines between two rows of numbers, or behind the last one, that are no such row.
struct row_gap {
    std::size_t row = 0;     ///< rows of numbers above it
    bool isLast = false;     ///< none is below it
    std::size_t line = 0;    ///< number of its first line, from 1
    std::size_t blanks = 0;  ///< lines without anything
    std::size_t words = 0;   ///< lines that hold something, but neither a remark nor as many fields as a row
    std::size_t remarks = 0; ///< comments and lines such as "key: value"
    std::size_t partly = 0;  ///< of `values`: rows of which most fields are numbers
    std::size_t rowLine = 0; ///< of the first of `values`
    bool mayBeTail = false;  ///< one of `values` is no row behind the last one: a sentence, or nothing
    /// Row after row its lines that have as many fields as there are columns, what is no number as NaN.
    std::vector<double> values;
};

/// All gaps of a table. Of those without values only so many are kept: a table that has more is spaced out.
class row_gaps {
public:
    /// The gap that is open behind `row` rows; its first line is `line`.
    row_gap& open(std::size_t row, std::size_t line);
    /// A row of numbers follows, or the end of the table.
    void close(bool isLast);
    void clear() { *this = {}; }
    const std::vector<row_gap>& all() const noexcept { return gaps; }
    /// Lines without anything, those of gaps that were not kept, too.
    std::size_t blanks() const noexcept { return blankLines; }
    bool hasMore() const noexcept { return more != 0; }

private:
    row_gap current;
    std::vector<row_gap> gaps;
    std::size_t more = 0, blankLines = 0;
};

struct number_table;

/// Puts the damaged rows of an image, or of a single column, where they belong, as not measured, and tells of them.
/// \param isExport  below the header of a program that writes nothing but rows: one that lost everything is empty, or
///                  some word
void restore_rows(number_table& table, bool isExport);

/// Tells of the gaps of a table that is neither: a row is where its x says, so nothing is put in its place.
void tell_gaps(number_table& table);

} // namespace vldv::formats
