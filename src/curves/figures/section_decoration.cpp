#include "curves/figures/section_decoration.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>

namespace vldv::curves {

namespace {

struct sample_point {
    int x, y;
};

bool is_between(int value, int a, int b) noexcept { return value >= std::min(a, b) && value <= std::max(a, b); }

/// From the endless line through both ends; from the point where they are one.
double distance_from_line(sample_point point, const grid_point& from, const grid_point& to) noexcept
{
    const double dx = double{1.0} * to[0] - from[0], dy = double{1.0} * to[1] - from[1];
    const double px = double{1.0} * point.x - from[0], py = double{1.0} * point.y - from[1];
    const double length = std::hypot(dx, dy);
    return length > 0.0 ? std::fabs(dx * py - dy * px) / length : std::hypot(px, py);
}

bool lies_on(sample_point point, const grid_point& from, const grid_point& to) noexcept
{
    return is_between(point.x, from[0], to[0]) && is_between(point.y, from[1], to[1]) &&
           distance_from_line(point, from, to) <= 1.0;
}

} // namespace

bool Decoration_at_Section(std::span<const double> xy, const axes_xy& axes, std::span<const grid_point> points,
                           std::span<const std::uint32_t> segmentLengths, std::vector<std::uint32_t>* positions)
{
    if (!positions) return false;
    for (std::size_t i = 0; i + 1 < xy.size(); i += 2) {
        const sample_point point{base::nearest_int((xy[i] - axes.x.start) / axes.x.scale),
                                 base::nearest_int((xy[i + 1] - axes.y.start) / axes.y.scale)};
        double before = 0.0; // samples of the segments before; the joints between them count once
        std::size_t s = 0;
        while (s < segmentLengths.size() && !lies_on(point, points[s], points[s + 1])) {
            before += segmentLengths[s] - (s > 0 ? 1.0 : 0.0);
            ++s;
        }
        if (s == segmentLengths.size()) {
            positions->clear();
            return false;
        }
        const double along = std::hypot(double{1.0} * point.x - points[s][0], double{1.0} * point.y - points[s][1]);
        positions->push_back(static_cast<std::uint32_t>(std::floor(before + along)));
    }
    return true;
}

} // namespace vldv::curves
