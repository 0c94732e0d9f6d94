#include "formats/text/text_header.h"

#include "base/text.h"
#include "formats/shared/stated_number.h"
#include "formats/text/channel_export.h"
#include "formats/text/header_keys.h"
#include "formats/text/text_numbers.h"
#include "formats/text/text_wyko.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

constexpr std::string_view nanonisMark = "[DATA]";
constexpr std::string_view spipMark = "# Start of Data:";

/// "z-unit, "qq","
std::string quoted_field(const char* key, std::string_view text)
{
    return std::string(key) + ", \"" + std::string(text) + "\",";
}

std::size_t count_of(std::string_view text) { return static_cast<std::size_t>(stated_count(text).value_or(0)); }

/// The unit of the values, which is told when it is none.
void take_units(table_header& header, const char* key, std::string_view text)
{
    header.units = normal_unit(text);
    header.origin = key;
    if (!text.empty() && !is_known_unit(text)) header.notes.push_back(quoted_field(key, text) + " is no known unit");
}

/// A count that is stated must be one.
std::size_t take_count(table_header& header, const header_lines& lines, const char* key)
{
    const std::string_view text = value_of(lines, key);
    const std::size_t count = count_of(text);
    if (count == 0 && !text.empty())
        header.notes.push_back(quoted_field(key, text) + " is no count: the lines of numbers decide");
    return count;
}

bool fits_wsxm(const header_lines& lines, std::string_view kind)
{
    return has_line(lines, 0, "WSxM file copyright") && has_line(lines, 1, kind);
}

bool fits_wsxm_matrix(const header_lines& lines) { return fits_wsxm(lines, "WSxM ASCII Matrix file"); }

void apply_wsxm_matrix(const header_lines& lines, table_header& header)
{
    header.form = table_header::shape::matrix;
    header.startsAtLowerRight = true;
    header.width = stated_quantity(value_of(lines, "X Amplitude"));
    header.height = stated_quantity(value_of(lines, "Y Amplitude"));
    const std::string_view range = value_of(lines, "Z Amplitude");
    if (const auto size = parse_quantity(range))
        take_units(header, "Z Amplitude", size->units);
    else if (!range.empty())
        header.notes.push_back(quoted_field("Z Amplitude", range) + " is no number with a unit: values have none");
}

bool fits_wsxm_grid(const header_lines& lines) { return fits_wsxm(lines, "WSxM ASCII XYZ file"); }

void apply_wsxm_grid(const header_lines&, table_header& header) { header.form = table_header::shape::grid; }

bool fits_spip(const header_lines& lines)
{
    return !lines.empty() && base::equal_ignoring_case(split_key(lines[0]).key, "File Format") &&
           base::equal_ignoring_case(split_key(lines[0]).value, "ASCII");
}

void apply_spip(const header_lines& lines, table_header& header)
{
    header.form = table_header::shape::matrix;
    header.columns = take_count(header, lines, "x-pixels");
    header.rows = take_count(header, lines, "y-pixels");
    const auto length = [&](const char* key) {
        auto size = stated_quantity(value_of(lines, key));
        if (size && size->units.empty()) size->units = "nm"; // which this writer leaves out
        return size;
    };
    header.width = length("x-length");
    header.height = length("y-length");
    take_units(header, "z-unit", value_of(lines, "z-unit"));
}

/// "h=305 w=75": the number behind `key` and "=".
std::size_t inline_count(std::string_view line, std::string_view key)
{
    for (const std::string_view word : base::split(line, ' '))
        if (word.starts_with(key) && word.substr(key.size()).starts_with('='))
            return count_of(word.substr(key.size() + 1));
    return 0;
}

bool fits_interferometer(const header_lines& lines)
{
    return !lines.empty() && inline_count(lines[0], "h") != 0 && inline_count(lines[0], "w") != 0 &&
           !value_of(lines, "pixel size").empty();
}

