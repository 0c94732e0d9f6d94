#include "paint/raster/pen_pattern.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vldv::paint {

namespace {

constexpr double shortestDash = 0.01; ///< in widths: its two ends alone

/// Of a fixed style, for a cosmetic pen in pixels, for a geometric one in widths.
std::vector<double> fixed_pattern(std::uint32_t style, bool geometric)
{
    switch (style & PS_STYLE_MASK) {
    case PS_DASH:
        return geometric ? std::vector<double>{3, 1} : std::vector<double>{18, 6};
    case PS_DOT:
        return geometric ? std::vector<double>{1, 1} : std::vector<double>{3, 3};
    case PS_DASHDOT:
        return geometric ? std::vector<double>{3, 1, 1, 1} : std::vector<double>{9, 6, 3, 6};
    case PS_DASHDOTDOT:
        return geometric ? std::vector<double>{3, 1, 1, 1, 1, 1} : std::vector<double>{9, 3, 3, 3, 3, 3};
    default:
        return {};
    }
}

} // namespace

device_pen device_pen_of(const CPen& pen, double scale, double ratio)
{
    const bool isGeometric = pen.isGeometric();
    device_pen out;
    out.pattern = fixed_pattern(pen.style, isGeometric);
    out.showsGaps = !out.pattern.empty();
    if ((pen.style & PS_STYLE_MASK) == PS_USERSTYLE) out.pattern.assign(pen.pattern.begin(), pen.pattern.end());
    const double units = isGeometric ? pen.width * scale : out.pattern.empty() ? std::max(1, pen.width) : 1;
    out.isThin = units < 1.5;
    out.width = (out.isThin ? 1.0 : units) * ratio;
    // Round and square ends add half a width to either side of a dash, which the gaps of a fixed pattern make good. A
    // thin line has no ends.
    if (isGeometric && !out.isThin && out.showsGaps && (pen.style & PS_ENDCAP_MASK) != PS_ENDCAP_FLAT)
        for (std::size_t i = 0; i < out.pattern.size(); i += 2) {
            out.pattern[i] = std::max(shortestDash, out.pattern[i] - 1.0);
            out.pattern[i + 1] += 1.0;
        }
    // A fixed pattern grows with the line, a user pattern with the units.
    double unit = ratio;
    if (isGeometric) unit = out.showsGaps ? out.width : scale * ratio;
    for (double& length : out.pattern) length *= unit;
    return out;
}

dash_walk::dash_walk(const std::vector<double>& pattern_) : pattern(pattern_)
{
    // A pattern of an odd count changes its roles with each turn: dashes become gaps. Twice the pattern has an even
    // count.
    if (pattern.size() % 2 != 0) pattern.insert(pattern.end(), pattern_.begin(), pattern_.end());
    total = std::accumulate(pattern.begin(), pattern.end(), 0.0);
    // What is finer than a pixel is a whole line, and would take for ever.
    if (!(total >= 1.0)) pattern.clear();
}

dash_walk::place dash_walk::at(double along) const
{
    double rest = std::fmod(along, total);
    std::size_t index = 0;
    while (index + 1 < pattern.size() && rest >= pattern[index]) rest -= pattern[index++];
    return {index, std::max(pattern[index] - rest, 0.0)};
}

} // namespace vldv::paint
