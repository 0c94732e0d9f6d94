#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace formats {

/// How the numbers of a text stand on their lines. Blanks always separate, several of them once.
struct number_layout {
    bool decimalComma = false; ///< "-7999,9482": the comma is the decimal mark
    bool unsureComma = false;  ///< a decimal mark, but every one could part thousands: "1,234"
    /// The separator that counts each time, so that two in a row have an empty field between them: ';', ',', a tab, or
    /// a blank when there is none.
    char separator = ' ';
    /// "1,234.5" between tabs or semicolons: the commas group digits by three.
    bool groupedDigits = false;
    bool operator==(const number_layout&) const noexcept = default;
};

/// One field as a number: decimal, exponent after e, E, d or D. NaN for the words that mark a missing point (NaN, Bad,
/// "-", asterisks) and for numbers too large for a double. Nothing when it is neither.
std::optional<double> number_of_field(std::string_view field, bool decimalComma) noexcept;

/// True when all fields of a line are numbers or missing points, whatever the separators and the decimal mark are.
bool is_number_line(std::string_view line) noexcept;

/// Finds the layout from the first `enough` lines of numbers in `text`, or from all where these leave it open.
number_layout detect_layout(std::string_view text, std::size_t enough);

/// What a line turned out to be.
enum class line_content { blank, comment, numbers, wrong };

/// Splits lines into numbers without allocating, apart from the growth of the result.
class number_scanner {
public:
    explicit number_scanner(const number_layout& layout_) noexcept;
    /// Appends the numbers of `line`, missing points as NaN; a line that is not all numbers appends nothing.
    line_content scan(std::string_view line, std::vector<double>& out);
    /// True for a line that is one of `columns` numbers but for damaged ones among them: each field has a digit, not
    /// all are numbers, not none is one. A line of words, names or a comment is none.
    bool isDamagedRow(std::string_view line, std::size_t columns);
    /// The field that made the last line wrong.
    std::string_view wrong_field() const noexcept { return wrongField; }

private:
    enum class role : std::uint8_t { field, blank, separator };
    role role_of(char c) const noexcept { return roles[static_cast<unsigned char>(c)]; }
    const char* skip_blanks(const char* at, const char* end) const noexcept;
    bool scan_fields(const char* at, const char* end, std::vector<double>& out);
    std::optional<double> number_of(std::string_view field) const noexcept;

    std::array<role, 256> roles{};
    number_layout layout;
    std::string_view wrongField;
};

} // namespace formats
