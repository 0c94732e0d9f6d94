#include "formats/text/text_table.h"

#include "base/text.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/heights.h"
#include "formats/shared/left_out.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/wyko_names.h"
#include "formats/text/number_table.h"
#include "formats/text/text_header.h"
#include "formats/text/text_lines.h"
#include "formats/text/text_numbers.h"
#include "formats/text/text_shapes.h"
#include "formats/text/text_wyko.h"

#include <algorithm>
#include <limits>
#include <string>

namespace vldv::formats {

namespace {

constexpr std::size_t layoutSample = 1000; // lines
constexpr std::size_t mostArrays = 256;    // of an optical profiler; a handful occurs
constexpr std::size_t everyLine = std::numeric_limits<std::size_t>::max();

/// A text cut into its header and the numbers behind it.
struct text_parts {
    header_lines header;
    std::vector<line_cursor> starts; ///< of the lines of the header
    line_cursor numbers;             ///< before the first line of numbers
};

text_parts split_header(const text_content& content)
{
    const std::string_view text = content.text;
    const std::string_view endMark = header_end_mark(text);
    bool mayEnd = endMark.empty();
    text_parts parts{{}, {}, line_cursor(text)};
    line_cursor lines(text), start(text);
    std::string_view line;
    for (; lines.next(line); start = lines) {
        if (mayEnd && is_number_line(line)) break;
        mayEnd = mayEnd || line.starts_with(endMark);
        if (const std::string_view plain = base::trimmed(line); !plain.empty()) {
            parts.header.push_back(content.utf8(line));
            parts.starts.push_back(start);
        }
        parts.numbers = lines;
    }
    return parts;
}

/// Passes over the number of points that stands alone before them. \return 0 when there is none
std::size_t take_count(line_cursor& numbers)
{
    line_cursor ahead = numbers;
    std::string_view line;
    if (!ahead.next(line)) return 0;
    const auto count = stated_count(line);
    if (!count || *count == 0) return 0;
    numbers = ahead;
    return static_cast<std::size_t>(*count);
}

/// A known header says that all lines below it are rows of an image, but not how many.
bool is_plain_matrix(const table_header& header) noexcept
{
    return header.form == table_header::shape::matrix && header.columns == 0;
}

/// \param at         moves behind the numbers
/// \param rowFields  of the first row when it is damaged
base::read_result<number_table> read_rows(const text_content& content, line_cursor& at, const table_header& header,
                                          source& file, std::size_t rowFields = 0)
{
    const line_cursor start = at;
    const std::string_view text = std::string_view(content.text).substr(start.offset());
    const auto read = [&](const number_layout& layout) {
        at = start;
        auto table = read_numbers(
            content, at, layout,
            {header.columns, header.rows, header.linesAreColumns, is_plain_matrix(header), rowFields}, file);
        if (const char* doubt = told_doubt(layout.doubt); table && doubt) table->notes.emplace_back(doubt);
        return table;
    };
    const number_layout likely = detect_layout(text, layoutSample);
    auto table = read(likely);
    if (table || !file.progress(0.0)) return table; // who cancelled waits for nothing more
    // The first thousand lines may have looked simpler than the rest: a comma may turn up late.
    const number_layout certain = detect_layout(text, everyLine);
    return certain == likely ? table : read(certain);
}

number_scanner scanner_of(const text_content& content, const text_parts& parts)
{
    return number_scanner(detect_layout(std::string_view(content.text).substr(parts.numbers.offset()), layoutSample));
}

/// Takes the first rows of a matrix out of the header that have words where numbers belong. \return whether any has
bool take_damaged_rows(const text_content& content, text_parts& parts, std::size_t columns)
{
    number_scanner scanner = scanner_of(content, parts);
    bool anyRow = false;
    const auto isRow = [&](const std::string& line) {
        const row_likeness likeness = scanner.likenessToRow(line, columns, true);
        return likeness == row_likeness::partly || (likeness == row_likeness::words && columns > 1);
    };
    while (!parts.header.empty() && isRow(parts.header.back())) {
        parts.numbers = parts.starts.back();
        parts.starts.pop_back();
        parts.header.pop_back();
        anyRow = true;
    }
    return anyRow;
}

/// Why the line before the numbers is no heading: a first row that is damaged, or empty.
std::string first_row_problem(const text_content& content, const text_parts& parts, std::size_t columns, bool inMatrix)
{
    if (parts.header.empty()) return {};
    number_scanner scanner = scanner_of(content, parts);
    const std::string& line = parts.header.back();
    std::vector<double> ignored;
    const bool isDamaged = scanner.likenessToRow(line, columns) == row_likeness::damaged ||
                           (inMatrix && scanner.scan(line, ignored) == line_content::wrong);
    if (!isDamaged || may_be_heading(line)) return {};
    return "the line before the numbers: \"" + std::string(scanner.fieldAtFault().substr(0, 40)) + "\" is no number";
}

/// Finds the next line of numbers. \param name  receives the last line of text before it
bool find_next_array(const text_content& content, line_cursor& at, std::string& name)
{
    std::string_view line;
    for (line_cursor ahead = at; ahead.next(line); at = ahead) {
        if (is_number_line(line)) return true;
        if (!base::trimmed(line).empty()) name = content.utf8(line);
    }
    return false;
}

/// The arrays of an optical profiler, all of one size, each behind a line that names it.
base::read_result<recording> read_arrays(const text_content& content, const text_parts& parts, table_header header,
                                         source& file)
{
    if (header.columns == 0 || header.rows == 0) return base::read_error{0, "X Size or Y Size is missing or 0"};
    recording result;
    std::vector<std::string> ids;
    line_cursor at = parts.numbers;
    std::string name;
    left_out missing;
    do {
        if (!result.items.empty()) {
            if (name.empty()) return base::read_error{at.offset(), "more lines of numbers than X Size states"};
            if (result.items.size() == mostArrays)
                return base::read_error{at.offset(), "more than " + std::to_string(mostArrays) + " arrays"};
            apply_wyko_array(parts.header, name, header);
        }
        auto table = read_rows(content, at, header, file);
        if (!table) {
            missing.add({table.error().offset, header.channel + ": " + table.error().reason});
            break; // the arrays before it are whole
        }
        auto array = shape_table(std::move(*table), header, {});
        if (!array) return array;
        auto& image = std::get<recorded_image>(array->items.front());
        image.stream.set_name(unique_id(header.channel, ids).c_str());
        result.items.push_back(std::move(array->items.front()));
        name.clear();
    } while (find_next_array(content, at, name));
    if (result.items.empty()) return missing.first();
    result.strings = wyko_strings(parts.header);
    missing.tell(result);
    if (!header.width) add_warning(result, noWykoPixelSize);
    result.strings["\\Text format"] = header.writer;
    return result;
}

header_lines first_lines(const text_content& content)
{
    header_lines lines;
    line_cursor cursor(content.text);
    std::string_view line;
    while (cursor.next(line))
        if (!base::trimmed(line).empty()) lines.push_back(content.utf8(line));
    return lines;
}

} // namespace

base::read_result<recording> read_text_table(source& file)
{
    const auto content = read_text(file);
    if (!content) return content.error();
    text_parts parts = split_header(*content);
    if (is_foreign_header(parts.header))
        return base::read_error{0, "a text export that is not a table: " + parts.header[0]};

    table_header header = parse_header(parts.header);
    if (header.linesAreColumns) return read_arrays(*content, parts, header, file);
    line_cursor start = parts.numbers;
    const std::size_t stated = header.countFirst ? take_count(start) : 0;
    auto table = read_rows(*content, start, header, file);
    const bool isMatrix = is_plain_matrix(header);
    if (table && isMatrix && take_damaged_rows(*content, parts, table->columns)) {
        start = parts.numbers;
        header = parse_header(parts.header);
        table = read_rows(*content, start, header, file, table->columns);
    }
    if (!table) return table.error();
    if (std::string problem = first_row_problem(*content, parts, table->columns, isMatrix); !problem.empty())
        return base::read_error{0, std::move(problem)};
    if (stated > table->rows)
        return base::read_error{content->text.size(), "cut short: " + std::to_string(table->rows) + " of " +
                                                          std::to_string(stated) + " points"};

    std::size_t headingLine = parts.header.size();
    std::vector<column_heading> headings;
    if (header.headings.size() == table->columns)
        headings = header.headings;
    else if (header.form != table_header::shape::matrix)
        headings = find_headings(parts.header, table->columns, headingLine);

    const std::string comments = std::move(table->comments);
    auto result = shape_table(std::move(*table), header, headings);
    if (!result) return result;
    result->strings.merge(header_strings(parts.header, headingLine));
    if (!comments.empty()) result->strings["\\Comments"] = comments;
    if (header.writer) result->strings["\\Text format"] = header.writer;
    return result;
}

bool sniff_text_table(std::span<const std::byte> head)
{
    const auto content = decode_text(std::string(as_text(head)));
    return content && is_certain_header(first_lines(*content));
}

bool possible_text_table(std::span<const std::byte> head)
{
    const auto content = decode_text(std::string(as_text(head)));
    return content && content->text.find_first_of("0123456789") != std::string::npos &&
           !is_foreign_header(first_lines(*content));
}

} // namespace vldv::formats
