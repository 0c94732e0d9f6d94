#include "formats/text/row_gaps.h"

#include "formats/text/number_table.h"

#include <cmath>
#include <limits>
#include <utility>

namespace vldv::formats {

namespace {

constexpr std::size_t mostGaps = 1000;
constexpr const char* passedOver =
    "lines between the rows that hold none were passed over; what follows may be another table";
constexpr const char* takenForComments = "taken for comments although they hold numbers for most columns";

/// How many lines a note speaks of, and the first of them.
struct told_lines {
    std::size_t count = 0, first = 0;

    void add(std::size_t lines, std::size_t line) noexcept
    {
        if (count == 0) first = line;
        count += lines;
    }
    void tell(number_table& table, const char* what) const
    {
        if (count == 0) return;
        table.notes.push_back(std::string(what) + ": " + std::to_string(count) + (count == 1 ? " line" : " lines") +
                              ", the first is line " + std::to_string(first));
    }
};

/// Decides how many rows each gap stands for.
class gap_judge {
public:
    gap_judge(const number_table& table_, bool isExport_) : table(table_), isExport(isExport_)
    {
        // What stands behind every row, or behind most, parts them.
        std::size_t words = 0;
        for (const row_gap& gap : table.gaps.all()) words += gap.words;
        isSpaced = table.gaps.hasMore() || table.gaps.blanks() + 1 >= table.rows;
        hasWordsEverywhere = table.gaps.hasMore() || words + 1 >= table.rows;
    }

    /// True when the lines with as many fields as a row are rows.
    bool holdsRows(const row_gap& gap) const noexcept
    {
        if (gap.values.empty()) return false;
        return gap.isLast ? isExport && !gap.mayBeTail : true;
    }

    /// Rows of which nothing is left.
    std::size_t lostRows(const row_gap& gap) const noexcept
    {
        if (!isExport || gap.isLast || gap.remarks != 0) return 0;
        if (gap.blanks == 0) return hasWordsEverywhere ? 0 : gap.words;
        // One empty line halfway parts two tables of one size; so do several, and one above or below a title.
        const bool partsHalves = 2 * gap.row == table.rows;
        return gap.blanks == 1 && gap.words == 0 && !isSpaced && !partsHalves ? 1 : 0;
    }

    /// Lines of a gap that are worth a note although they are no rows.
    std::size_t passedLines(const row_gap& gap) const noexcept
    {
        if (gap.isLast || lostRows(gap) != 0) return 0;
        return (isSpaced ? 0 : gap.blanks) + gap.words + (isExport ? gap.remarks : 0);
    }

private:
    const number_table& table;
    bool isExport, isSpaced, hasWordsEverywhere;
};

std::size_t rows_in(const row_gap& gap, const number_table& table) { return gap.values.size() / table.columns; }

/// The values with those of the gaps between them.
std::vector<double> joined_rows(const number_table& table, const gap_judge& judge)
{
    constexpr double missing = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> joined;
    std::size_t from = 0;
    const auto takeUntil = [&](std::size_t row) {
        const std::size_t end = row * table.columns;
        joined.insert(joined.end(), table.values.begin() + static_cast<std::ptrdiff_t>(from),
                      table.values.begin() + static_cast<std::ptrdiff_t>(end));
        from = end;
    };
    for (const row_gap& gap : table.gaps.all()) {
        takeUntil(gap.row);
        if (judge.holdsRows(gap)) joined.insert(joined.end(), gap.values.begin(), gap.values.end());
        joined.insert(joined.end(), judge.lostRows(gap) * table.columns, missing);
    }
    takeUntil(table.rows);
    return joined;
}

} // namespace

row_gap& row_gaps::open(std::size_t row, std::size_t line)
{
    if (current.line == 0) {
        current.row = row;
        current.line = line;
    }
    return current;
}

void row_gaps::close(bool isLast)
{
    if (current.line == 0) return;
    current.isLast = isLast;
    blankLines += current.blanks;
    if (gaps.size() < mostGaps || !current.values.empty())
        gaps.push_back(std::exchange(current, {}));
    else
        ++more;
    current = {};
}

void restore_rows(number_table& table, bool isExport)
{
    const gap_judge judge(table, isExport);
    told_lines damaged, lost, passed, doubtful;
    for (const row_gap& gap : table.gaps.all()) {
        if (judge.holdsRows(gap))
            damaged.add(rows_in(gap, table), gap.rowLine);
        else if (gap.partly != 0)
            doubtful.add(gap.partly, gap.rowLine);
        if (const std::size_t rows = judge.lostRows(gap)) lost.add(rows, gap.line);
        if (const std::size_t lines = judge.passedLines(gap)) passed.add(lines, gap.line);
    }
    damaged.tell(table, "rows with words or nothing where numbers belong, which count as not measured");
    lost.tell(table, "lines without numbers where rows belong, which count as not measured");
    passed.tell(table, passedOver);
    doubtful.tell(table, takenForComments);
    if (damaged.count + lost.count != 0) table.values = joined_rows(table, judge);
    table.rows = table.values.size() / table.columns;
    table.gaps.clear();
}

void tell_gaps(number_table& table)
{
    told_lines passed, doubtful;
    for (const row_gap& gap : table.gaps.all()) {
        const std::size_t rows = rows_in(gap, table);
        if (gap.partly != 0) doubtful.add(gap.partly, gap.rowLine);
        const std::size_t others = rows - gap.partly + gap.words;
        if (!gap.isLast && others != 0) passed.add(others, gap.line);
    }
    passed.tell(table, passedOver);
    doubtful.tell(table, takenForComments);
}

} // namespace vldv::formats
