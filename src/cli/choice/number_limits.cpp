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

/// A most of all that an option can hold is no limit that a user would meet.
std::string whole_words(long long least, long long most)
{
    if (most == std::numeric_limits<int>::max()) return base::formatted("whole number, %lld or more", least);
    return base::formatted("whole number from %lld to %lld", least, most);
}

} // namespace

CLI::Validator whole_number(long long least, long long most)
{
    return limit(
        [least, most](const std::string& text) {
            const auto number = base::whole_integer(text);
            return number && *number >= least && *number <= most;
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

CLI::Validator number_above(double least)
{
    return limit(
        [least](const std::string& text) {
            const auto number = base::whole_number(text);
            return number && std::isfinite(*number) && *number > least;
        },
        "number above " + base::general(least));
}

} // namespace vldv::cli
