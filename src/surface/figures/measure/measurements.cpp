#include "surface/figures/measure/measurements.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "base/units.h"
#include "platform/draw/drawing.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

#include <cmath>
#include <numbers>

namespace vldv::surface {

namespace {

measure_text way_text(texts::id id, std::span<const CPoint> points, const sample_steps& steps)
{
    const readable_number length = read_well(steps.units.c_str(), path_length(points, steps));
    const text_place place = text_output_point(points);
    return {.isVisible = true,
            .text = base::widen(base::formatted(string_resource(id), length.value, length.units)),
            .position = place.at,
            .alignment = place.alignment,
            .thing = id == texts::length ? measured_thing::way : measured_thing::lengthyObject,
            .points = {points.begin(), points.end()}};
}

} // namespace

sample_steps steps_of(const VLAxis& x, const VLAxis& y)
{
    return {x.scale, convert_size(y.get_units(), x.get_units(), y.scale), x.get_units()};
}

double path_length(std::span<const CPoint> points, const sample_steps& steps) noexcept
{
    double length = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i)
        length += std::hypot((double(points[i].x) - points[i - 1].x) * steps.x,
                             (double(points[i].y) - points[i - 1].y) * steps.y);
    return length;
}

double angle_between(const selection_rect& first, const selection_rect& second, const sample_steps& steps) noexcept
{
    constexpr double turn = 2.0 * std::numbers::pi;
    const auto direction = [&steps](const selection_rect& arm) {
        return std::atan2(arm.dy() * steps.y, arm.dx() * steps.x);
    };
    const double between = std::fmod(direction(second) - direction(first) + turn, turn);
    return std::min(between, turn - between) * 180.0 / std::numbers::pi;
}

text_place text_output_point(std::span<const CPoint> points) noexcept
{
    if (points.empty()) return {};
    const CPoint end = points.back(), before = points.size() > 1 ? points[points.size() - 2] : end;
    // Rows count upwards: a way that ends above where it came from has its text above.
    return {end, (end.x < before.x ? TA_RIGHT : TA_LEFT) | (end.y > before.y ? TA_BOTTOM : TA_TOP)};
}

measure_text length_text(std::span<const CPoint> points, const sample_steps& steps)
{
    return way_text(texts::length, points, steps);
}

measure_text lengthy_object_text(std::span<const CPoint> path, const sample_steps& steps)
{
    return way_text(texts::lengthyObject, path, steps);
}

measure_text angle_text(const selection_rect& first, const selection_rect& second, const sample_steps& steps)
{
    const std::string text = base::formatted(string_resource(texts::armsAngle), angle_between(first, second, steps));
    return {.isVisible = true,
            .text = base::widen(text),
            .position = second.start(),
            .alignment = 0,
            .thing = measured_thing::angle,
            .points = {first.start(), first.end(), second.start(), second.end()}};
}

measure_text remeasured(const measure_text& measure, const sample_steps& steps)
{
    const auto drag = [&measure](std::size_t from) {
        const CPoint start = measure.points[from], end = measure.points[from + 1];
        return selection_rect{start.x, start.y, end.x, end.y};
    };
    switch (measure.thing) {
    case measured_thing::way:
        return length_text(measure.points, steps);
    case measured_thing::lengthyObject:
        return lengthy_object_text(measure.points, steps);
    case measured_thing::angle:
        return angle_text(drag(0), drag(2), steps);
    default:
        return measure;
    }
}

measure_text total_text(std::size_t marks, CSize image)
{
    const std::string text = base::formatted(string_resource(texts::totalMarks), static_cast<int>(marks));
    return {.isVisible = marks > 0,
            .text = base::widen(text),
            .position = {image.cx - 1, 0},
            .alignment = TA_RIGHT | TA_BOTTOM,
            .thing = measured_thing::other,
            .points = {}};
}

} // namespace vldv::surface
