#include "formats/text/text_numbers.h"

#include "base/text.h"
#include "formats/text/text_lines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace vldv::formats {

namespace {

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

bool is_missing_word(std::string_view field) noexcept
{
    if (field == "-" || field == "--" || base::equal_ignoring_case(field, "bad")) return true;
    if (field.find_first_not_of('*') == std::string_view::npos) return !field.empty();
    if (field.front() == '-' || field.front() == '+') field.remove_prefix(1);
    // "nan(ind)", "1.#QNAN" and "1.#IND" are how some C libraries print it.
    return (field.size() >= 3 && base::equal_ignoring_case(field.substr(0, 3), "nan")) || field.starts_with("1.#");
}

/// A number out of the range of double: it is 0 when it is too small, and missing when it is too large.
double out_of_range(std::string_view number) noexcept
{
    const std::size_t exponent = number.find_first_of("eE");
    if (exponent != std::string_view::npos) return number.find('-', exponent) != std::string_view::npos ? 0.0 : missing;
    const std::size_t first = number.find_first_of("123456789");
    const std::size_t point = number.find('.');
    return point < first ? 0.0 : missing;
}

/// Reads a plain number at the start of [at, end). \return its end, or `at` when there is none
const char* plain_number(const char* at, const char* end, double& value) noexcept
{
    const char* first = at;
    if (first != end && *first == '+') ++first; // which the library does not take
    const char* digits = first != end && *first == '-' && first == at ? first + 1 : first;
    if (digits == end || !(is_digit(*digits) || *digits == '.')) return at;
    const auto [last, error] = std::from_chars(first, end, value);
    if (error == std::errc::invalid_argument) return at;
    if (error == std::errc::result_out_of_range) value = out_of_range({first, static_cast<std::size_t>(last - first)});
    return last;
}

/// Numbers that need a change before the library reads them: decimal comma, exponent after D.
std::optional<double> respelled_number(std::string_view field, bool decimalComma) noexcept
{
    std::array<char, 128> buffer;
    if (field.empty() || field.size() > buffer.size()) return std::nullopt;
    bool hasExponent = false;
    for (std::size_t i = 0; i < field.size(); ++i) {
        char c = field[i];
        if (decimalComma && c == '.') return std::nullopt;
        if (decimalComma && c == ',') c = '.';
        if ((c == 'd' || c == 'D') && !hasExponent) c = 'e';
        hasExponent = hasExponent || c == 'e' || c == 'E';
        buffer[i] = c;
    }
    const char* end = buffer.data() + field.size();
    double value = 0.0;
    if (plain_number(buffer.data(), end, value) != end) return std::nullopt;
    return value;
}

bool is_any_separator(char c) noexcept
{
    return c == ' ' || c == '\t' || c == ',' || c == ';' || c == '\f' || c == '\v';
}

bool starts_comment(std::string_view line) noexcept
{
    return line.starts_with('#') || line.starts_with('%') || line.starts_with("//");
}

} // namespace

std::optional<double> number_of_field(std::string_view field, bool decimalComma) noexcept
{
    double value = 0.0;
    const char* end = field.data() + field.size();
    if (!decimalComma && !field.empty() && plain_number(field.data(), end, value) == end)
        return std::isfinite(value) ? value : missing;
    if (const auto respelled = respelled_number(field, decimalComma)) return respelled;
    if (field.empty() || is_missing_word(field)) return missing;
    std::string_view word = field;
    if (word.front() == '-' || word.front() == '+') word.remove_prefix(1);
    if (base::equal_ignoring_case(word, "inf") || base::equal_ignoring_case(word, "infinity")) return missing;
    return std::nullopt;
}

std::optional<double> grouped_number(std::string_view field, char mark, bool decimalComma) noexcept
{
    std::array<char, 128> buffer;
    if (field.size() > buffer.size()) return std::nullopt;
    const std::size_t digits = std::min(field.find_first_of("0123456789"), field.size());
    const auto isInside = [&](char c) { return is_digit(c) || c == mark; };
    const std::size_t whole = static_cast<std::size_t>(
        std::find_if_not(field.begin() + static_cast<std::ptrdiff_t>(digits), field.end(), isInside) - field.begin());
    std::size_t length = 0;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] != mark) {
            buffer[length++] = field[i];
            continue;
        }
        const std::size_t next = std::min(field.find(mark, i + 1), whole);
        const bool isFirst = field.substr(0, i).find(mark) == std::string_view::npos;
        const std::size_t before = i - std::min(digits, i);
        if (i >= whole || next - i != 4 || before == 0 || (isFirst && before > 3)) return std::nullopt;
    }
    return number_of_field({buffer.data(), length}, decimalComma);
}

