#include "surface/tools/cursor_machine.h"

#include "platform/app/dpi.h"
#include "platform/app/keys.h"
#include "surface/figures/measure/snapping.h"
#include "surface/figures/region_edit.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/tools/hot/hot_tools.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/modes/marks_tool.h"
#include "surface/tools/overlay_area.h"
#include "surface/tools/overlay_drawing.h"

#include <algorithm>
#include <cstdlib>

namespace vldv::surface {

namespace {

bool is_modifier(unsigned key) noexcept { return key == VK_SHIFT || key == VK_CONTROL || key == VK_MENU; }

} // namespace

cursor_machine::event_point cursor_machine::snapped(CPoint client) const
{
    const auto kind = static_cast<snap_mode>(static_cast<int>(world.option("cursor_snap")));
    const CPoint source = toSource(client);
    if (kind == snap_mode::off) return {source, client};
    const CPoint best =
        snapped_point(world.frame(), source, kind, static_cast<int>(world.option("cursor_snap.radius")));
    return {best, to_client(best, world.geometry())};
}

CPoint cursor_machine::toSource(CPoint client) const
{
    const view::view_geometry geometry = world.geometry();
    return {geometry.xToSource(client.x), geometry.yToSource(client.y)};
}

/// So many samples lie under that many pixels right of and below a client point.
int cursor_machine::tolerance(CPoint client, int pixels) const
{
    const CPoint here = toSource(client), there = toSource({client.x + pixels, client.y + pixels});
    return std::max(std::abs(there.x - here.x), std::abs(there.y - here.y));
}

/// The mode in whose manner the state changes: marks and curves are taken hold of in every mode.
cursor_mode cursor_machine::changedMode() const
{
    const hot_tool* const held = hot_tool_of(state.hotAction);
    return held ? held->changedMode(state.mode) : state.mode;
}

CRgn cursor_machine::invalidateRgn(cursor_mode shown) const { return drawn_area(state, world, shown); }

const cursor_tool& cursor_machine::mode() const noexcept { return tool_of(state.mode); }

/// What the mouse is over or holds; nothing of that: the mode.
const mouse_tool& cursor_machine::acting() const noexcept
{
    if (const hot_tool* const held = hot_tool_of(state.hotAction)) return *held;
    return mode();
}

void cursor_machine::repaint(const CRgn& before, bool erase)
{
    const CRgn area = CRgn::combined(before, invalidateRgn(), RGN_OR);
    if (!area.isEmpty()) world.invalidate(area, erase);
}

void cursor_machine::press(unsigned flags, CPoint client)
{
    if (world.frame().isEmpty()) return world.setCapture(true);
    const CRgn before = invalidateRgn();
    const event_point at = snapped(client);
    state.tracking = true;
    world.setCapture(true);
    begin({at.source, flags, tolerance(at.client, CorrectDPISize(2))}, at.client);
    if (state.hotAction != hot_action::pan) repaint(before, false); // of panning nothing shows yet
}

void cursor_machine::begin(const tool_event& event, CPoint client)
{
    drag = {};
    holdToPan(event);
    const mouse_tool& tool = acting();
    tool.press(context(), event);
    if (tool.movesOnPress()) move(event.flags, client);
}

/// The keys that pan count at the press, also when they went down or up without a move.
void cursor_machine::holdToPan(const tool_event& event)
{
    const hit found = hot_pan().find(state, world, event);
    if (found.action == hot_action::none && state.hotAction != hot_action::pan) return;
    state.hotAction = found.action;
    state.hotItem = found.item;
}

void cursor_machine::move(unsigned flags, CPoint client)
{
    if (world.frame().isEmpty()) return;
    const event_point at = snapped(client);
    if (!state.tracking) {
        hoverTest(flags, at.client); // where a press would act
        return world.showStatus(at.source);
    }
    const CRgn before = invalidateRgn();
    const mouse_tool& tool = acting();
    tool.move(context(), at.source);
    repaint(before, false);
    tool.showStatus(context(), at.source);
}

void cursor_machine::release(unsigned flags, CPoint client)
{
    if (!state.tracking) return world.setCapture(false);
    const event_point at = snapped(client);
    const CRgn before = invalidateRgn();
    state.tracking = false; // before the capture goes, which is told at once
    world.setCapture(false);
    if (world.frame().isEmpty()) return;
    acting().release(context(), {at.source, flags});
    repaint(before, false);
}

void cursor_machine::hoverTest(unsigned flags, CPoint client)
{
    if (state.tracking) return;
    const int pixels = static_cast<int>(world.option("section.line.solid.width")) * CorrectDPISize(2);
    const hit found = find_hit(state, world, {toSource(client), flags, tolerance(client, pixels)});
    state.hotAction = found.action;
    state.hotItem = found.item;
    setDefaultCursor();
}

void cursor_machine::setDefaultCursor()
{
    if (!world.pointer()) return;
    const modifier_keys keys{
        .control = world.isKeyDown(VK_CONTROL), .alt = world.isKeyDown(VK_MENU), .shift = world.isKeyDown(VK_SHIFT)};
    world.setCursor(acting().pointerFor(state, keys));
}

bool cursor_machine::keyDown(unsigned key)
{
    if (mode().key(context(), key)) return true;
    if (is_modifier(key)) modifierChanged(key);
    return false;
}

void cursor_machine::keyUp(unsigned key)
{
    if (!is_modifier(key)) return;
    modifierChanged(key);
    if (mode().showsModifiers() && state.tracking && state.combine != combine_mode::replace) world.invalidateAll();
}

void cursor_machine::modifierChanged(unsigned key)
{
    const std::optional<CPoint> pointer = world.pointer();
    if (pointer && key != VK_MENU && !world.frame().isEmpty())
        hoverTest((world.isKeyDown(VK_SHIFT) ? MK_SHIFT : 0u) | (world.isKeyDown(VK_CONTROL) ? MK_CONTROL : 0u),
                  snapped(*pointer).client);
    if (mode().showsModifiers()) setDefaultCursor();
}

void cursor_machine::captureLost()
{
    if (!state.tracking) return;
    const CRgn before = invalidateRgn();
    state.tracking = false;
    acting().abandon(context());
    state.combine = combine_mode::replace;
    repaint(before, false);
}

void cursor_machine::endDrag()
{
    if (state.tracking) {
        captureLost();
        world.setCapture(false);
    }
    state.hotAction = hot_action::none;
    state.hotItem = {};
}

void cursor_machine::setMode(int number)
{
    const cursor_mode chosen = mode_of(number);
    if (state.tracking) endDrag(); // by a key: what one mode began the other cannot finish
    const CRgn before = invalidateRgn(state.mode);
    if (!is_region_mode(state.mode) || !is_region_mode(chosen)) state.selectionActive = false;
    state.mode = chosen;
    state.measure.isVisible = false;
    mode().enter(context());
    setDefaultCursor();
    world.invalidate(CRgn::combined(before, invalidateRgn(chosen), RGN_OR), true);
}

void cursor_machine::inverseSelection()
{
    invert_region(state, world.frame().size());
    world.invalidateAll();
}

void cursor_machine::removeMarks()
{
    CRgn area;
    add_marks(area, state, world);
    add_measure(area, state, world);
    if (hot_marks().does(state.hotAction)) endDrag(); // others go on
    state.marks.clear();
    state.measure.isVisible = false;
    if (!area.isEmpty()) world.invalidate(area, false);
}

void cursor_machine::removeCurves()
{
    const CRgn area = invalidateRgn(cursor_mode::curve);
    if (hot_curves().does(state.hotAction)) endDrag();
    state.curves.clear();
    state.measure.isVisible = false;
    if (!area.isEmpty()) world.invalidate(area, false);
}

void cursor_machine::addMark(CPoint mark)
{
    const CRgn before = invalidateRgn(cursor_mode::marks);
    state.marks.push_back(mark);
    show_total(state, world);
    world.invalidate(CRgn::combined(before, invalidateRgn(cursor_mode::marks), RGN_OR), false);
}

void cursor_machine::addDrawings(std::span<const std::vector<CPoint>> curves, std::span<const CPoint> marks)
{
    state.curves.insert(state.curves.end(), curves.begin(), curves.end());
    state.marks.insert(state.marks.end(), marks.begin(), marks.end());
    if (!marks.empty()) show_total(state, world);
    world.invalidateAll();
}

} // namespace vldv::surface
