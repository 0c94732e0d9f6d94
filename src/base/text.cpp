#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <locale.h>

namespace vldv::base {

namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";

/// The locale of numbers in files; lives as long as the program. Its UTF-8 form, where there is one, prints wide text.
locale_t plain_locale()
{
    static const locale_t plain = [] {
        const locale_t utf8 = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
        return utf8 ? utf8 : newlocale(LC_ALL_MASK, "C", nullptr);
    }();
    return plain;
}

class plain_locale_scope {
public:
    plain_locale_scope() : before(uselocale(plain_locale())) {}
    plain_locale_scope(const plain_locale_scope&) = delete;
    plain_locale_scope& operator=(const plain_locale_scope&) = delete;
    ~plain_locale_scope() { uselocale(before); }

private:
    locale_t before;
};

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool is_hexadecimal_digit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

bool is_hexadecimal(std::string_view text)
{
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') && is_hexadecimal_digit(text[2]);
}

/// What from_chars leaves open when a decimal number is out of range: infinity, or 0 for a vanishing one. The place of
/// the first significant digit and the exponent tell which.
double out_of_range(std::string_view number)
{
    const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, exponentAt);
    std::string_view exponentText = number.substr(std::min(exponentAt + 1, number.size()));
    const bool isSmall = exponentText.starts_with('-');
    if (isSmall || exponentText.starts_with('+')) exponentText.remove_prefix(1);
    long long exponent = 0;
    const auto [end, error] = std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    if (error == std::errc::result_out_of_range) exponent = std::numeric_limits<int>::max();
    const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto firstDigit = static_cast<long long>(mantissa.find_first_of("123456789"));
    return (isSmall ? -exponent : exponent) + point - firstDigit > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

/// A hexadecimal whole number of any length; its end.
const char* parse_hexadecimal(std::string_view digits, double& value)
{
    const auto last = std::find_if_not(digits.begin(), digits.end(), is_hexadecimal_digit);
    const char* const first = digits.data();
    const char* const end = first + (last - digits.begin());
    if (std::from_chars(first, end, value, std::chars_format::hex).ec == std::errc::result_out_of_range)
        value = std::numeric_limits<double>::infinity();
    return end;
}

/// An unsigned number at the front; its end, or null.
const char* parse_magnitude(std::string_view text, double& value)
{
    if (is_hexadecimal(text)) return parse_hexadecimal(text.substr(2), value);
    const char* const first = text.data();
    const char* const last = first + text.size();
    const auto [end, error] = std::from_chars(first, last, value);
    if (error == std::errc::invalid_argument) return nullptr;
    if (error == std::errc::result_out_of_range) value = out_of_range({first, end});
    // "nano" and "info" are words.
    if (!std::isfinite(value) && is_letter(*first) && end != last && is_letter(*end)) return nullptr;
    return end;
}

} // namespace

std::optional<double> leading_number(std::string_view text, std::size_t* used) noexcept
{
    const std::size_t start = std::min(text.find_first_not_of(blanks), text.size());
    std::string_view rest = text.substr(start);
    const bool isNegative = rest.starts_with('-');
    if (isNegative || rest.starts_with('+')) rest.remove_prefix(1);
    if (rest.starts_with('-')) return std::nullopt; // from_chars would take a second sign
    double value = 0.0;
    const char* end = parse_magnitude(rest, value);
    if (!end) return std::nullopt;
    if (used) *used = static_cast<std::size_t>(end - text.data());
    return isNegative ? -value : value;
}

std::optional<double> whole_number(std::string_view text) noexcept
{
    const std::string_view number = trimmed(text);
    std::size_t used = 0;
    const auto value = leading_number(number, &used);
    return value && used == number.size() ? value : std::nullopt;
}

std::optional<long long> whole_integer(std::string_view text) noexcept
{
    std::string_view rest = trimmed(text);
    const bool isNegative = rest.starts_with('-');
    if (isNegative || rest.starts_with('+')) rest.remove_prefix(1);
    const int radix = is_hexadecimal(rest) ? 16 : 10;
    if (radix == 16) rest.remove_prefix(2);
    unsigned long long magnitude = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), magnitude, radix);
    if (rest.empty() || error != std::errc() || end != rest.data() + rest.size()) return std::nullopt;
    constexpr auto largest = static_cast<unsigned long long>(std::numeric_limits<long long>::max());
    if (magnitude > largest + (isNegative ? 1 : 0)) return std::nullopt;
    // The lowest integer has no positive counterpart, so the sign is set before the type.
    return static_cast<long long>(isNegative ? 0 - magnitude : magnitude);
}

std::string shortest(double value)
{
    char text[64];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return {text, error == std::errc() ? end : text};
}

std::string general(double value, int digits)
{
    // Shorter than any precision that matters; more digits than a double has say nothing.
    char text[128];
    const int used = std::clamp(digits, 1, 100);
    const auto [end, error] = std::to_chars(text, text + sizeof text, value, std::chars_format::general, used);
    return {text, error == std::errc() ? end : text};
}

std::string formatted_v(const char* format, std::va_list arguments)
{
    const plain_locale_scope plain;
    std::va_list again;
    va_copy(again, arguments);
    char small[256];
    const int length = std::vsnprintf(small, sizeof small, format, arguments);
    std::string out;
    if (length >= 0 && static_cast<std::size_t>(length) < sizeof small) {
        out.assign(small, static_cast<std::size_t>(length));
    } else if (length >= 0) {
        out.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(out.data(), out.size(), format, again);
        out.pop_back();
    }
    va_end(again);
    return out;
}

std::string formatted(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::string out = formatted_v(format, arguments);
    va_end(arguments);
    return out;
}

std::string_view trimmed(std::string_view text) noexcept
{
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string lower_ascii(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

bool equal_ignoring_case(std::string_view a, std::string_view b) noexcept
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> pieces;
    for (std::size_t at = text.find(separator); at != std::string_view::npos; at = text.find(separator)) {
        pieces.push_back(text.substr(0, at));
        text.remove_prefix(at + 1);
    }
    pieces.push_back(text);
    return pieces;
}

} // namespace vldv::base
