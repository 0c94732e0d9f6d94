#include "surface/tools/hit_test.h"

#include "base/streams/rounding.h"
#include "platform/app/keys.h"
#include "view/ImageView.h"
#include "view/image/SectionSource.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace surface {

namespace {

constexpr std::size_t none = hot_item::none;

bool is_decoration_hit(const document::decoration& drawing, const ICursorWorld& world, CPoint at, int reach)
{
    const bool isLine = drawing.type == DECORATION_POLYLINE || drawing.type == DECORATION_POLYLINE_3D;
    const bool isPoints = drawing.type == DECORATION_POINTS || drawing.type == DECORATION_POINTS_3D;
    if (!(drawing.state & DECORATION_HIT_TESTABLE) || !(isLine || isPoints)) return false;
    const std::vector<CPoint> points = samples_of(drawing, world.drawingAxes());
    return find_vertex(points, at, reach) != none || (isLine && find_segment(points, at, reach) != none);
}

hit find_decoration(const ICursorWorld& world, CPoint at, int reach)
{
    const document::decorations* const drawings = world.decorations();
    if (!drawings) return {};
    std::size_t group = 0;
    for (const auto& [key, content] : drawings->all()) {
        for (std::size_t i = 0; i < content.members.size(); ++i)
            if (is_decoration_hit(content.members[i], world, at, reach))
                return {hot_action::decoration, {.list = group, .point = i}};
        ++group;
    }
    return {};
}

hit find_mark(const selection_state& state, CPoint at, int reach, bool shift)
{
    const std::size_t mark = find_vertex(state.marks, at, reach);
    if (mark == none) return {};
    return {shift ? hot_action::moveMark : hot_action::deleteMark, {.point = mark}};
}

hit find_curve(const selection_state& state, CPoint at, int reach, bool shift)
{
    for (std::size_t i = 0; i < state.curves.size(); ++i) {
        if (const std::size_t vertex = find_vertex(state.curves[i], at, reach); vertex != none) {
            const hot_action plain = i == 0 ? hot_action::deleteVertex : hot_action::activateCurve;
            return {shift ? hot_action::moveVertex : plain, {.list = i, .point = vertex}};
        }
        if (const std::size_t end = find_segment(state.curves[i], at, reach); end != none)
            return {i == 0 ? hot_action::insertVertex : hot_action::activateCurve, {.list = i, .point = end}};
    }
    return {};
}

std::vector<CPoint> points_of(const ISection& section)
{
    std::vector<CPoint> points;
    for (unsigned i = 0; i < section.getPointsNumber(); ++i) points.push_back(section.getSectionPoint(i));
    return points;
}

hit find_section_vertex(const ICursorWorld& world, CPoint at, int reach)
{
    for (ISection* const section : world.sections()) {
        if (section->isLine()) continue;
        std::vector<CPoint> points = points_of(*section);
        for (CPoint& point : points) point = rescaled(point, section->sourceSize(), world.frame().size());
        if (const std::size_t vertex = find_vertex(points, at, reach); vertex != none)
            return {hot_action::sectionVertex, {.view = &section->sectionView(), .point = vertex}};
    }
    return {};
}

hit find_section_segment(const ICursorWorld& world, CPoint at, int reach)
{
    for (ISection* const section : world.sections())
        if (find_segment(points_of(*section), at, reach) != none)
            return {hot_action::moveSection, {.view = &section->sectionView()}};
    return {};
}

hit find_volume(const ICursorWorld& world, CPoint at, int reach)
{
    const std::optional<volume_mark> mark = world.volumeMark();
    if (!mark || !is_vertex_hit(mark_sample(*mark, world.frame().size()), at, reach)) return {};
    return {hot_action::volumeMark, {.view = mark->view}};
}

int scaled(int value, int from, int to) noexcept
{
    return from == 0 ? value : static_cast<int>(std::int64_t{value} * to / from);
}

} // namespace

bool is_vertex_hit(CPoint vertex, CPoint at, int reach) noexcept
{
    return std::abs(vertex.x - at.x) <= reach && std::abs(vertex.y - at.y) <= reach;
}

bool is_segment_hit(CPoint from, CPoint to, CPoint at, int reach) noexcept
{
    const auto between = [](int a, int b, int value) { return std::min(a, b) <= value && value <= std::max(a, b); };
    if (!between(from.x, to.x, at.x) || !between(from.y, to.y, at.y)) return false;
    const double dx = double(to.x) - from.x, dy = double(to.y) - from.y;
    const double cross = dx * (double(at.y) - from.y) - dy * (double(at.x) - from.x);
    // Compared without dividing, so that a segment of no length is its point.
    return std::abs(cross) <= reach * std::hypot(dx, dy);
}

std::size_t find_vertex(const std::vector<CPoint>& points, CPoint at, int reach) noexcept
{
    const auto found = std::ranges::find_if(points, [=](CPoint each) { return is_vertex_hit(each, at, reach); });
    return found == points.end() ? none : static_cast<std::size_t>(found - points.begin());
}

std::size_t find_segment(const std::vector<CPoint>& points, CPoint at, int reach) noexcept
{
    for (std::size_t i = 1; i < points.size(); ++i)
        if (is_segment_hit(points[i - 1], points[i], at, reach)) return i;
    return none;
}

CPoint rescaled(CPoint point, CSize from, CSize to) noexcept
{
    return {scaled(point.x, from.cx, to.cx), scaled(point.y, from.cy, to.cy)};
}

CPoint mark_sample(const volume_mark& mark, CSize image) noexcept
{
    const CPoint cell{base::nearest_int(mark.x * (mark.size.cx - 1)), base::nearest_int(mark.y * (mark.size.cy - 1))};
    return rescaled(cell, mark.size, image);
}

hit find_hit(const selection_state& state, const ICursorWorld& world, CPoint at, int reach, unsigned flags)
{
    const bool shift = (flags & MK_SHIFT) != 0;
    hit found = find_decoration(world, at, reach);
    if (found.action == hot_action::none) found = find_mark(state, at, reach, shift);
    if (found.action == hot_action::none) found = find_curve(state, at, reach, shift);
    if (found.action == hot_action::none) found = find_section_vertex(world, at, reach);
    if (found.action == hot_action::none) found = find_section_segment(world, at, reach);
    if (found.action == hot_action::none) found = find_volume(world, at, reach);
    return found;
}

} // namespace surface
