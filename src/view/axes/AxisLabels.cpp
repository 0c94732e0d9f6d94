#include "view/axes/AxisLabels.h"

#include "base/streams/rounding.h"
#include "base/text.h"
#include "base/text/decimals.h"
#include "view/axes/TickRule.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vldv::view {

namespace {

constexpr double printedAsZero = 1e-06;
constexpr int fewestDigits = 3;

/// Whether printf may be given this format and one double.
bool takes_one_number(const char* format) noexcept
{
    int conversions = 0;
    for (const char* c = format; *c; ++c) {
        if (*c != '%') continue;
        if (c[1] == '%') {
            ++c;
            continue;
        }
        c += 1 + std::strspn(c + 1, "+- #0");
        // Longer fields than these have no place on an axis and would only cost memory.
        const std::size_t width = std::strspn(c, "0123456789");
        c += width;
        const std::size_t precision = *c == '.' ? std::strspn(c + 1, "0123456789") + 1 : 0;
        c += precision;
        if (width > 2 || precision > 3) return false;
        if (*c == 'l') ++c;
        if (!*c || !std::strchr("eEfFgG", *c)) return false;
        ++conversions;
    }
    return conversions == 1;
}

/// Digits with which numbers of this size stand without an exponent; 0 where one makes them shorter.
int plain_digits(double largest, double step) noexcept
{
    constexpr int exponent = 4; // "e+07"
    // In full a number takes place + 1 characters; with an exponent the digits that tell the step, a point where these
    // are several, and the exponent. The shorter form is chosen.
    const int place = base::decimal_exponent(largest), told = place - base::decimal_exponent(step) + 1;
    return step != 0.0 && place < 15 && place + 1 < told + (told > 1 ? 1 : 0) + exponent ? place + 1 : 0;
}

} // namespace

std::string axis_label(double value, double step)
{
    // As many digits as lead from the place of the value to that of the step, and two more, so that neighbouring labels
    // differ.
    const double magnitude = std::max(1.0, std::fabs(value)) / std::fabs(step);
    const int digits = static_cast<int>(base::round_half_up(std::fabs(std::log10(magnitude)))) + 2;
    return base::general(std::fabs(value) < printedAsZero ? 0.0 : value, std::max(digits, fewestDigits));
}

std::string axis_label(double value, double step, const char* format)
{
    if (!format || !takes_one_number(format)) return axis_label(value, step);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
    return base::formatted(format, value);
#pragma GCC diagnostic pop
}

std::string label_format(double start, double end, int ticNumber)
{
    axis_ticks found;
    find_ticks(start, end, 1, ticNumber, found);
    // An axis of one value has ticks all the same; they stand for that value.
    const double step = found.end == end ? found.step : 0.0;
    const double largest = std::max(std::fabs(start), std::fabs(end));
    return base::formatted("%%.%dlg", std::max(base::telling_digits(largest, step), plain_digits(largest, step)));
}

} // namespace vldv::view
