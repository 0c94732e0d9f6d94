// What a release leaves behind.
#include "platform/app/keys.h"
#include "surface/figures/isoline.h"
#include "surface/figures/lengthy_object.h"
#include "surface/figures/measurements.h"
#include "surface/figures/region_edit.h"
#include "surface/tools/cursor_machine.h"
#include "surface/tools/curve_tool.h"
#include "surface/tools/hot_tools.h"
#include "surface/tools/marks_tool.h"

#include <array>
#include <cstdlib>

namespace surface {

namespace {

constexpr int shortDrag = 3; // samples

bool is_short_on_both(const selection_rect& drag) noexcept
{
    return std::abs(drag.dx()) < shortDrag && std::abs(drag.dy()) < shortDrag;
}

bool is_short_on_either(const selection_rect& drag) noexcept
{
    return std::abs(drag.dx()) < shortDrag || std::abs(drag.dy()) < shortDrag;
}

} // namespace

void cursor_machine::release(unsigned flags, CPoint client)
{
    if (!state.tracking) return world.setCapture(false);
    const event_point at = snapped(client);
    const CRgn before = invalidateRgn();
    state.tracking = false; // before the capture goes, which is told at once
    world.setCapture(false);
    if (world.frame().isEmpty()) return;
    if (const hot_tool* const held = hot_tool_of(state.hotAction))
        held->end(world);
    else
        releaseMode(flags, at.source);
    repaint(before, false);
}

void cursor_machine::releaseMode(unsigned flags, CPoint at)
{
    state.selection.right = at.x;
    state.selection.bottom = at.y;
    switch (state.mode) {
    case cursor_mode::rectangle:
    case cursor_mode::ellipse:
        return releaseRegion();
    case cursor_mode::isoline:
        return releaseIsoline(at);
    case cursor_mode::section:
        return releaseSection();
    case cursor_mode::distance:
        return releaseDistance();
    case cursor_mode::angle:
        return releaseAngle();
    case cursor_mode::marks:
        state.marks.push_back(at);
        state.selectionActive = false;
        return show_total(state, world);
    case cursor_mode::curve:
        return releaseCurve(flags, at);
    case cursor_mode::lineProfile:
    case cursor_mode::columnProfile:
        state.selectionActive = false;
        return;
    case cursor_mode::lengthyObject:
        return releaseLengthy(at);
    case cursor_mode::includeFeatures:
        return world.sendToFeatures(hintIncludeRelease, at);
    case cursor_mode::excludeFeatures:
        return world.sendToFeatures(hintExcludeRelease, at);
    }
}

void cursor_machine::finishRegion()
{
    finish_region(state, world.frame().size());
    world.refreshZoomWindow();
}

void cursor_machine::releaseRegion()
{
    if (is_short_on_either(state.selection) && state.combine == combine_mode::replace) {
        state.region = CRgn();
        state.selectionActive = false;
    } else {
        finishRegion();
    }
    if (world.option("SelectionSynchr") != 0.0) world.shareSelection();
}

void cursor_machine::releaseIsoline(CPoint at)
{
    const bool isMoved = state.combine == combine_mode::move;
    if (!isMoved) showStatus(at);
    state.isoline.clear();
    if (!isMoved) traceIsoline(at);
    if (isMoved || (state.isoline.size() >= 3 && is_closed(state.isoline)))
        finishRegion();
    else if (state.combine == combine_mode::replace || state.region.isEmpty())
        state.selectionActive = false;
    if (world.option("SelectionSynchr") != 0.0) world.shareSelection();
}

void cursor_machine::releaseSection()
{
    state.selectionActive = false;
    if (!is_short_on_both(state.selection))
        world.openSection(std::array{state.selection.start(), state.selection.end()});
}

void cursor_machine::releaseDistance()
{
    if (is_short_on_both(state.selection)) {
        state.selectionActive = false;
        return;
    }
    state.measure =
        length_text(std::array{state.selection.start(), state.selection.end()}, steps_of(world.axisX(), world.axisY()));
    if (static_cast<double>(state.measure.text.size()) >= world.option("text.compact_length"))
        world.rebuildStatistics();
}

void cursor_machine::releaseAngle()
{
    if (is_short_on_both(state.selection)) {
        state.selectionActive = false;
        state.angleFirstArmPending = true;
        return;
    }
    if (state.angleFirstArmPending)
        state.firstArm = state.selection;
    else
        state.measure = angle_text(state.firstArm, state.selection, steps_of(world.axisX(), world.axisY()));
    state.angleFirstArmPending = !state.angleFirstArmPending;
}

void cursor_machine::releaseCurve(unsigned flags, CPoint at)
{
    if (state.curves.empty() || (flags & MK_CONTROL)) state.curves.insert(state.curves.begin(), std::vector<CPoint>());
    state.curves.front().push_back(at);
    show_length(state, world);
    state.selectionActive = false;
}

void cursor_machine::releaseLengthy(CPoint at)
{
    state.selectionActive = false;
    if (state.lengthy.path.empty()) return;
    const double radius = world.option("lengthy_object.simplify.r");
    state.lengthy = finished(extended(finishedLengthy, world.frame(), at), radius);
    // Along the corners the steps from sample to sample do not count as a detour.
    const std::vector<CPoint>& measured = radius > 0.0 ? state.lengthy.corners : state.lengthy.path;
    state.measure = lengthy_object_text(measured, steps_of(world.axisX(), world.axisY()));
    world.storeLengthyObject(state.lengthy.path);
}

} // namespace surface
