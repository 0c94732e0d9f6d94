// What a move does while the button is down.
#include "surface/figures/isoline.h"
#include "surface/figures/lengthy_object.h"
#include "surface/tools/cursor_machine.h"
#include "surface/tools/hot_tools.h"

namespace surface {

void cursor_machine::move(unsigned flags, CPoint client)
{
    if (world.frame().isEmpty()) return;
    const event_point at = snapped(client);
    if (!state.tracking) {
        hoverTest(flags, at.client); // where a press would act
        return world.showStatus(at.source);
    }
    const CRgn before = invalidateRgn();
    if (const hot_tool* const held = hot_tool_of(state.hotAction))
        held->move(context(), at.source);
    else
        moveMode(at.source);
    repaint(before, false);
    showStatus(at.source);
}

/// Where an isoline is wanted and there is none, why.
void cursor_machine::showStatus(CPoint at)
{
    const bool isTracing = state.mode == cursor_mode::isoline && state.hotAction == hot_action::none &&
                           state.combine != combine_mode::move;
    const char* const reason = isTracing ? why_no_isoline(world.frame(), at) : "";
    if (*reason)
        world.showNotice(reason);
    else
        world.showStatus(at);
}

void cursor_machine::moveMode(CPoint at)
{
    switch (state.mode) {
    case cursor_mode::lineProfile:
    case cursor_mode::columnProfile:
        spanLine(at);
        return moveLineView(0);
    case cursor_mode::lengthyObject:
        if (state.lengthy.path.empty()) return;
        state.selection.right = at.x;
        state.selection.bottom = at.y;
        state.lengthy = extended(finishedLengthy, world.frame(), at);
        return;
    case cursor_mode::isoline:
        state.selection.right = at.x;
        state.selection.bottom = at.y;
        if (state.combine != combine_mode::move) traceIsoline(at);
        return;
    case cursor_mode::includeFeatures:
        return world.sendToFeatures(hintIncludeDrag, at);
    case cursor_mode::excludeFeatures:
        return world.sendToFeatures(hintExcludeDrag, at);
    default:
        state.selection.right = at.x;
        state.selection.bottom = at.y;
        return;
    }
}

void cursor_machine::traceIsoline(CPoint seed)
{
    world.showWait(true);
    state.isoline = trace_isoline(world.frame(), seed);
    world.showWait(false);
}

} // namespace surface