bool is_number_line(std::string_view line) noexcept
{
    std::size_t fields = 0;
    bool anyNumber = false;
    for (std::size_t i = 0; i < line.size();) {
        if (is_any_separator(line[i])) {
            if (fields == 0 && line[i] == ';') return false;
            ++i;
            continue;
        }
        std::size_t end = i;
        while (end < line.size() && !is_any_separator(line[end])) ++end;
        const std::string_view field = line.substr(i, end - i);
        auto value = number_of_field(field, false);
        if (!value) value = grouped_number(field, '.', true); // "1.234.567"
        if (!value) return false;
        anyNumber = anyNumber || !std::isnan(*value);
        ++fields;
        i = end;
    }
    return anyNumber || fields > 1; // a lone "-" or "***" is a rule, not a row
}

number_scanner::number_scanner(const number_layout& layout_) noexcept : layout(layout_)
{
    roles.fill(role::field);
    for (const char c : {' ', '\t', '\f', '\v', '\x1A'}) roles[static_cast<unsigned char>(c)] = role::blank;
    if (layout.separator == ';') roles[';'] = role::separator; // it starts a comment elsewhere
    if (!layout.decimalComma && !layout.groupedDigits) roles[','] = role::separator;
    if (layout.separator == '\t') roles['\t'] = role::separator;
}

const char* number_scanner::skipBlanks(const char* at, const char* end) const noexcept
{
    while (at != end && roleOf(*at) == role::blank) ++at;
    return at;
}

std::optional<double> number_scanner::numberOf(std::string_view field) const noexcept
{
    if (layout.groupedBlanks && field.find(' ') != std::string_view::npos)
        return grouped_number(field, ' ', layout.decimalComma);
    if (layout.groupedPoints && field.find('.') != std::string_view::npos) return grouped_number(field, '.', true);
    if (layout.groupedDigits && field.find(',') != std::string_view::npos) return grouped_number(field, ',', false);
    return number_of_field(field, layout.decimalComma);
}

/// Behind the field at `at`: blanks that group digits are part of it, those around it are not.
const char* number_scanner::fieldEnd(const char* at, const char* end) const noexcept
{
    for (const char* last = at;;) {
        while (last != end && roleOf(*last) == role::field) ++last;
        if (!layout.groupedBlanks) return last;
        const char* next = skipBlanks(last, end);
        if (next == end || roleOf(*next) != role::field) return last;
        last = next;
    }
}

template <typename Take>
void number_scanner::eachField(std::string_view line, const Take& take) const
{
    const char* const end = line.data() + line.size();
    for (const char* at = line.data(); at != end;) {
        const char* last = fieldEnd(at, end);
        take(std::string_view(at, static_cast<std::size_t>(last - at)));
        at = skipBlanks(last, end);
        if (at != end && roleOf(*at) == role::separator) at = skipBlanks(at + 1, end);
    }
}

void number_scanner::scanDamaged(std::string_view line, std::vector<double>& out) const
{
    eachField(base::trimmed(line), [&](std::string_view field) { out.push_back(numberOf(field).value_or(missing)); });
}

