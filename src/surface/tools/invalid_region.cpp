#include "surface/tools/invalid_region.h"

#include "platform/draw/dpi.h"
#include "surface/tools/mark_drawing.h"
#include "surface/tools/overlay_drawing.h"

#include <algorithm>
#include <span>

namespace surface {

namespace {

CRect inflated(CRect rect, int by)
{
    rect.InflateRect(by, by);
    return rect;
}

/// The pixels of the points; empty without any.
CRect box_of(std::span<const CPoint> points)
{
    CRect box;
    for (const CPoint& point : points) {
        const CRect pixel(point.x, point.y, point.x + 1, point.y + 1);
        box.UnionRect(box, pixel);
    }
    return box;
}

void add(CRgn& region, const CRect& rect)
{
    if (!rect.IsRectEmpty()) region.CombineRgn(region, CRgn(rect), RGN_OR);
}

class collector {
public:
    collector(const selection_state& state_, const ICursorWorld& world_)
        : state(state_), world(world_), geometry(world_.geometry()), handle(CorrectDPISize(2))
    {
    }

    CRect dragRect(const selection_rect& drag) const { return inflated(box({drag.start(), drag.end()}), handle); }
    CRect box(std::vector<CPoint> samples) const { return box_of(to_client(samples, geometry)); }

    void addShape(CRgn& region) const
    {
        add(region, dragRect(state.selection));
        if (state.mode == cursor_mode::isoline && state.tracking) add(region, inflated(box(state.isoline), handle));
        const auto filled = static_cast<int>(world.option("SelectionFill"));
        if (state.tracking) {
            CRgn moving = state.region;
            if (state.combine != combine_mode::move) return;
            moving.OffsetRgn(state.selection.dx(), state.selection.dy());
            region.CombineRgn(region, to_client(moving, geometry), RGN_OR);
        } else if (filled == selection_style::outer && state.selectionActive) {
            add(region, geometry.display);
        } else {
            region.CombineRgn(region, to_client(state.region, geometry), RGN_OR);
        }
    }
    void addMarks(CRgn& region) const
    {
        switch (state.hotAction) {
        case hot_action::moveMark:
            if (state.hotItem.point < state.marks.size()) addMark(region, state.hotItem.point);
            break;
        case hot_action::deleteMark:
            addAllMarks(region);
            break;
        default:
            if (!state.marks.empty()) addMark(region, state.marks.size() - 1);
            break;
        }
    }
    void addAllMarks(CRgn& region) const
    {
        CRect all = box(state.marks);
        if (all.IsRectEmpty()) return;
        all.InflateRect(CorrectDPISize(10), CorrectDPISize(7), CorrectDPISize(6), CorrectDPISize(7));
        add(region, all);
        for (std::size_t i = 0; i < state.marks.size(); ++i) add(region, numberBox(i));
    }
    void addCurves(CRgn& region) const
    {
        CRect all;
        for (const std::vector<CPoint>& curve : state.curves) all.UnionRect(all, box(curve));
        if (!all.IsRectEmpty()) add(region, inflated(all, CorrectDPISize(3) + 1));
    }
    void addMeasure(CRgn& region) const
    {
        if (!state.measure.isVisible) return;
        const CSize extent = world.textExtent(state.measure.text);
        add(region, textBox(to_client(state.measure.position, geometry), extent, state.measure.alignment));
    }
    CRect pointRect(int reach) const { return inflated(box({state.selection.end()}), reach); }
    int handleSize() const noexcept { return handle; }

private:
    /// Where the clamped text stands.
    CRect textBox(CPoint at, CSize extent, std::uint32_t alignment) const
    {
        const CPoint placed = clamped_text(at, extent, alignment, world.textAscent(), geometry.display);
        const std::uint32_t across = alignment & TA_CENTER, down = alignment & TA_BASELINE;
        const int left = across == TA_CENTER  ? placed.x - extent.cx / 2
                         : across == TA_RIGHT ? placed.x - extent.cx
                                              : placed.x;
        const int top = down == TA_BASELINE ? placed.y - world.textAscent()
                        : down == TA_BOTTOM ? placed.y - extent.cy
                                            : placed.y;
        return {left, top, left + extent.cx, top + extent.cy};
    }
    CRect numberBox(std::size_t mark) const
    {
        if (!world.marksNumbered()) return {};
        const CPoint at = to_client(state.marks[mark], geometry);
        return inflated(textBox({at.x + CorrectDPISize(4), at.y + CorrectDPISize(1)},
                                world.textExtent(std::to_wstring(mark + 1)), 0),
                        1); // the rim
    }
    void addMark(CRgn& region, std::size_t mark) const
    {
        CRect outline = mark_box(to_client(state.marks[mark], geometry), world.marksStyle());
        outline.UnionRect(outline, numberBox(mark));
        add(region, inflated(outline, 1));
    }

    const selection_state& state;
    const ICursorWorld& world;
    view::view_geometry geometry;
    int handle;
};

} // namespace

CRgn invalid_region(const selection_state& state, const ICursorWorld& world, cursor_mode mode)
{
    const collector drawn(state, world);
    CRgn region;
    switch (mode) {
    case cursor_mode::rectangle:
    case cursor_mode::ellipse:
    case cursor_mode::isoline:
        drawn.addShape(region);
        break;
    case cursor_mode::angle:
        add(region, drawn.dragRect(state.selection));
        if (state.angleFirstArmPending) add(region, drawn.dragRect(state.firstArm));
        break;
    case cursor_mode::marks:
        add(region, drawn.pointRect(drawn.handleSize()));
        drawn.addMarks(region);
        break;
    case cursor_mode::curve:
        add(region, drawn.pointRect(CorrectDPISize(3)));
        drawn.addCurves(region);
        break;
    case cursor_mode::lengthyObject:
        add(region, drawn.pointRect(drawn.handleSize()));
        add(region, inflated(drawn.box(state.lengthy.path), drawn.handleSize()));
        break;
    default:
        add(region, drawn.dragRect(state.selection));
        break;
    }
    drawn.addMeasure(region);
    return region;
}

CRgn marks_region(const selection_state& state, const ICursorWorld& world)
{
    const collector drawn(state, world);
    CRgn region;
    drawn.addAllMarks(region);
    drawn.addMeasure(region);
    return region;
}

} // namespace surface
