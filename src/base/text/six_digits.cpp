#include "base/text/six_digits.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace vldv::base {

namespace {

constexpr int digits = 6;
constexpr double largest = 1.79769e308; ///< the largest six-digit number that a double holds
constexpr double lastDigit = 1e-5;      ///< one unit of it, relative to a number that begins with 1

/// A six-digit decimal text: one digit, a point, five digits, an exponent.
struct decimal_text {
    char text[32];
    char* end;
    explicit decimal_text(double value) noexcept
        : end(std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, digits - 1).ptr)
    {
    }
    double value() const noexcept
    {
        double read = largest; // kept when the text is out of range
        std::from_chars(text, end, read);
        return read;
    }
    /// Counts up by one unit of the last digit.
    void increase() noexcept
    {
        char* digit = text + digits; // behind the point
        for (; digit >= text && (*digit == '9' || *digit == '.'); --digit)
            if (*digit == '9') *digit = '0';
        if (digit >= text) {
            ++*digit;
            return;
        }
        // 9.99999 became 0.00000: 10.0000, with the point one place further
        std::copy_backward(text, end, end + 1);
        ++end;
        text[0] = '1';
    }
};

/// The smallest six-digit number that is not below a positive `value`.
double six_digits_up(double value) noexcept
{
    decimal_text text(value);
    if (text.value() < value) text.increase();
    return text.value();
}

/// Raw sample of a physical value, not yet rounded.
double exact_raw(const raw_axis& axis, double physical) noexcept
{
    const double distance = physical - axis.start;
    return std::isfinite(distance) ? distance / axis.scale : physical / axis.scale - axis.start / axis.scale;
}

/// A range of physical values and the raw numbers that have to say it.
struct fit {
    double lo, hi, rawMin, rawMax;

    /// The axis of this scale that brings the middles of both as close together as a start of six digits can.
    raw_axis centred(double scale) const noexcept
    {
        const double centreRaw = 0.5 * rawMin + 0.5 * rawMax;
        return {six_digits(std::clamp(0.5 * lo + 0.5 * hi - centreRaw * scale, -largest, largest)), scale};
    }
    bool holds(const raw_axis& axis) const noexcept { return axis.raw(lo) >= rawMin && axis.raw(hi) <= rawMax; }
};

/// The finest axis with a scale above `tooFine`, at which six digits put the start off the centre by so much that the
/// range leaves the raw numbers. Where these reach around 0, a coarser scale only adds room, so that halving finds it.
raw_axis coarser_axis(const fit& range, double tooFine) noexcept
{
    const double first = tooFine;
    double roomy = first;
    for (double more = lastDigit; roomy < largest; more *= 2.0) {
        roomy = six_digits_up(std::min(first * (1.0 + more), largest));
        if (range.holds(range.centred(roomy))) break;
        tooFine = roomy;
    }
    for (;;) {
        const double between = six_digits(0.5 * tooFine + 0.5 * roomy);
        if (!(between > tooFine && between < roomy)) return range.centred(roomy);
        (range.holds(range.centred(between)) ? roomy : tooFine) = between;
    }
}

} // namespace

double raw_axis::raw(double physical) const noexcept { return round_half_up(exact_raw(*this, physical)); }

double six_digits(double value) noexcept
{
    return std::isfinite(value) && value != 0.0 ? decimal_text(value).value() : value;
}

raw_axis six_digit_axis(double lo, double hi, double rawMin, double rawMax) noexcept
{
    const fit range{lo, hi, rawMin, rawMax};
    const double width = hi - lo, steps = rawMax - rawMin;
    if (width == 0.0) {
        // The start alone says one value, at raw 0 where there is one.
        const raw_axis flat{six_digits(lo - std::clamp(0.0, rawMin, rawMax)), 1.0};
        if (range.holds(flat)) return flat;
    }
    const double ideal = std::isfinite(width) ? width / steps : hi / steps - lo / steps;
    const double least = width == 0.0 ? 1.0 : std::numeric_limits<double>::min();
    const double finest = six_digits_up(std::clamp(ideal, least, largest));
    const raw_axis axis = range.centred(finest);
    return range.holds(axis) ? axis : coarser_axis(range, finest);
}

} // namespace vldv::base
