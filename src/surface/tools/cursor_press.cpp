// What a press does: by what is under the cursor, or else by the mode.
#include "platform/app/keys.h"
#include "platform/draw/dpi.h"
#include "surface/figures/lengthy_object.h"
#include "surface/tools/cursor_machine.h"
#include "surface/tools/cursor_shapes.h"
#include "surface/tools/hot_tools.h"

namespace surface {

void cursor_machine::press(unsigned flags, CPoint client)
{
    if (world.frame().isEmpty()) return world.setCapture(true);
    const CRgn before = invalidateRgn();
    const event_point at = snapped(client);
    state.tracking = true;
    world.setCapture(true);
    drag = {};
    const tool_event event{at.source, flags, tolerance(at.client, CorrectDPISize(2))};
    holdToPan(event);
    const hot_tool* const held = hot_tool_of(state.hotAction);
    if (held)
        held->press(context(), event);
    else
        pressMode(flags, at);
    if (held && held->movesOnPress()) move(flags, at.client);
    if (state.hotAction != hot_action::pan) repaint(before, false); // nothing that is drawn has changed
}

/// The keys that pan count at the press, also when they went down or up without a move.
void cursor_machine::holdToPan(const tool_event& event)
{
    const hit found = hot_pan().find(state, world, event);
    if (found.action == hot_action::none && state.hotAction != hot_action::pan) return;
    state.hotAction = found.action;
    state.hotItem = found.item;
}

void cursor_machine::pressMode(unsigned flags, event_point at)
{
    const CPoint here = at.source;
    switch (state.mode) {
    case cursor_mode::includeFeatures:
        return world.sendToFeatures(hintIncludePress, here);
    case cursor_mode::excludeFeatures:
        return world.sendToFeatures(hintExcludePress, here);
    default:
        break;
    }
    if (is_region_mode(state.mode)) return pressRegion(flags, at);
    state.selection = {here.x, here.y, here.x, here.y};
    if (state.mode == cursor_mode::lineProfile || state.mode == cursor_mode::columnProfile) {
        spanLine(here);
        world.openLine(state.selection.start(), state.selection.end());
    } else if (state.mode == cursor_mode::lengthyObject) {
        if (!(flags & MK_CONTROL) || state.lengthy.path.empty()) state.lengthy = extended({}, world.frame(), here);
        finishedLengthy = state.lengthy; // Ctrl goes on with the last object
        state.lengthy = extended(finishedLengthy, world.frame(), here);
        if (state.lengthy.path.empty()) return;
    }
    state.selectionActive = true;
    state.measure.isVisible = false;
}

void cursor_machine::pressRegion(unsigned flags, event_point at)
{
    state.combine = combine_of(
        {.control = (flags & MK_CONTROL) != 0, .alt = world.isKeyDown(VK_MENU), .shift = (flags & MK_SHIFT) != 0});
    // A region that was selected before the mode changed twice is not seen and takes no part.
    if (state.combine == combine_mode::replace || !state.selectionActive) state.region = CRgn();
    state.selection = {at.source.x, at.source.y, at.source.x, at.source.y};
    state.isoline.clear();
    state.selectionActive = true;
    state.measure.isVisible = false;
    if (state.mode == cursor_mode::isoline) move(flags, at.client);
}

/// The selection along the whole row or column of the window on show.
void cursor_machine::spanLine(CPoint at)
{
    const CRect window = world.geometry().source;
    if (state.mode == cursor_mode::lineProfile)
        state.selection = {window.left, at.y, window.right - 1, at.y};
    else
        state.selection = {at.x, window.top, at.x, window.bottom - 1};
}

} // namespace surface
