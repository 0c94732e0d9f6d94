#include "document/formats/number_table.h"

#include "base/text.h"
#include "document/formats/source.h"

#include <string_view>

namespace formats {

namespace {

constexpr std::size_t mostFields = 100'000;
constexpr std::size_t mostComments = 64 * 1024; // bytes
constexpr std::size_t progressStep = std::size_t{1} << 20;

std::string plural(std::size_t count, const char* thing)
{
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

/// Collects the rows line by line and keeps the reason why one was refused.
class table_collector {
public:
    table_collector(const text_content& content_, const number_layout& layout_, bool wrapped_)
        : content(content_), scanner(layout_), wrapped(wrapped_)
    {
    }

    /// \return false when the line cannot be part of the table
    bool add(std::string_view line, std::size_t number);
    /// Leaves out a short last line.
    void finish();

    number_table table;
    std::string reason;

private:
    bool add_row(std::size_t fields, std::size_t number);
    void add_comment(std::string_view line);
    bool refuse(std::size_t number, const std::string& why)
    {
        reason = "line " + std::to_string(number) + why;
        return false;
    }

    const text_content& content;
    number_scanner scanner;
    bool wrapped;
    std::size_t firstLine = 0;
    std::size_t shortLine = 0; // number of a line that is too short, 0 when there is none
    std::size_t shortFields = 0;
};

bool table_collector::add(std::string_view line, std::size_t number)
{
    const std::size_t before = table.values.size();
    switch (scanner.scan(line, table.values)) {
    case line_content::blank:
        return true;
    case line_content::comment:
        add_comment(line);
        return true;
    case line_content::numbers:
        return add_row(table.values.size() - before, number);
    case line_content::wrong:
        break;
    }
    return refuse(number, ": \"" + content.utf8(scanner.wrong_field().substr(0, 40)) + "\" is no number");
}

bool table_collector::add_row(std::size_t fields, std::size_t number)
{
    if (fields > mostFields) return refuse(number, " has more than " + std::to_string(mostFields) + " values");
    if (table.columns == 0) {
        table.columns = fields;
        firstLine = number;
    }
    if (wrapped || (fields == table.columns && shortLine == 0)) {
        ++table.rows;
        return true;
    }
    if (shortLine == 0 && fields < table.columns) { // allowed when it turns out to be the last
        shortLine = number;
        shortFields = fields;
        return true;
    }
    const std::size_t wrongLine = shortLine != 0 ? shortLine : number;
    return refuse(wrongLine, " has " + plural(shortLine != 0 ? shortFields : fields, "value") + " where line " +
                                 std::to_string(firstLine) + " has " + std::to_string(table.columns));
}

void table_collector::add_comment(std::string_view line)
{
    const std::string text = content.utf8(base::trimmed(line.substr(0, mostComments)));
    if (text.empty() || table.comments.size() + text.size() > mostComments) return;
    if (!table.comments.empty()) table.comments += '\n';
    table.comments += text;
}

void table_collector::finish()
{
    if (shortLine == 0) return;
    table.values.resize(table.columns * table.rows);
    table.note = "The last line, " + std::to_string(shortLine) + ", was left out: it has " +
                 plural(shortFields, "value") + " of " + std::to_string(table.columns);
}

/// The numbers of a wrapped table as rows of the stated length; the reason when they are not as many.
std::string wrap(number_table& table, std::size_t columns, std::size_t rows)
{
    const std::size_t count = table.values.size();
    if (rows == 0) rows = count / columns;
    table.columns = columns;
    table.rows = rows;
    if (rows != 0 && count % columns == 0 && count / columns == rows) return {};
    return "the header states " + std::to_string(columns) + " x " + std::to_string(rows) + " values, but " +
           std::to_string(count) + " follow";
}

} // namespace

std::vector<double> number_table::column(std::size_t index) const
{
    std::vector<double> result(rows);
    for (std::size_t row = 0; row < rows; ++row) result[row] = at(row, index);
    return result;
}

base::read_result<number_table> read_numbers(const text_content& content, line_cursor start,
                                             const number_layout& layout, std::size_t columns, std::size_t rows,
                                             source& file)
{
    table_collector collector(content, layout, columns != 0);
    std::size_t reported = start.offset();
    std::string_view line;
    while (start.next(line)) {
        if (!collector.add(line, start.number())) return base::read_error{start.offset(), collector.reason};
        if (start.offset() - reported < progressStep) continue;
        reported = start.offset();
        const double done = static_cast<double>(reported) / static_cast<double>(content.text.size());
        if (!file.progress(done)) return base::read_error{reported, "cancelled"};
    }
    collector.finish();
    number_table& table = collector.table;
    if (table.values.empty()) return base::read_error{0, "the text holds no lines of numbers"};
    if (columns != 0)
        if (std::string reason = wrap(table, columns, rows); !reason.empty())
            return base::read_error{start.offset(), std::move(reason)};
    return std::move(table);
}

} // namespace formats