void apply_interferometer(const header_lines& lines, table_header& header)
{
    constexpr std::string_view factorKey = "height conversion factor (-> m)";
    header.form = table_header::shape::matrix;
    header.rows = inline_count(lines[0], "h");
    header.columns = inline_count(lines[0], "w");
    header.pixel = stated_quantity(value_of(lines, "pixel size"));
    take_units(header, "data unit", value_of(lines, "data unit"));
    if (const std::string_view factor = value_of(lines, factorKey); !factor.empty()) {
        header.factor = lone_number(factor).value_or(std::nan(""));
        header.units = "m";
        header.origin = factorKey;
    }
}

bool fits_profiler(const header_lines& lines)
{
    if (lines.empty()) return false;
    const std::string_view line = base::trimmed(lines[0]);
    const std::size_t gap = line.find(' ');
    return gap != std::string_view::npos && is_known_unit(line.substr(0, gap)) && is_known_unit(line.substr(gap));
}

void apply_profiler(const header_lines& lines, table_header& header)
{
    const std::string_view line = base::trimmed(lines[0]);
    const std::size_t gap = line.find(' ');
    header.form = table_header::shape::curve;
    header.countFirst = true;
    header.headings = {{"X", normal_unit(line.substr(0, gap))}, {"Y", normal_unit(line.substr(gap))}};
}

bool fits_nanonis(const header_lines& lines)
{
    return has_line(lines, 0, "Experiment\t") &&
           std::ranges::any_of(lines, [](const std::string& line) { return line.starts_with(nanonisMark); });
}

void apply_nanonis(const header_lines&, table_header& header) { header.form = table_header::shape::curve; }

struct dialect {
    const char* writer;
    bool isCertain; ///< the first lines cannot be anything else
    bool (*fits)(const header_lines& lines);
    void (*apply)(const header_lines& lines, table_header& header);
};

constexpr dialect dialects[] = {
    {"Matrix export", true, fits_channel_export, apply_channel_export},
    {"WSxM ASCII Matrix", true, fits_wsxm_matrix, apply_wsxm_matrix},
    {"WSxM ASCII XYZ", true, fits_wsxm_grid, apply_wsxm_grid},
    {"SPIP ASCII", true, fits_spip, apply_spip},
    {"Interferometer export", true, fits_interferometer, apply_interferometer},
    {"Wyko ASCII", true, fits_wyko, apply_wyko},
    {"Profiler", false, fits_profiler, apply_profiler},
    {"Nanonis spectrum", true, fits_nanonis, apply_nanonis},
};

const dialect* find_dialect(const header_lines& lines)
{
    const auto row = std::ranges::find_if(dialects, [&](const dialect& each) { return each.fits(lines); });
    return row == std::end(dialects) ? nullptr : row;
}

/// Splits at `separator` outside quotes.
std::vector<std::string_view> split_names(std::string_view line, char separator)
{
    std::vector<std::string_view> names;
    bool quoted = false;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= line.size(); ++i) {
        if (i < line.size() && line[i] == '"') quoted = !quoted;
        if (i < line.size() && (quoted || line[i] != separator)) continue;
        const std::string_view name = base::trimmed(line.substr(start, i - start));
        const bool isGap = separator == ' ' && name.empty();
        if (!isGap) names.push_back(name);
        start = i + 1;
    }
    if (!names.empty() && names.back().empty()) names.pop_back(); // a separator at the end starts no column
    return names;
}

bool is_name(std::string_view text)
{
    constexpr std::string_view noStart = "0123456789.+-=:";
    return !text.empty() && noStart.find(text.front()) == std::string_view::npos && !text.ends_with(':') &&
           text.find('=') == std::string_view::npos;
}

/// "l.0", "O.5": letters that stand for digits in a damaged row.
bool is_damaged_number(std::string_view name)
{
    const auto ofNumber = std::ranges::count_if(name, [](char c) { return (c >= '0' && c <= '9') || c == '.'; });
    return name.find('.') != std::string_view::npos && 2 * static_cast<std::size_t>(ofNumber) > name.size();
}

