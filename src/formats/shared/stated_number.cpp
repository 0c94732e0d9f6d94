#include "formats/shared/stated_number.h"

#include "base/text.h"
#include "formats/shared/text_units.h"

#include <charconv>
#include <cmath>

namespace vldv::formats {

namespace {

constexpr std::string_view blanks(" \t\r\n\f\v\0", 7);

bool is_hexadecimal(std::string_view number) noexcept { return number.find_first_of("xX") != std::string_view::npos; }

/// "nm", "nm/V", "V/LSB": parts that are units, with "/" or "*" between them.
bool is_unit(std::string_view word)
{
    const std::size_t end = word.find_first_of("/*");
    const std::string_view first = word.substr(0, end);
    if (first != "1" && first != "LSB" && !is_known_unit(first)) return false;
    return end == std::string_view::npos || is_unit(word.substr(end + 1));
}

} // namespace

std::optional<double> stated_number(std::string_view text, std::string_view* rest)
{
    std::size_t used = 0;
    const auto number = base::leading_number(text, &used);
    if (!number || is_hexadecimal(text.substr(0, used))) return std::nullopt;
    const std::string_view behind = text.substr(used), touching = behind.substr(0, behind.find_first_of(blanks));
    if (!touching.empty() && (!std::isfinite(*number) || !is_unit(touching))) return std::nullopt;
    if (rest) *rest = behind;
    return number;
}

std::optional<double> lone_number(std::string_view text)
{
    std::string_view rest;
    const auto number = stated_number(text, &rest);
    return base::trimmed(rest).empty() ? number : std::nullopt;
}

std::optional<std::uint64_t> stated_count(std::string_view text, std::uint64_t most) noexcept
{
    while (!text.empty() && blanks.find(text.front()) != std::string_view::npos) text.remove_prefix(1);
    text = text.substr(0, text.find_last_not_of(blanks) + 1);
    if (text.starts_with('+')) text.remove_prefix(1);
    std::uint64_t count = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (problem != std::errc() || end != text.data() + text.size() || count > most) return std::nullopt;
    return count;
}

bool take_number(std::string_view& text, double& number)
{
    if (!base::leading_number(text)) return false;
    const auto stated = stated_number(text, &text);
    if (!stated) text = {};
    number = stated.value_or(std::nan(""));
    return true;
}

} // namespace vldv::formats
