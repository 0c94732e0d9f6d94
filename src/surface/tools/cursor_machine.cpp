#include "surface/tools/cursor_machine.h"

#include "platform/app/keys.h"
#include "platform/draw/dpi.h"
#include "surface/figures/region_edit.h"
#include "surface/figures/snapping.h"
#include "surface/tools/cursor_shapes.h"
#include "surface/tools/hot_tools.h"
#include "surface/tools/invalid_region.h"
#include "surface/tools/marks_tool.h"
#include "surface/tools/overlay_drawing.h"
#include "view/ImageView.h"
#include "view/image/SectionSource.h"

#include <algorithm>
#include <cstdlib>

namespace surface {

namespace {

constexpr int lastMode = static_cast<int>(cursor_mode::excludeFeatures);
constexpr int pageStep = 10; // rows or columns

/// How far a key moves a profile; 0 for other keys.
int line_step(unsigned key) noexcept
{
    switch (key) {
    case VK_PRIOR:
        return pageStep;
    case VK_NEXT:
        return -pageStep;
    case VK_LEFT:
    case VK_DOWN:
        return -1;
    case VK_UP:
    case VK_RIGHT:
        return 1;
    default:
        return 0;
    }
}

bool is_modifier(unsigned key) noexcept { return key == VK_SHIFT || key == VK_CONTROL || key == VK_MENU; }

bool shows_modifiers(cursor_mode mode) noexcept { return is_region_mode(mode) || mode == cursor_mode::lengthyObject; }

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

CRgn cursor_machine::invalidateRgn(cursor_mode mode) const { return invalid_region(state, world, mode); }

void cursor_machine::repaint(const CRgn& before, bool erase)
{
    const CRgn area = CRgn::combined(before, invalidateRgn(), RGN_OR);
    if (!area.isEmpty()) world.invalidate(area, erase);
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
    const hot_tool* const held = hot_tool_of(state.hotAction);
    world.setCursor(held ? held->pointerFor(state.hotAction, keys) : mode_pointer(state, keys));
}

bool cursor_machine::keyDown(unsigned key)
{
    if (const int step = line_step(key);
        step != 0 && (state.mode == cursor_mode::lineProfile || state.mode == cursor_mode::columnProfile)) {
        moveLineView(step);
        if (const ISection* const line = world.firstLine(); line && line->getPointsNumber() > 0)
            world.showStatus(line->getSectionPoint(0));
        return true;
    }
    if (is_modifier(key)) modifierChanged(key);
    return false;
}

void cursor_machine::keyUp(unsigned key)
{
    if (!is_modifier(key)) return;
    modifierChanged(key);
    if (shows_modifiers(state.mode) && state.tracking && state.combine != combine_mode::replace) world.invalidateAll();
}

void cursor_machine::modifierChanged(unsigned key)
{
    const std::optional<CPoint> pointer = world.pointer();
    if (pointer && key != VK_MENU && !world.frame().isEmpty())
        hoverTest((world.isKeyDown(VK_SHIFT) ? MK_SHIFT : 0u) | (world.isKeyDown(VK_CONTROL) ? MK_CONTROL : 0u),
                  snapped(*pointer).client);
    if (shows_modifiers(state.mode)) setDefaultCursor();
}

void cursor_machine::captureLost()
{
    if (!state.tracking) return;
    if (const hot_tool* const held = hot_tool_of(state.hotAction)) held->end(world);
    const CRgn before = invalidateRgn();
    state.tracking = false;
    if (state.hotAction == hot_action::none) {
        state.selectionActive = is_region_mode(state.mode) && !state.region.isEmpty();
        state.angleFirstArmPending = true;
    }
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
    const auto mode = static_cast<cursor_mode>(std::clamp(number, 0, lastMode));
    if (state.tracking) endDrag(); // by a key: what one mode began the other cannot finish
    const CRgn before = invalidateRgn(state.mode);
    const bool staysRegion = is_region_mode(state.mode) && is_region_mode(mode);
    state.mode = mode;
    if (!staysRegion) state.selectionActive = false;
    state.measure.isVisible = false;
    if (mode == cursor_mode::angle) state.angleFirstArmPending = true;
    if (mode == cursor_mode::marks) show_total(state, world);
    setDefaultCursor();
    world.invalidate(CRgn::combined(before, invalidateRgn(mode), RGN_OR), true);
}

void cursor_machine::inverseSelection()
{
    invert_region(state, world.frame().size());
    world.invalidateAll();
}

void cursor_machine::removeMarks()
{
    const CRgn area = marks_region(state, world);
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

void cursor_machine::moveLineView(int delta)
{
    ISection* const line = world.firstLine();
    const CSize size = world.frame().size();
    if (!line || line->getPointsNumber() < 2 || size.cx <= 0 || size.cy <= 0) return;
    const CPoint first = line->getSectionPoint(0), last = line->getSectionPoint(1);
    CPoint from, to{size.cx - 1, size.cy - 1};
    if (line->isHorizontal())
        from.y = to.y = std::clamp(delta ? first.y + delta : state.selection.top, 0, size.cy - 1);
    else
        from.x = to.x = std::clamp(delta ? first.x + delta : state.selection.left, 0, size.cx - 1);
    if (first == from && last == to) return;
    line->setSectionPoint(0, from);
    line->setSectionPoint(1, to);
    line->reloadSection();
}

} // namespace surface
