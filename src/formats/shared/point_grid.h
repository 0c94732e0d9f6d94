#pragma once
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace vldv::formats {

/// Points that fill a regular rectangular grid, each node once.
struct point_grid {
    std::size_t width = 0, height = 0;
    double x0 = 0.0, y0 = 0.0;       ///< smallest coordinates
    double stepX = 1.0, stepY = 1.0; ///< positive
    std::vector<std::size_t> nodes;  ///< of each point: row * width + column, row 0 with the smallest y
};

/// The grid on which points in file order lie: either coordinate may run fast, up, down or to and fro. Coordinates may
/// be off by 1 % of a step. Nothing when the points do not fill a grid of at least 2 x 2, or a coordinate is missing.
std::optional<point_grid> find_grid(std::span<const double> x, std::span<const double> y);
/// How many of these points fill whole lines of a grid, when the last line of it has begun and is not whole; else 0.
std::size_t points_of_whole_lines(std::span<const double> x, std::span<const double> y);

/// Equal steps from the first value to the last.
struct even_steps {
    double start = 0.0;
    double step = 1.0; ///< negative when the values fall
};

/// The steps of `values` when each is within 1 % of a step of its place; nothing for fewer than two values, equal ends
/// or missing values.
std::optional<even_steps> find_even_steps(std::span<const double> values);

/// True when every value is greater than the one before, or every value smaller.
bool is_strictly_monotonic(std::span<const double> values) noexcept;

} // namespace vldv::formats
