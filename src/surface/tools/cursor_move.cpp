// What a move does while the button is down.
#include "surface/figures/isoline.h"
#include "surface/figures/lengthy_object.h"
#include "surface/tools/cursor_machine.h"
#include "surface/tools/hit_test.h"
#include "view/image/SectionSource.h"

#include <algorithm>

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
    if (state.hotAction == hot_action::none)
        moveMode(at.source);
    else
        moveItem(at.source);
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

void cursor_machine::moveItem(CPoint at)
{
    switch (state.hotAction) {
    case hot_action::sectionVertex:
        return moveSectionVertex(at);
    case hot_action::moveMark:
        if (state.hotItem.point < state.marks.size()) state.marks[state.hotItem.point] = at;
        return;
    case hot_action::moveVertex:
        if (state.curves.empty() || state.hotItem.point >= state.curves.front().size()) return;
        state.curves.front()[state.hotItem.point] = at;
        return showLength();
    case hot_action::volumeMark:
        return moveVolume(at);
    case hot_action::pan:
        return pan(at);
    case hot_action::moveSection:
        return moveSection(at);
    default:
        return;
    }
}

void cursor_machine::moveSectionVertex(CPoint at)
{
    ISection* const section = hotSection();
    if (!section || state.hotItem.point >= section->getPointsNumber()) return;
    section->setSectionPoint(static_cast<unsigned>(state.hotItem.point),
                             rescaled(at, world.frame().size(), section->sourceSize()));
    section->reloadSection();
}

/// A profile of a row or column goes on to span its image and moves across only.
void cursor_machine::moveSection(CPoint at)
{
    ISection* const section = hotSection();
    if (!section) return;
    const CSize size = section->sourceSize();
    CSize by = at - dragAnchor;
    if (section->isLine()) (section->isHorizontal() ? by.cx : by.cy) = 0;
    for (std::size_t i = 0; i < savedSection.size() && i < section->getPointsNumber(); ++i) {
        const CPoint moved = savedSection[i] + by;
        section->setSectionPoint(static_cast<unsigned>(i), {std::clamp(moved.x, 0, std::max(0, size.cx - 1)),
                                                            std::clamp(moved.y, 0, std::max(0, size.cy - 1))});
    }
    section->reloadSection();
}

void cursor_machine::moveVolume(CPoint at)
{
    const std::optional<volume_mark> mark = world.volumeMark();
    if (!mark) return;
    const CPoint cell = rescaled(at, world.frame().size(), mark->size);
    const auto fraction = [](int index, int length) {
        return length > 1 ? static_cast<double>(index) / (length - 1) : 0;
    };
    world.moveVolumeMark(fraction(cell.x, mark->size.cx), fraction(cell.y, mark->size.cy));
}

/// Brings the sample that was pressed on under the cursor again, as far as the image goes.
void cursor_machine::pan(CPoint at)
{
    const CRect window = world.geometry().source;
    const CSize size = world.frame().size();
    const int dx = std::clamp(panAnchor.x - at.x, -window.left, std::max(-window.left, size.cx - window.right));
    const int dy = std::clamp(panAnchor.y - at.y, -window.top, std::max(-window.top, size.cy - window.bottom));
    if (dx == 0 && dy == 0) return;
    CRect moved = window;
    moved.OffsetRect(dx, dy);
    world.setSourceWindow(moved);
}

} // namespace surface
