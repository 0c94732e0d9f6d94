#include "formats/shared/point_grid.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

constexpr double tolerance = 0.01; // of a step

struct extent {
    double lo, hi;
    double length() const noexcept { return hi - lo; }
};

/// Not usable (false for `hi > lo`) when a value is missing.
extent extent_of(std::span<const double> values)
{
    extent range{values[0], values[0]};
    for (const double value : values) {
        if (!std::isfinite(value)) return {0.0, 0.0};
        range = {std::min(range.lo, value), std::max(range.hi, value)};
    }
    return range;
}

/// How many points the first run along the fast coordinate has: until it turns round or stands still.
std::size_t first_run(std::span<const double> fast)
{
    const double direction = fast[1] - fast[0];
    for (std::size_t i = 2; i < fast.size(); ++i)
        if (!((fast[i] - fast[i - 1]) * direction > 0.0)) return i;
    return fast.size();
}

/// Index of `value` among `count` steps, or `count` when it lies on none.
std::size_t index_on(const extent& range, std::size_t count, double value)
{
    const double exact = (value - range.lo) / range.length() * static_cast<double>(count - 1);
    const double nearest = std::round(exact);
    return std::fabs(exact - nearest) <= tolerance ? static_cast<std::size_t>(nearest) : count;
}

} // namespace

std::optional<point_grid> find_grid(std::span<const double> x, std::span<const double> y)
{
    const std::size_t count = x.size();
    if (count < 4 || y.size() != count) return std::nullopt;
    const extent rangeX = extent_of(x), rangeY = extent_of(y);
    if (!(rangeX.length() > 0.0) || !(rangeY.length() > 0.0) || !std::isfinite(rangeX.length()) ||
        !std::isfinite(rangeY.length()))
        return std::nullopt;

    const bool xIsFast = std::fabs(x[1] - x[0]) / rangeX.length() > std::fabs(y[1] - y[0]) / rangeY.length();
    const std::size_t run = first_run(xIsFast ? x : y);
    if (run < 2 || count % run != 0 || count / run < 2) return std::nullopt;

    point_grid grid;
    grid.width = xIsFast ? run : count / run;
    grid.height = count / grid.width;
    grid.x0 = rangeX.lo;
    grid.y0 = rangeY.lo;
    grid.stepX = rangeX.length() / static_cast<double>(grid.width - 1);
    grid.stepY = rangeY.length() / static_cast<double>(grid.height - 1);
    grid.nodes.resize(count);
    std::vector<bool> taken(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t column = index_on(rangeX, grid.width, x[i]), row = index_on(rangeY, grid.height, y[i]);
        if (column >= grid.width || row >= grid.height) return std::nullopt;
        const std::size_t node = row * grid.width + column;
        if (taken[node]) return std::nullopt;
        taken[node] = true;
        grid.nodes[i] = node;
    }
    return grid;
}

std::size_t points_of_whole_lines(std::span<const double> x, std::span<const double> y)
{
    const std::size_t count = x.size();
    if (count < 4 || y.size() != count) return 0;
    const bool xIsFast =
        std::fabs(x[1] - x[0]) / extent_of(x).length() > std::fabs(y[1] - y[0]) / extent_of(y).length();
    const std::span<const double> fast = xIsFast ? x : y;
    const std::size_t run = first_run(fast), rest = count % run;
    const double allowed = tolerance * std::fabs(fast[1] - fast[0]);
    for (std::size_t i = 0; i < rest; ++i) {
        const double place = fast[count - rest + i];
        const bool isOnLine = std::fabs(place - fast[i]) <= allowed || std::fabs(place - fast[run - 1 - i]) <= allowed;
        if (!isOnLine) return 0;
    }
    return rest == 0 ? 0 : count - rest;
}

std::optional<even_steps> find_even_steps(std::span<const double> values)
{
    if (values.size() < 2) return std::nullopt;
    const double start = values.front();
    const double step = (values.back() - start) / static_cast<double>(values.size() - 1);
    if (!std::isfinite(step) || step == 0.0) return std::nullopt;
    const double allowed = tolerance * std::fabs(step);
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!(std::fabs(values[i] - (start + step * static_cast<double>(i))) <= allowed)) return std::nullopt;
    return even_steps{start, step};
}

bool is_strictly_monotonic(std::span<const double> values) noexcept
{
    if (values.size() < 2) return false;
    const bool rises = values[1] > values[0];
    for (std::size_t i = 1; i < values.size(); ++i)
        if (!(rises ? values[i] > values[i - 1] : values[i] < values[i - 1])) return false;
    return true;
}

} // namespace vldv::formats
