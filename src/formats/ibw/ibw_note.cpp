#include "formats/ibw/ibw_note.h"

#include "base/text.h"
#include "formats/shared/header_text.h"

#include <algorithm>
#include <chrono>

namespace vldv::formats {

namespace {

bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }

/// True for the colon of "22:53:08", also behind other words: what stands before it ends in a number alone.
bool is_within_time(std::string_view line, std::size_t colon)
{
    if (colon + 1 >= line.size() || !is_digit(line[colon + 1]) || !is_digit(line[colon - 1])) return false;
    const std::string_view before = line.substr(0, colon);
    const std::string_view word = before.substr(before.find_last_of(' ') + 1);
    return is_digit(word.front()) && word.find_first_not_of("0123456789-./T") == std::string_view::npos;
}

std::string two_digits(long number) { return (number < 10 ? "0" : "") + std::to_string(number); }

} // namespace

std::map<std::string, std::string> parse_ibw_note(const std::string& text)
{
    std::map<std::string, std::string> note;
    std::string rest;
    std::string lines = text;
    std::ranges::replace(lines, '\n', '\r');
    for (const std::string_view each : base::split(lines, '\r')) {
        const std::string line = header_text(each);
        const std::size_t colon = line.find(':');
        if (colon != std::string::npos && colon != 0 && !is_within_time(line, colon)) {
            const std::string value(base::trimmed(std::string_view(line).substr(colon + 1)));
            if (!value.empty()) note.emplace(line.substr(0, colon), value);
        } else if (!line.empty()) {
            rest += (rest.empty() ? "" : "\n") + line;
        }
    }
    if (rest.empty()) return note;
    std::string& own = note["Note"];
    own += (own.empty() ? "" : "\n") + rest;
    return note;
}

std::string ibw_date(std::uint32_t seconds)
{
    using namespace std::chrono;
    const sys_days epoch = year{1904} / January / 1;
    const unsigned daySeconds = 86400;
    const year_month_day day(epoch + days(seconds / daySeconds));
    const unsigned rest = seconds % daySeconds;
    return std::to_string(static_cast<int>(day.year())) + "-" + two_digits(static_cast<unsigned>(day.month())) + "-" +
           two_digits(static_cast<unsigned>(day.day())) + " " + two_digits(rest / 3600) + ":" +
           two_digits(rest / 60 % 60) + ":" + two_digits(rest % 60);
}

} // namespace vldv::formats
