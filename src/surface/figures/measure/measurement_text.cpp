#include "surface/figures/measure/measurement_text.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "base/units.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "surface/figures/measure/measurements.h"

#include <algorithm>
#include <cmath>

namespace vldv::surface {

namespace {

readable_number readable_on(const VLAxis& axis, double value) { return read_well(axis.get_units(), value); }

CPoint inside(const measured_surface& surface, CPoint point)
{
    return {std::clamp(point.x, 0, surface.width - 1), std::clamp(point.y, 0, surface.height - 1)};
}

int raw_at(const measured_surface& surface, CPoint point)
{
    const CPoint at = inside(surface, point);
    return surface.samples[std::ptrdiff_t{at.y} * surface.width + at.x];
}

bool is_height_measured(const measured_surface& surface, const selection_rect& drag)
{
    return is_measured(surface, drag.start()) && is_measured(surface, drag.end());
}

double position(const VLAxis& axis, int index, bool isAbsolute)
{
    return index * axis.scale + (isAbsolute ? axis.start : 0.0);
}

std::string position_text(const measured_surface& surface, CPoint at, const readable_number& z)
{
    const readable_number x = readable_on(surface.x, position(surface.x, at.x, surface.isAbsoluteX));
    const readable_number y = readable_on(surface.y, position(surface.y, at.y, surface.isAbsoluteY));
    return base::formatted(string_resource(texts::position), x.value, x.units, y.value, y.units, z.value, z.units);
}

std::string size_text(const measured_surface& surface, const selection_rect& drag, const readable_number& z)
{
    const readable_number w = readable_on(surface.x, drag.dx() * surface.x.scale);
    const readable_number h = readable_on(surface.y, drag.dy() * surface.y.scale);
    return base::formatted(string_resource(texts::size), w.value, w.units, h.value, h.units, z.value, z.units);
}

std::string distance_text(const measured_surface& surface, const selection_rect& drag, const readable_number& z)
{
    const readable_number r = readable_on(surface.x, drag_length(surface, drag));
    const readable_number dz = readable_on(surface.z, drag_height(surface, drag));
    return base::formatted(string_resource(texts::distance), r.value, r.units, dz.value, dz.units, z.value, z.units);
}

bool tells_height(const selection_state& drawn)
{
    return drawn.selectionActive && (drawn.mode == cursor_mode::section || drawn.mode == cursor_mode::distance);
}

/// What the pointer at a sample tells. Empty in modes that measure nothing.
std::string figures_text(const measured_surface& surface, const selection_state& drawn, CPoint at)
{
    const readable_number z = readable_on(surface.z, raw_at(surface, at) * surface.z.scale + surface.z.start);
    if (!drawn.selectionActive || drawn.mode == cursor_mode::isoline) return position_text(surface, at, z);
    switch (drawn.mode) {
    case cursor_mode::rectangle:
    case cursor_mode::ellipse:
        return size_text(surface, drawn.selection, z);
    case cursor_mode::section:
    case cursor_mode::distance:
        return distance_text(surface, drawn.selection, z);
    case cursor_mode::angle:
        return base::formatted(string_resource(texts::distanceAngle),
                               angle_between(surface, drawn.firstArm, drawn.selection), z.value, z.units);
    case cursor_mode::lineProfile:
    case cursor_mode::columnProfile:
        return base::formatted(string_resource(texts::line), at.x, z.value, z.units);
    case cursor_mode::marks:
    case cursor_mode::curve:
    case cursor_mode::lengthyObject:
    case cursor_mode::isoline:
    case cursor_mode::includeFeatures:
    case cursor_mode::excludeFeatures:
        break;
    }
    return {};
}

} // namespace

bool is_measured(const measured_surface& surface, CPoint point)
{
    const CPoint at = inside(surface, point);
    const std::size_t index =
        static_cast<std::size_t>(at.y) * static_cast<std::size_t>(surface.width) + static_cast<std::size_t>(at.x);
    return primitives::runs_within(index, index + 1, surface.unmeasured).empty();
}

double drag_length(const measured_surface& surface, const selection_rect& drag)
{
    const double dx = drag.dx() * surface.x.scale;
    const double dy = convert_size(surface.y.get_units(), surface.x.get_units(), drag.dy() * surface.y.scale);
    return std::sqrt(dx * dx + dy * dy);
}

double drag_height(const measured_surface& surface, const selection_rect& drag)
{
    return surface.isEmpty() ? 0.0 : (raw_at(surface, drag.end()) - raw_at(surface, drag.start())) * surface.z.scale;
}

double angle_between(const measured_surface& surface, const selection_rect& first, const selection_rect& second)
{
    return angle_between(first, second, steps_of(surface.x, surface.y));
}

std::wstring status_text(const measured_surface& surface, const selection_state& drawn, CPoint source)
{
    if (surface.isEmpty()) return {};
    const CPoint at = inside(surface, source);
    std::string text = figures_text(surface, drawn, at);
    if (text.empty()) return {};
    if (!is_measured(surface, at))
        text += " (not measured)";
    else if (tells_height(drawn) && !is_height_measured(surface, drawn.selection))
        text += " (the start was not measured)";
    return base::widen(text);
}

std::wstring distance_table_text(const measured_surface& surface, const selection_state& drawn)
{
    std::string text;
    if (drawn.marks.empty())
        text = base::formatted("Distance, %s\tHeight, %s\r\n", surface.x.get_units(), surface.z.get_units());
    const std::string height = is_height_measured(surface, drawn.selection)
                                   ? base::formatted("%4G", drag_height(surface, drawn.selection))
                                   : "not measured";
    text += base::formatted("%4G\t%s\r\n", drag_length(surface, drawn.selection), height.c_str());
    return base::widen(text);
}

} // namespace vldv::surface
