#include "formats/text/text_shapes.h"

#include "base/text.h"
#include "formats/shared/heights.h"
#include "formats/shared/left_out.h"
#include "formats/shared/point_grid.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vldv::formats {

namespace {

constexpr std::size_t largestSide = 65536;

using shape = table_header::shape;

base::read_error refused(std::string reason) { return {0, std::move(reason)}; }

bool fits_image(std::size_t width, std::size_t height) noexcept
{
    return width <= largestSide && height <= largestSide;
}

std::string too_large(std::size_t width, std::size_t height)
{
    return "an image of " + std::to_string(width) + " x " + std::to_string(height) + " points is too large";
}

value_scale scale_of(const table_header& header)
{
    value_scale scale;
    scale.step = header.factor;
    scale.units = header.units;
    scale.origin = header.origin;
    return scale;
}

value_scale scale_of(const column_heading& heading)
{
    value_scale scale;
    scale.units = heading.units;
    if (!heading.units.empty()) scale.origin = "column heading";
    return scale;
}

/// The axis of one side of a matrix; without a stated size one unit a point and no units.
VLAxis side_axis(const std::optional<quantity>& whole, const std::optional<quantity>& pixel, std::size_t points)
{
    if (whole) return stated_side(0.0, whole->value, static_cast<unsigned>(points), whole->units);
    return pixel ? stated_side(0.0, pixel->value, 1, pixel->units) : VLAxis();
}

/// Brings the rows into bottom row first. Rows that start at the lower right corner only change direction.
void turn_rows(number_table& table, bool startsAtLowerRight)
{
    const auto row = [&](std::size_t index) {
        return table.values.begin() + static_cast<std::ptrdiff_t>(index * table.columns);
    };
    if (startsAtLowerRight)
        for (std::size_t i = 0; i < table.rows; ++i) std::reverse(row(i), row(i + 1));
    else
        for (std::size_t i = 0; i < table.rows / 2; ++i) std::swap_ranges(row(i), row(i + 1), row(table.rows - 1 - i));
}

/// Turns columns that stand as lines, left one first and each from the bottom up, into rows from the bottom up.
void turn_columns(number_table& table)
{
    std::vector<double> rows(table.values.size());
    for (std::size_t line = 0; line < table.rows; ++line)
        for (std::size_t i = 0; i < table.columns; ++i) rows[i * table.rows + line] = table.at(line, i);
    table.values = std::move(rows);
    std::swap(table.columns, table.rows);
}

/// Says what a header states of a size where that is no length, or has no unit.
void note_size(recorded_image& image, const std::string& field, const quantity& size, number_table& table)
{
    if (!size.text)
        note_length(image, field, size.value);
    else if (std::isnan(size.value))
        image.notes.push_back(field + " is \"" + *size.text + "\"");
    else {
        note_length(image, field, size.value);
        if (!is_known_unit(size.units))
            table.notes.push_back("the unit of " + field + ", \"" + *size.text + "\", is not known");
    }
}

base::read_result<recording> matrix_image(number_table& table, const table_header& header)
{
    restore_rows(table, header.form == shape::matrix);
    if (!fits_image(table.columns, table.rows)) return refused(too_large(table.columns, table.rows));
    if (header.linesAreColumns)
        turn_columns(table);
    else
        turn_rows(table, header.startsAtLowerRight);
    image_frame frame;
    frame.width = static_cast<unsigned>(table.columns);
    frame.height = static_cast<unsigned>(table.rows);
    frame.x = side_axis(header.width, header.pixel, table.columns);
    frame.y = side_axis(header.height, header.pixel, table.rows);
    if (table.isCut && header.rows == 0 && header.width && header.height) { // of more rows than are left
        frame.y = frame.x;
        table.notes.emplace_back(
            "the table is cut short and does not state its rows: the step along y is that along x");
    }
    const std::string label = header.channel.empty() ? "Z" : header.channel;
    std::vector<std::string> used;
    recorded_image image = make_image_from_values(unique_id(label, used), label, frame, scale_of(header), table.values);
    const std::pair<const char*, const std::optional<quantity>*> sides[] = {{"the stated width", &header.width},
                                                                            {"the stated height", &header.height},
                                                                            {"the stated pixel size", &header.pixel}};
    for (const auto& [field, size] : sides)
        if (*size) note_size(image, field, **size, table);
    recording result;
    result.items.emplace_back(std::move(image));
    return result;
}

/// Column names where the text gives none: X, Y, Z for points, X and Y1, Y2 … for curves.
std::vector<column_heading> plain_headings(std::size_t columns, bool arePoints)
{
    std::vector<column_heading> headings{{"X", {}}};
    if (arePoints) headings.push_back({"Y", {}});
    const std::string name = arePoints ? "Z" : "Y";
    const std::size_t first = headings.size();
    for (std::size_t i = first; i < columns; ++i)
        headings.push_back({columns - first == 1 ? name : name + std::to_string(i - first + 1), {}});
    return headings;
}

recording grid_images(const number_table& table, const point_grid& grid, const std::vector<column_heading>& headings)
{
    image_frame frame;
    frame.width = static_cast<unsigned>(grid.width);
    frame.height = static_cast<unsigned>(grid.height);
    frame.x = VLAxis(grid.x0, grid.stepX, headings[0].units.c_str());
    frame.y = VLAxis(grid.y0, grid.stepY, headings[1].units.c_str());
    std::vector<std::string> used;
    std::vector<double> heights(table.rows);
    recording result;
    for (std::size_t column = 2; column < table.columns; ++column) {
        for (std::size_t i = 0; i < table.rows; ++i) heights[grid.nodes[i]] = table.at(i, column);
        const column_heading& heading = headings[column];
        result.items.emplace_back(
            make_image_from_values(unique_id(heading.name, used), heading.name, frame, scale_of(heading), heights));
    }
    return result;
}

/// Rows whose x is missing have no place on a curve.
void drop_rows_without_x(number_table& table, std::size_t xColumn)
{
    std::size_t kept = 0;
    for (std::size_t row = 0; row < table.rows; ++row) {
        if (std::isnan(table.at(row, xColumn))) continue;
        if (kept != row)
            std::copy_n(table.values.begin() + static_cast<std::ptrdiff_t>(row * table.columns), table.columns,
                        table.values.begin() + static_cast<std::ptrdiff_t>(kept * table.columns));
        ++kept;
    }
    if (kept == table.rows) return;
    table.notes.push_back("Points left out because they have no x: " + std::to_string(table.rows - kept));
    table.values.resize(kept * table.columns);
    table.rows = kept;
}

/// True for a first column that only counts the points.
bool counts_points(const column_heading& heading)
{
    const std::string name = base::lower_ascii(heading.name);
    return heading.units.empty() && (name == "index" || name == "point" || name == "no" || name == "no.");
}

/// Curves of the columns behind `xColumn` over it: on an axis when its steps are even, else measured against a stream.
recording curves(const number_table& table, std::size_t xColumn, const std::vector<column_heading>& headings)
{
    const auto points = static_cast<unsigned>(table.rows);
    const column_heading& xHeading = headings[xColumn];
    const std::vector<double> x = table.column(xColumn);
    std::vector<std::string> used;
    recording result;
    VLAxis axis;
    std::string parameter;
    if (const auto steps = find_even_steps(x)) {
        axis = VLAxis(steps->start, steps->step, xHeading.units.c_str());
    } else {
        parameter = unique_id(xHeading.name, used);
        result.items.emplace_back(
            make_curve_from_values(parameter, xHeading.name, points, axis, scale_of(xHeading), x));
    }
    for (std::size_t column = xColumn + 1; column < table.columns; ++column) {
        const column_heading& heading = headings[column];
        recorded_image curve = make_curve_from_values(unique_id(heading.name, used), heading.name, points, axis,
                                                      scale_of(heading), table.column(column));
        if (!parameter.empty()) curve.stream.set_parameter_stream(parameter.c_str());
        result.items.emplace_back(std::move(curve));
    }
    return result;
}

base::read_result<recording> curves_over_first(number_table& table, const std::vector<column_heading>& headings)
{
    const std::size_t xColumn = table.columns > 2 && counts_points(headings[0]) ? 1 : 0;
    drop_rows_without_x(table, xColumn);
    if (table.rows < 2) return refused("a curve needs at least two points with x");
    return curves(table, xColumn, headings);
}

base::read_result<recording> single_column(number_table& table, const table_header& header)
{
    restore_rows(table, false);
    if (table.rows < 2) return refused("the text holds a single number");
    const std::string label = header.channel.empty() ? "Y" : header.channel;
    std::vector<std::string> used;
    recording result;
    result.items.emplace_back(make_curve_from_values(unique_id(label, used), label, static_cast<unsigned>(table.rows),
                                                     VLAxis(), scale_of(header), table.values));
    return result;
}

bool are_point_headings(const std::vector<column_heading>& headings)
{
    return headings.size() > 2 && base::equal_ignoring_case(headings[0].name, "x") &&
           base::equal_ignoring_case(headings[1].name, "y");
}

/// Columns over a first one that rises or falls all the way. The rows of an image could do so by chance or by a tilt:
/// an image is hardly twice as high as wide and never eight times, and a tilt that strong shows in all its columns.
bool look_like_curves(const number_table& table)
{
    if (table.columns == 3) return is_strictly_monotonic(table.column(0));
    if (table.rows < 8 || table.rows < 2 * table.columns || !is_strictly_monotonic(table.column(0))) return false;
    if (table.rows >= 8 * table.columns) return true;
    for (std::size_t column = 1; column < table.columns; ++column)
        if (!is_strictly_monotonic(table.column(column))) return true;
    return false;
}

/// The grid of the points; of a table that ends within a line of it that of the lines before, the rest left out.
std::optional<point_grid> take_grid(number_table& table)
{
    const std::vector<double> x = table.column(0), y = table.column(1);
    if (auto grid = find_grid(x, y)) return grid;
    const std::size_t whole = points_of_whole_lines(x, y);
    auto grid = find_grid(std::span(x).first(whole), std::span(y).first(whole));
    if (!grid) return grid;
    table.notes.push_back("The last line of the grid was left out: it has " + std::to_string(table.rows - whole) +
                          " of its points");
    table.rows = whole;
    table.values.resize(table.rows * table.columns);
    return grid;
}

base::read_result<recording> points_image(number_table& table, const std::vector<column_heading>& headings)
{
    const auto grid = take_grid(table);
    if (!grid) return refused("the points x, y do not fill a regular grid");
    if (!fits_image(grid->width, grid->height)) return refused(too_large(grid->width, grid->height));
    return grid_images(table, *grid, headings);
}

base::read_result<recording> shape_open(number_table& table, const table_header& header,
                                        const std::vector<column_heading>& headings)
{
    const bool named = !headings.empty();
    const bool mayBePoints = table.columns > 2 && (!named || are_point_headings(headings) || table.columns == 3);
    if (mayBePoints) {
        const bool arePoints = table.columns == 3 || are_point_headings(headings);
        if (const auto grid = arePoints ? take_grid(table) : find_grid(table.column(0), table.column(1));
            grid && fits_image(grid->width, grid->height))
            return grid_images(table, *grid, named ? headings : plain_headings(table.columns, true));
    }
    if (are_point_headings(headings) && !is_strictly_monotonic(table.column(0)))
        return refused("the points x, y do not fill a regular grid");
    if (named) return curves_over_first(table, headings);
    if (table.columns == 2 || look_like_curves(table))
        return curves_over_first(table, plain_headings(table.columns, false));
    if (table.columns > 3) return matrix_image(table, header);
    return refused("three columns that are neither points on a regular grid nor curves over a rising or falling x");
}

base::read_result<recording> shape_by_form(number_table& table, const table_header& header,
                                           const std::vector<column_heading>& headings)
{
    if (table.rows > std::numeric_limits<unsigned>::max()) return refused("more points than a curve can hold");
    if (header.form == shape::matrix) return matrix_image(table, header);
    if (header.form == shape::grid) {
        if (table.columns < 3) return refused("points of an image need x, y and a value on every line");
        return points_image(table, headings.empty() ? plain_headings(table.columns, true) : headings);
    }
    if (table.columns == 1) return single_column(table, header);
    if (header.form == shape::curve)
        return curves_over_first(table, headings.empty() ? plain_headings(table.columns, false) : headings);
    return shape_open(table, header, headings);
}

} // namespace

base::read_result<recording> shape_table(number_table table, const table_header& header,
                                         const std::vector<column_heading>& headings)
{
    auto result = shape_by_form(table, header, headings);
    if (!result) return result;
    tell_gaps(table);
    for (const std::string& note : header.notes) add_warning(*result, note);
    for (const std::string& note : table.notes) add_warning(*result, note);
    return result;
}

} // namespace vldv::formats