bool number_scanner::scanWithEmptyEnds(std::string_view line, std::size_t columns, std::vector<double>& out) const
{
    if (layout.separator == ' ') return false;
    const auto marks = static_cast<std::size_t>(std::ranges::count(line, layout.separator));
    const bool hasMarkAtEnd = marks == columns && line.ends_with(layout.separator);
    if (marks + 1 != columns && !hasMarkAtEnd) return false;
    const std::size_t before = out.size();
    for (std::size_t column = 0; column < columns; ++column) {
        const std::size_t end = std::min(line.find(layout.separator), line.size());
        const std::string_view field = base::trimmed(line.substr(0, end));
        const auto number = field.empty() ? missing : numberOf(field);
        if (!number) {
            out.resize(before);
            return false;
        }
        out.push_back(*number);
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return true;
}

/// What the fields of a line are.
struct number_scanner::field_census {
    std::size_t fields = 0, numbers = 0;
    std::size_t wrong = 0; ///< neither number nor missing point
    std::size_t words = 0; ///< of these without any digit
    std::size_t likeFirst = 0;
    std::string_view first;
    bool startsWithNumber = false; ///< of which something is left
    bool statesSize = false;       ///< "512 x 512"

    void add(std::string_view field, std::optional<double> number)
    {
        const bool isNumber = number && !std::isnan(*number);
        const bool hasDigit = field.find_first_of("0123456789") != std::string_view::npos;
        if (fields++ == 0) {
            first = field;
            startsWithNumber = isNumber;
        }
        numbers += isNumber;
        wrong += !number;
        words += !number && !hasDigit;
        likeFirst += field == first;
        statesSize = statesSize || base::equal_ignoring_case(field, "x") || base::equal_ignoring_case(field, "by");
    }
    bool areMostNumbers() const noexcept
    {
        constexpr std::size_t mostOfSizes = 5; // fields of "512 x 512 x 3"
        return 2 * numbers > fields && !(statesSize && fields <= mostOfSizes);
    }
};

row_likeness number_scanner::likenessToRow(std::string_view line, std::size_t columns, bool inMatrix)
{
    line = base::trimmed(line);
    if (line.empty() || columns == 0) return row_likeness::none;
    const bool hasMark = starts_comment(line) || line.front() == ';';
    if (hasMark && !inMatrix) return row_likeness::none;
    field_census census;
    eachField(line, [&](std::string_view field) {
        const auto number = numberOf(field);
        if (!number) wrongField = field;
        census.add(field, number);
    });
    if (census.fields != columns) return row_likeness::none;
    if (columns == 1) return hasMark ? row_likeness::none : row_likeness::words;
    if (census.wrong == 0) return row_likeness::none;
    if (census.numbers != 0 && census.words == 0 && !hasMark) return row_likeness::damaged;
    if (census.areMostNumbers()) return census.startsWithNumber ? row_likeness::damaged : row_likeness::partly;
    if (hasMark || line.find_first_of(":=") != std::string_view::npos) return row_likeness::none;
    const bool isParted =
        layout.separator != ' ' && static_cast<std::size_t>(std::ranges::count(line, layout.separator)) + 1 >= columns;
    return isParted || census.likeFirst == columns ? row_likeness::words : row_likeness::sentence;
}

bool number_scanner::scanFields(const char* at, const char* end, std::vector<double>& out)
{
    while (at != end) {
        double value = missing; // stays for an empty field
        const char* last = at;
        if (roleOf(*at) != role::separator) {
            if (!layout.decimalComma) last = plain_number(at, end, value);
            if (last == at || layout.groupedBlanks || layout.groupedPoints ||
                (last != end && roleOf(*last) == role::field)) {
                last = fieldEnd(at, end);
                const std::string_view field(at, static_cast<std::size_t>(last - at));
                const auto number = numberOf(field);
                if (!number) {
                    wrongField = field;
                    return false;
                }
                value = *number;
            }
        }
        out.push_back(value);
        at = skipBlanks(last, end);
        if (at != end && roleOf(*at) == role::separator) at = skipBlanks(at + 1, end);
    }
    return true;
}

line_content number_scanner::scan(std::string_view line, std::vector<double>& out)
{
    const char* end = line.data() + line.size();
    const char* at = line.data();
    while (at != end && (roleOf(*at) == role::blank || *at == '\t')) ++at;
    if (at == end) return line_content::blank;
    if (starts_comment({at, static_cast<std::size_t>(end - at)})) return line_content::comment;
    const std::size_t before = out.size();
    if (scanFields(at, end, out)) {
        const bool anyNumber = std::any_of(out.begin() + static_cast<std::ptrdiff_t>(before), out.end(),
                                           [](double value) { return !std::isnan(value); });
        if (anyNumber || out.size() - before > 1) return line_content::numbers;
        out.resize(before);
        return line_content::comment;
    }
    const bool startsWithNumber = out.size() > before && !std::isnan(out[before]);
    out.resize(before);
    return startsWithNumber || is_digit(*at) ? line_content::wrong : line_content::comment;
}

} // namespace vldv::formats
