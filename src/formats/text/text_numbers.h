#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vldv::formats {

/// What could be read in another way.
enum class number_doubt : std::uint8_t {
    none,
    decimalCommas, ///< "1,234": every comma could part thousands
    partingCommas, ///< "1,234": every comma could be a decimal mark
    decimalPoints, ///< "1.234": every point could part thousands
    partingBlanks, ///< "1 234": every blank could separate
};
/// The doubt in words, with how it was settled; null for none.
const char* told_doubt(number_doubt doubt) noexcept;

/// How the numbers of a text stand on their lines. Blanks separate, several of them once, but for those that group
/// digits.
struct number_layout {
    bool decimalComma = false; ///< "-7999,9482": the comma is the decimal mark
    /// The separator that counts each time, so that two in a row have an empty field between them: ';', ',', a tab, or
    /// a blank when there is none.
    char separator = ' ';
    /// "1,234.5" between tabs or semicolons: the commas group digits by three.
    bool groupedDigits = false;
    bool groupedBlanks = false; ///< "1 234.5" between tabs or semicolons: so do the blanks
    /// "1.234" between tabs or semicolons, never a decimal mark, and "1.234,5": so do the points.
    bool groupedPoints = false;
    number_doubt doubt = number_doubt::none;
    bool operator==(const number_layout&) const noexcept = default;
};

constexpr bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }

/// One field as a number: decimal, exponent after e, E, d or D. NaN for the words that mark a missing point (NaN, Bad,
/// "-", asterisks) and for numbers too large for a double. Nothing when it is neither.
std::optional<double> number_of_field(std::string_view field, bool decimalComma) noexcept;

/// "-1,234,567.8e3" without the marks; nothing when these do not part the digits before the decimal mark by three.
std::optional<double> grouped_number(std::string_view field, char mark, bool decimalComma) noexcept;

/// True when all fields of a line are numbers or missing points, whatever the separators and the decimal mark are.
bool is_number_line(std::string_view line) noexcept;

/// Finds the layout from the first `enough` lines of numbers in `text`, or from all where these leave it open.
number_layout detect_layout(std::string_view text, std::size_t enough);

/// What a line turned out to be.
enum class line_content { blank, comment, numbers, wrong };

/// How much a line that is not all numbers looks like a row of a table.
enum class row_likeness {
    none,     ///< words, names, a comment
    sentence, ///< as many words as columns, between blanks
    words,    ///< as many fields as columns, all alike or between the separators of the table
    partly,   ///< as many fields as columns, most of them numbers, behind a word: a heading or a damaged row
    damaged,  ///< as many fields as columns, a number or a digit in each or numbers from the first on
};

/// Splits lines into numbers without allocating, apart from the growth of the result.
class number_scanner {
public:
    explicit number_scanner(const number_layout& layout_) noexcept;
    /// Appends the numbers of `line`, missing points as NaN; a line that is not all numbers appends nothing.
    line_content scan(std::string_view line, std::vector<double>& out);
    /// \param inMatrix  a comment mark may stand for a number, too: such a line looks like a row partly
    /// A single column is one of words, whatever they are.
    row_likeness likenessToRow(std::string_view line, std::size_t columns, bool inMatrix = false);
    /// Appends the numbers of a line that looks like a row, what is none as NaN.
    void scanDamaged(std::string_view line, std::vector<double>& out) const;
    /// Appends the numbers of a line whose first or last fields are empty, these as NaN. \return false, with nothing
    /// appended, when its separators do not make it a row of so many columns
    bool scanWithEmptyEnds(std::string_view line, std::size_t columns, std::vector<double>& out) const;
    /// The field that made the last line wrong.
    std::string_view fieldAtFault() const noexcept { return wrongField; }

private:
    struct field_census;
    enum class role : std::uint8_t { field, blank, separator };
    role roleOf(char c) const noexcept { return roles[static_cast<unsigned char>(c)]; }
    const char* skipBlanks(const char* at, const char* end) const noexcept;
    const char* fieldEnd(const char* at, const char* end) const noexcept;
    /// Calls `take` with each field of a trimmed line.
    template <typename Take>
    void eachField(std::string_view line, const Take& take) const;
    bool scanFields(const char* at, const char* end, std::vector<double>& out);
    std::optional<double> numberOf(std::string_view field) const noexcept;

    std::array<role, 256> roles{};
    number_layout layout;
    std::string_view wrongField;
};

} // namespace vldv::formats
