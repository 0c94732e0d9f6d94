#include "base/units.h"

#include "base/text/unit_table.h"

#include <cmath>
#include <cstdlib>
#include <string_view>

using namespace vldv;

namespace {

/// A unit, or one over another; the latter is then a plain 1 without `hasUnder`.
struct quotient {
    base::known_unit over, under;
    bool hasUnder = false;
};

std::string_view text_of(const char* units) { return units ? units : ""; }

bool parse(std::string_view text, quotient& out)
{
    const std::size_t slash = text.find('/');
    const auto over = base::parse_unit(text.substr(0, slash));
    if (!over) return false;
    out.over = *over;
    out.hasUnder = slash != std::string_view::npos;
    if (!out.hasUnder) return true;
    const auto under = base::parse_unit(text.substr(slash + 1));
    if (under) out.under = *under;
    return under.has_value();
}

bool same_kind(const base::known_unit& a, const base::known_unit& b) { return a.kind == b.kind && a.power == b.power; }

bool same_kind(const quotient& a, const quotient& b)
{
    return a.hasUnder == b.hasUnder && same_kind(a.over, b.over) && same_kind(a.under, b.under);
}

/// Rounds once where the factors are equal, as between prefixes of one unit: a negative power of ten would be inexact.
double rescaled(double value, double multiply, double divide, int exponent)
{
    if (multiply != divide) value = value * multiply / divide;
    const double power = std::pow(10.0, std::abs(exponent));
    return exponent < 0 ? value / power : value * power;
}

double converted(const quotient& from, const quotient& to, double value)
{
    const double scaled = rescaled(value, from.over.factor * to.under.factor, to.over.factor * from.under.factor,
                                   from.over.exponent - to.over.exponent - from.under.exponent + to.under.exponent);
    if (from.hasUnder || from.over.zero == to.over.zero) return scaled;
    // Degrees Celsius start elsewhere than kelvins; per something they are differences alone.
    return scaled + rescaled(from.over.zero - to.over.zero, 1.0, to.over.factor, -to.over.exponent);
}

/// Takes away what rounding left below a whole power of the prefixes' step, so that 1 reads as 1.
double settled(double value, double limit)
{
    constexpr double closeness = 1e-15;
    for (const double edge : {1.0, limit})
        if (std::abs(std::abs(value) - edge) <= closeness * edge) return std::copysign(edge, value);
    return value;
}

} // namespace

int units_convertable(const char* a, const char* b)
{
    if (text_of(a) == text_of(b)) return 1;
    quotient first, second;
    return parse(text_of(a), first) && parse(text_of(b), second) && same_kind(first, second) ? 1 : 0;
}

double convert_size(const char* from, const char* to, double value)
{
    quotient source, target;
    if (text_of(from) == text_of(to) || !parse(text_of(from), source) || !parse(text_of(to), target)) return value;
    return same_kind(source, target) ? converted(source, target, value) : value;
}

const char* default_units(const char* units, double* value)
{
    quotient given;
    if (!units) return "";
    if (!parse(units, given) || given.hasUnder || !base::takes_prefixes(given.over)) return units;
    if (*value == 0.0 || !std::isfinite(*value)) return units;
    const double limit = std::pow(1000.0, given.over.power);
    // From the finest prefix up: the first that makes the value small enough, or the coarsest.
    const char* chosen = units;
    double rewritten = *value;
    for (int step = 0; step < base::prefixSteps; ++step) {
        quotient candidate;
        chosen = base::prefixed_unit(given.over, step, candidate.over);
        rewritten = settled(converted(given, candidate, *value), limit);
        if (std::abs(rewritten) < limit) break;
    }
    *value = rewritten;
    return chosen;
}

namespace vldv {

std::string base_units(const char* units, double* value)
{
    quotient given, target;
    const std::string text(text_of(units));
    if (!parse(text, given) || given.over.zero != 0.0 || given.under.zero != 0.0) return text;
    std::string name = base::kind_unit(given.over, target.over);
    target.hasUnder = given.hasUnder;
    if (given.hasUnder) name += std::string("/") + base::kind_unit(given.under, target.under);
    *value = converted(given, target, *value);
    return name;
}

} // namespace vldv

const char* default_units_z(const char* units, double* value) { return default_units(units, value); }