/// "nm", "[V]", "10um".
bool is_unit_word(std::string_view word)
{
    if (word.size() > 2 && (word.front() == '[' || word.front() == '(')) word = word.substr(1, word.size() - 2);
    const auto size = parse_quantity(word);
    return is_known_unit(word) || (size && is_known_unit(size->units));
}

/// Names separated by nothing but blanks could as well be a sentence; a unit or an x tells.
bool names_tell(const std::vector<column_heading>& headings)
{
    return base::equal_ignoring_case(headings.front().name, "x") ||
           std::ranges::any_of(headings, [](const column_heading& heading) { return !heading.units.empty(); });
}

std::vector<column_heading> headings_of_line(std::string_view line, std::size_t columns)
{
    line = without_comment_mark(line);
    for (const char separator : {'\t', ';', ',', ' '}) {
        const auto names = split_names(line, separator);
        if (names.size() != columns || !std::ranges::all_of(names, is_name)) continue;
        if (std::ranges::all_of(names, is_damaged_number)) continue;
        std::vector<column_heading> headings;
        for (const std::string_view name : names) headings.push_back(parse_heading(name));
        if (separator != ' ' || names_tell(headings)) return headings;
    }
    return {};
}

void add_string(std::map<std::string, std::string>& strings, std::string_view key, std::string_view value)
{
    std::string& text = strings[std::string(key)];
    if (!text.empty()) text += '\n';
    text += value;
}

} // namespace

table_header parse_header(const header_lines& lines)
{
    table_header header;
    if (const dialect* row = find_dialect(lines)) {
        row->apply(lines, header);
        header.writer = row->writer;
    }
    return header;
}

bool is_certain_header(const header_lines& lines)
{
    const dialect* row = find_dialect(lines);
    return row && row->isCertain;
}

bool is_foreign_header(const header_lines& lines)
{
    return has_line(lines, 0, "WSxM file copyright") && !fits_wsxm_grid(lines) && !fits_wsxm_matrix(lines);
}

std::string_view header_end_mark(std::string_view text) noexcept
{
    constexpr std::size_t searched = std::size_t{1} << 20;
    const std::string_view head = text.substr(0, searched);
    for (const std::string_view mark : {nanonisMark, spipMark}) {
        const std::size_t at = head.find(mark);
        if (at != std::string_view::npos && at > 0 && (head[at - 1] == '\n' || head[at - 1] == '\r')) return mark;
    }
    return {};
}

std::vector<column_heading> find_headings(const header_lines& lines, std::size_t columns, std::size_t& used)
{
    used = lines.size();
    if (lines.empty() || columns < 2) return {};
    auto headings = headings_of_line(lines.back(), columns);
    if (!headings.empty()) used = lines.size() - 1;
    return headings;
}

bool may_be_heading(std::string_view line)
{
    std::vector<std::string_view> names;
    std::size_t numbers = 0;
    bool isNumberLast = false;
    for (line = base::trimmed(line); !line.empty();) {
        const std::size_t end = std::min(line.find_first_of(" \t;"), line.size());
        const std::string_view word = line.substr(0, end);
        isNumberLast = number_of_field(word, false) || number_of_field(word, true);
        if (isNumberLast)
            ++numbers;
        else
            names.push_back(word);
        line = base::trimmed(line.substr(std::min(end + 1, line.size())));
    }
    if (names.size() == 1 && !isNumberLast) return is_unit_word(names.front());
    const auto isPlainName = [](std::string_view name) { return is_name(name) && !is_damaged_number(name); };
    return names.size() > numbers && std::ranges::all_of(names, isPlainName);
}

std::map<std::string, std::string> header_strings(const header_lines& lines, std::size_t skipped)
{
    std::map<std::string, std::string> strings;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i == skipped || std::string_view(lines[i]).starts_with(nanonisMark)) continue;
        const key_value pair = split_key(lines[i]);
        if (!pair.key.empty())
            add_string(strings, pair.key, pair.value);
        else if (!pair.value.empty())
            add_string(strings, "Header", pair.value);
    }
    return strings;
}

} // namespace vldv::formats
