// What a press does: by what is under the cursor, or else by the mode.
#include "platform/app/keys.h"
#include "platform/draw/dpi.h"
#include "surface/figures/lengthy_object.h"
#include "surface/tools/cursor_machine.h"
#include "surface/tools/cursor_shapes.h"
#include "surface/tools/hit_test.h"
#include "view/image/SectionSource.h"

#include <algorithm>

namespace surface {

void cursor_machine::press(unsigned flags, CPoint client)
{
    if (world.frame().isEmpty()) return world.setCapture(true);
    CRgn before = invalidateRgn();
    const event_point at = snapped(client);
    state.tracking = true;
    world.setCapture(true);
    constexpr unsigned both = MK_SHIFT | MK_CONTROL;
    if ((flags & both) == both) {
        state.hotAction = hot_action::pan;
        state.hotItem = {};
        panAnchor = at.source;
        return;
    }
    if (state.hotAction == hot_action::pan) state.hotAction = hot_action::none; // the keys were let go without a move
    if (state.hotAction == hot_action::none)
        pressMode(flags, at);
    else
        pressItem(flags, at, tolerance(at.client, CorrectDPISize(2)));
    repaint(before, false);
}

void cursor_machine::pressItem(unsigned flags, event_point at, int reach)
{
    switch (state.hotAction) {
    case hot_action::sectionVertex:
        if (ISection* const section = hotSection()) world.bringToFront(*section);
        return move(flags, at.client);
    case hot_action::moveMark:
        return pressMarkMove(at.source, reach);
    case hot_action::deleteMark:
        return pressMarkDelete(at.source, reach);
    case hot_action::moveVertex:
        return pressVertexMove(at.source, reach);
    case hot_action::deleteVertex:
        return pressVertexDelete(flags, at.source, reach);
    case hot_action::volumeMark:
        world.beginVolumeDrag();
        return moveVolume(at.source);
    case hot_action::insertVertex:
        return pressSegment(at.source, reach);
    case hot_action::activateCurve:
        return pressCurve(at.source, reach);
    case hot_action::decoration:
        return world.toggleDecoration(state.hotItem.list, state.hotItem.point);
    case hot_action::moveSection:
        return pressSection(at.source);
    default:
        return;
    }
}

void cursor_machine::pressMarkMove(CPoint at, int reach)
{
    state.hotItem = {.point = find_vertex(state.marks, at, reach)};
}

void cursor_machine::pressMarkDelete(CPoint at, int reach)
{
    const std::size_t found = find_vertex(state.marks, at, reach);
    if (found == hot_item::none) return;
    const CPoint mark = state.marks[found];
    state.marks.erase(state.marks.begin() + static_cast<std::ptrdiff_t>(found));
    state.hotItem = {};
    showTotal();
    world.sendHint(hintMarkRemoved, mark);
}

void cursor_machine::pressVertexMove(CPoint at, int reach)
{
    state.hotItem.point = hot_item::none;
    for (std::vector<CPoint>& curve : state.curves) {
        const std::size_t vertex = find_vertex(curve, at, reach);
        if (vertex == hot_item::none) continue;
        curve.swap(state.curves.front());
        state.hotItem = {.list = 0, .point = vertex};
        return;
    }
}

void cursor_machine::pressVertexDelete(unsigned flags, CPoint at, int reach)
{
    for (std::size_t i = 0; i < state.curves.size(); ++i) {
        std::vector<CPoint>& curve = state.curves[i];
        const std::size_t vertex = find_vertex(curve, at, reach);
        if (vertex == hot_item::none) continue;
        const auto place = curve.begin() + static_cast<std::ptrdiff_t>(vertex);
        const bool deletesRest = vertex == 0 || (flags & MK_CONTROL) != 0;
        curve.erase(place, deletesRest ? curve.end() : place + 1);
        state.hotItem = {};
        if (!curve.empty()) return showLength();
        state.measure.isVisible = false;
        if (i == 0) state.selectionActive = false;
        state.curves.erase(state.curves.begin() + static_cast<std::ptrdiff_t>(i));
        return;
    }
}

void cursor_machine::pressSegment(CPoint at, int reach)
{
    for (std::vector<CPoint>& curve : state.curves) {
        const std::size_t end = find_segment(curve, at, reach);
        if (end == hot_item::none) continue;
        curve.insert(curve.begin() + static_cast<std::ptrdiff_t>(end), at);
        curve.swap(state.curves.front());
        state.hotAction = hot_action::moveVertex;
        state.hotItem = {.list = 0, .point = end};
        return;
    }
}

void cursor_machine::pressCurve(CPoint at, int reach)
{
    const auto isHit = [=](const std::vector<CPoint>& curve) {
        return find_vertex(curve, at, reach) != hot_item::none || find_segment(curve, at, reach) != hot_item::none;
    };
    const auto found = std::ranges::find_if(state.curves, isHit);
    if (found != state.curves.end()) found->swap(state.curves.front());
    showLength();
}

void cursor_machine::pressSection(CPoint at)
{
    ISection* const section = hotSection();
    if (!section) return;
    world.bringToFront(*section);
    savedSection.clear();
    for (unsigned i = 0; i < section->getPointsNumber(); ++i) savedSection.push_back(section->getSectionPoint(i));
    dragAnchor = at;
    world.invalidateAll();
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
