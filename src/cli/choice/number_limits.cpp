#include "cli/choice/number_limits.h"

#include "base/text.h"

#include <CLI/CLI.hpp>
#include <cmath>

namespace vldv::cli {

namespace {

/// \param fits  whether the text is a number within the limits, which `allowed` tells
template <class Fits>
CLI::Validator limit(Fits fits, const std::string& allowed)
{
    return CLI::Validator(
        [fits, allowed](const std::string& text) {
            return fits(text) ? std::string() : "expected a " + allowed + ", not \"" + text + '"';
        },
        allowed);
}

constexpr long long mostOfAll = std::numeric_limits<int>::max();

/// A most of all that an option can hold is no limit that a user would meet.
std::string whole_words(long long least, long long most)
{
    if (most == mostOfAll) return base::formatted("whole number, %lld or more", least);
    return base::formatted("whole number from %lld to %lld", least, most);
}

bool is_row_of_digits(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

/// What was wrong with a text that is no such number.
std::string refusal(const std::string& text, long long least, long long most)
{
    if (most == mostOfAll && is_row_of_digits(text)) {
        const auto number = base::whole_integer(text);
        if (!number || *number > most)
            return "expected a whole number that is not above 2147483647, not \"" + text + '"';
    }
    return "expected a " + whole_words(least, most) + ", not \"" + text + '"';
}

} // namespace

CLI::Validator whole_number(long long least, long long most)
{
    // The parser takes "010" for octal: it is given the number as it is read here.
    return CLI::Validator(
        [least, most](std::string& text) {
            const bool isDecimal = text.find_first_of("xX") == std::string::npos;
            const auto number = isDecimal ? base::whole_integer(text) : std::nullopt;
            if (!number || *number < least || *number > most) return refusal(text, least, most);
            text = std::to_string(*number);
            return std::string();
        },
        whole_words(least, most));
}

CLI::Validator number_at_least(double least)
{
    return limit(
        [least](const std::string& text) {
            const auto number = base::whole_number(text);
            return number && std::isfinite(*number) && *number >= least;
        },
        "number, " + base::general(least) + " or more");
}

} // namespace vldv::cli
