#include "formats/text/number_table.h"

#include "base/text.h"
#include "formats/source.h"
#include "formats/text/last_numbers.h"
#include "formats/text/line_breaks.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace vldv::formats {

namespace {

constexpr std::size_t mostFields = 100'000;
constexpr std::size_t mostComments = 64 * 1024;        // bytes
constexpr std::size_t mostGaps = std::size_t{1} << 20; // each takes more memory than its line does
constexpr std::size_t progressStep = std::size_t{1} << 20;

std::string plural(std::size_t count, const char* thing)
{
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

enum class line_use { taken, ended, refused };

/// Collects the rows line by line and keeps the reason why one was refused.
class table_collector {
public:
    table_collector(const text_content& content_, const number_layout& layout_, const stated_table& stated_)
        : content(content_),
          scanner(layout_),
          ends(layout_),
          stated(stated_),
          wrapped(stated_.columns != 0 && !stated_.linesAreRows),
          breaks(stated_.columns)
    {
        table.columns = stated.linesAreRows ? stated.columns : stated.rowFields;
    }

    line_use add(std::string_view line, std::size_t number);
    bool isComplete() const noexcept { return stated.linesAreRows && table.rows == stated.rows; }
    /// Brings the numbers into the rows that the header states. \return why they cannot be, or empty
    std::string fit();
    /// Leaves out a short last line and tells of lines that may be damaged rows.
    void finish();

    number_table table;
    std::string reason;

private:
    line_use addNumbers(std::string_view line, std::size_t before, std::size_t number)
    {
        ends.add(line);
        isLastRead = isLast(line);
        table.gaps.close(false);
        const std::size_t fields = table.values.size() - before;
        if (!hasGaps() || fields >= table.columns) return addRow(fields, number);
        const auto shortRow = table.values.begin() + static_cast<std::ptrdiff_t>(before);
        const std::vector<double> numbers(shortRow, table.values.end());
        table.values.resize(before);
        if (!scanner.scanWithEmptyEnds(line, table.columns, table.values))
            table.values.insert(table.values.end(), numbers.begin(), numbers.end());
        return addRow(table.values.size() - before, number);
    }
    line_use addRow(std::size_t fields, std::size_t number);
    line_use addComment(std::string_view line, std::size_t number);
    void addBlank(std::string_view line, std::size_t number);
    void addGapRow(std::string_view line, std::size_t number, row_likeness likeness);
    void keepComment(std::string_view line);
    line_use refuse(std::size_t number, const std::string& why)
    {
        reason = "line " + std::to_string(number) + why;
        return line_use::refused;
    }
    line_use refuseField(std::size_t number)
    {
        return refuse(number, ": \"" + content.utf8(scanner.fieldAtFault().substr(0, 40)) + "\" is no number");
    }
    /// Why a line of another length cannot be.
    std::string unlike(std::size_t fields) const
    {
        const std::string other = firstLine == 0 ? "the header states " : "line " + std::to_string(firstLine) + " has ";
        return " has " + plural(fields, "value") + " where " + other + std::to_string(firstFields);
    }

    /// Between rows whose number the header does not state, some may be lost.
    bool hasGaps() const noexcept { return stated.columns == 0 && (table.rows != 0 || stated.rowFields != 0); }
    bool hasEnd() const noexcept { return content.text.ends_with('\n') || content.text.ends_with('\r'); }
    bool isLast(std::string_view line) const noexcept
    {
        return line.data() + line.size() == content.text.data() + content.text.size();
    }

    const text_content& content;
    number_scanner scanner;
    last_numbers ends;
    stated_table stated;
    bool wrapped;
    line_breaks breaks;
    std::size_t firstLine = 0; // of numbers; 0 when the header states how many stand on a line
    std::size_t firstFields = 0;
    std::size_t oddLine = 0; // number of the first line of another length, 0 when there is none
    std::size_t oddFields = 0;
    bool isLastRead = false; ///< the last line of the text holds numbers
};

line_use table_collector::add(std::string_view line, std::size_t number)
{
    const std::size_t before = table.values.size();
    switch (scanner.scan(line, table.values)) {
    case line_content::blank:
        addBlank(line, number);
        return line_use::taken;
    case line_content::comment:
        if (stated.linesAreRows) return line_use::ended;
        return addComment(line, number);
    case line_content::numbers:
        return addNumbers(line, before, number);
    case line_content::wrong:
        break;
    }
    // "-4.6792e": the rest of the number is lost with the end of the line.
    const std::string_view text = base::trimmed(line);
    if (isLast(line) && !hasEnd() && !table.values.empty() && scanner.fieldAtFault().end() == text.end()) {
        table.notes.push_back("The last line, " + std::to_string(number) + ", was left out: its last number, \"" +
                              content.utf8(scanner.fieldAtFault().substr(0, 40)) + "\", is cut");
        table.isCut = true;
        return line_use::taken;
    }
    return refuseField(number);
}

line_use table_collector::addRow(std::size_t fields, std::size_t number)
{
    if (fields > mostFields) return refuse(number, " has more than " + std::to_string(mostFields) + " values");
    if (firstFields == 0) {
        firstFields = stated.linesAreRows ? stated.columns : fields;
        firstLine = stated.linesAreRows ? 0 : number;
        if (table.columns == 0) table.columns = fields;
    }
    const bool isOdd = fields != firstFields;
    const bool isAfterShort = oddLine != 0 && oddFields < firstFields;
    if (isOdd && oddLine == 0) {
        oddLine = number;
        oddFields = fields;
    }
    if (wrapped) {
        breaks.add(fields);
        return line_use::taken;
    }
    if (isAfterShort || fields > firstFields) return refuse(oddLine, unlike(oddFields));
    if (!isOdd) ++table.rows; // a short line is allowed when it turns out to be the last
    return line_use::taken;
}

/// A row of a table that is separated by tabs may have nothing but these.
void table_collector::addBlank(std::string_view line, std::size_t number)
{
    if (!hasGaps()) return;
    row_gap& gap = table.gaps.open(table.rows, number);
    if (table.columns < 2 || !scanner.scanWithEmptyEnds(line, table.columns, gap.values)) {
        ++gap.blanks;
        return;
    }
    if (gap.rowLine == 0) gap.rowLine = number;
    gap.mayBeTail = true;
}

void table_collector::addGapRow(std::string_view line, std::size_t number, row_likeness likeness)
{
    row_gap& gap = table.gaps.open(table.rows, number);
    scanner.scanDamaged(line, gap.values);
    if (gap.rowLine == 0) gap.rowLine = number;
    gap.partly += likeness == row_likeness::partly;
    gap.mayBeTail = gap.mayBeTail || likeness == row_likeness::sentence;
}

/// True for a comment and for "key: value", which stand between the rows on purpose.
bool is_remark(std::string_view line)
{
    constexpr std::string_view marks = "#%;/";
    const bool hasMark = line.find_first_of(marks) == 0;
    return (hasMark && line.find_first_not_of(marks) != std::string_view::npos) ||
           line.find_first_of(":=") != std::string_view::npos;
}

line_use table_collector::addComment(std::string_view line, std::size_t number)
{
    line = base::trimmed(line);
    const row_likeness likeness =
        wrapped ? row_likeness::none : scanner.likenessToRow(line, table.columns, stated.isMatrix);
    if (likeness == row_likeness::damaged) return refuseField(number);
    const bool isRow = likeness == row_likeness::partly || likeness == row_likeness::words ||
                       (likeness == row_likeness::sentence && stated.isMatrix);
    if (isRow && stated.isMatrix && oddLine != 0) return refuse(oddLine, unlike(oddFields));
    if (hasGaps()) {
        if (table.gaps.all().size() >= mostGaps) return refuse(number, " is one of too many that hold no numbers");
        if (isRow)
            addGapRow(line, number, likeness);
        else if (is_remark(line))
            ++table.gaps.open(table.rows, number).remarks;
        else
            ++table.gaps.open(table.rows, number).words;
    }
    if (!isRow || !stated.isMatrix) keepComment(line);
    return line_use::taken;
}

void table_collector::keepComment(std::string_view line)
{
    const std::string text = content.utf8(line.substr(0, mostComments));
    if (text.empty() || table.comments.size() + text.size() > mostComments) return;
    if (!table.comments.empty()) table.comments += '\n';
    table.comments += text;
}

void table_collector::finish()
{
    table.gaps.close(true);
    const std::string_view cut = isLastRead && !hasEnd() ? ends.cutNumber() : std::string_view();
    if (oddLine == 0 && !cut.empty())
        table.notes.push_back("the text ends with \"" + content.utf8(cut) +
                              "\", which is shorter than the numbers above it: some of its digits may be cut off");
    if (oddLine == 0 || wrapped) return;
    table.values.resize(table.columns * table.rows);
    table.isCut = true;
    table.notes.push_back("The last line, " + std::to_string(oddLine) + ", was left out: it has " +
                          plural(oddFields, "value") + " of " + std::to_string(table.columns));
}

std::string table_collector::fit()
{
    const std::size_t count = table.values.size(), columns = stated.columns;
    table.columns = columns;
    table.rows = stated.rows == 0 ? count / columns : stated.rows;
    if (table.rows == 0 || count % columns != 0 || count / columns != table.rows)
        return "the header states " + std::to_string(columns) + " x " + std::to_string(table.rows) + " values, but " +
               std::to_string(count) + " follow";
    if (wrapped && !breaks.areOrderly()) return "line " + std::to_string(oddLine) + unlike(oddFields);
    return {};
}

} // namespace

std::vector<double> number_table::column(std::size_t index) const
{
    std::vector<double> result(rows);
    for (std::size_t row = 0; row < rows; ++row) result[row] = at(row, index);
    return result;
}

base::read_result<number_table> read_numbers(const text_content& content, line_cursor& at, const number_layout& layout,
                                             const stated_table& stated, source& file)
{
    table_collector collector(content, layout, stated);
    std::size_t reported = at.offset();
    std::string_view line;
    for (line_cursor ahead = at; !collector.isComplete() && ahead.next(line); at = ahead) {
        const line_use use = collector.add(line, ahead.number());
        if (use == line_use::refused) return base::read_error{ahead.offset(), collector.reason};
        if (use == line_use::ended) break;
        if (ahead.offset() - reported < progressStep) continue;
        reported = ahead.offset();
        const double done = static_cast<double>(reported) / static_cast<double>(content.text.size());
        if (!file.progress(done)) return base::read_error{reported, "cancelled"};
    }
    collector.finish();
    number_table& table = collector.table;
    if (table.values.empty()) return base::read_error{0, "the text holds no lines of numbers"};
    if (stated.columns != 0)
        if (std::string reason = collector.fit(); !reason.empty())
            return base::read_error{at.offset(), std::move(reason)};
    return std::move(table);
}

} // namespace vldv::formats
