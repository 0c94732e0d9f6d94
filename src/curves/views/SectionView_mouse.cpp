// Marks that mouse and keys move.
#include "base/streams/rounding.h"
#include "base/text.h"
#include "curves/views/SectionView.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/keys.h"
#include "view/image/VolumeSource.h"

#include <algorithm>
#include <utility>

using namespace vldv;

namespace {

constexpr unsigned volumeDimensions = 3;
constexpr int mostWidth = 512, heightAlone = 320, heightWithSpectrum = 160; // of a double click

} // namespace

/// A mark has moved, or is about to: the texts and lines that show it.
void CSectionView::invalidateMark(int mark)
{
    const CRect shown = mark == curves::spectrumMark ? panes().spectrum : panes().curve;
    constexpr int around = 4; // pixels of a dot and its line
    if (mark == curves::levelMark) {
        const int y = shown.bottom - 1 - base::nearest_int((shown.Height() - 1) * marks[mark].y);
        InvalidateRect({shown.left, y - around, shown.right, y + around}, false);
    } else {
        const int x = columnOfMark(mark, shown);
        InvalidateRect({x - around, shown.top - around, x + around, shown.bottom + around}, false);
    }
}

void CSectionView::marksMoved(int mark)
{
    updateMarkY(mark);
    updateText();
    invalidateMark(mark);
    InvalidateRect(textRect(0), true);
    if (isOptionOn("ShowSpectrum")) InvalidateRect(textRect(1), true);
    const SPMDataStream* const source = stream();
    if (source && source->get_dimensions_number() == 2 && curves::active_marks(marksMode()).contains(mark))
        tellSurfaces();
}

void CSectionView::SetDefaultCursor()
{
    const int mark = marks.dragged != curves::noMark ? marks.dragged : marks.hovered;
    SetCursor(mark == curves::noMark      ? cursor_shape::arrow
              : mark == curves::levelMark ? cursor_shape::sizeVertical
                                          : cursor_shape::sizeHorizontal);
}

void CSectionView::OnMouseMove(unsigned flags, CPoint point)
{
    CImageView::OnMouseMove(flags, point);
    if (!hasCurves()) return;
    if (partControl.isHeld()) {
        if (partControl.drag(point, displayRect)) showPart();
        return SetCursor(cursor_shape::sizeHorizontal);
    }
    tellPointer(point);
    if (marks.dragged == curves::noMark) {
        marks.hovered = marks.under(point, marksMode(), panes());
        return SetDefaultCursor();
    }
    invalidateMark(marks.dragged);
    if (marks.move(marks.dragged, point, panes())) {
        marksMoved(marks.dragged);
        if (marks.dragged == curves::positionMark) update_step_data();
    }
    SetDefaultCursor();
}

void CSectionView::OnLButtonDown(unsigned flags, CPoint point)
{
    CImageView::OnLButtonDown(flags, point);
    SetFocus();
    if (!hasCurves()) return;
    if (partControl.takeHold(point, axisRect())) return SetCapture();
    for (const int mark : {curves::firstMark, curves::secondMark}) invalidateMark(mark);
    const bool isOver = marks.under(point, marksMode(), panes()) != curves::noMark;
    if (marks.press(point, marksMode(), panes()) == curves::noMark) return;
    SetCapture();
    if (!isOver)
        for (const int mark : {curves::firstMark, curves::secondMark}) marksMoved(mark);
    SetDefaultCursor();
}

void CSectionView::OnLButtonUp(unsigned flags, CPoint point)
{
    if (marks.dragged != curves::noMark || partControl.isHeld()) ReleaseCapture();
    partControl.letGo();
    marks.dragged = marks.hovered = curves::noMark;
    CImageView::OnLButtonUp(flags, point);
}

void CSectionView::OnCaptureChanged()
{
    marks.dragged = marks.hovered = curves::noMark;
    partControl.letGo();
}

void CSectionView::OnLButtonDblClk(unsigned, CPoint point)
{
    if (axisRect().PtInRect(point)) {
        if (partControl.reset()) showPart();
        return;
    }
    if (textRect(0).PtInRect(point)) return OnTypeMarks();
    marks.reset();
    Resize(mostWidth, isOptionOn("ShowSpectrum") ? heightWithSpectrum : heightAlone);
}

/// \return the crossbar has gone a sample or a part of the pane on
bool CSectionView::moveCrossbar(int dx, int dy)
{
    if (marksMode() != curves::marks_mode::crossbar || section.length < 2) return false;
    const auto stepped = [](double share, double parts, int by) {
        return std::clamp((base::nearest_int(parts * share) + by) / parts, 0.0, 1.0);
    };
    for (const int mark : {curves::positionMark, curves::levelMark}) invalidateMark(mark);
    if (dx != 0) marks[curves::positionMark].x = stepped(marks[curves::positionMark].x, section.length - 1.0, dx);
    // A part of the width, so that both keys go as fast.
    if (dy != 0)
        marks[curves::levelMark].y = stepped(marks[curves::levelMark].y, std::max(displayRect.Width() - 1, 1), dy);
    for (const int mark : {curves::positionMark, curves::levelMark}) marksMoved(mark);
    if (dx != 0) update_step_data();
    return true;
}

void CSectionView::putCrossbar(double share)
{
    invalidateMark(curves::positionMark);
    marks[curves::positionMark].x = share;
    marksMoved(curves::positionMark);
}

/// The section walks through the image across its own direction. \return it did
bool CSectionView::moveAcross(int side, int by)
{
    const SPMDataStream* const source = stream();
    const auto index = static_cast<std::size_t>(side);
    if (by == 0 || !source || source->get_dimensions_number() < 2 || points.empty() ||
        section.varyingDimensions.contains(side))
        return false;
    const auto last = static_cast<std::int32_t>(source->get_dimension(static_cast<unsigned>(side)).length) - 1;
    for (curves::grid_point& point : points)
        if (index < point.size()) point[index] = std::clamp(point[index] + by, 0, std::max(last, 0));
    placed.forget();
    return true;
}

/// The volume that this is a curve of shows the place of the curve.
void CSectionView::moveVolumeMark()
{
    CImageView* const volume = getParentView();
    const SPMDataStream* const source = stream();
    if (!dynamic_cast<IVolumeSource*>(volume) || !source || source->get_dimensions_number() != volumeDimensions) return;
    constexpr std::pair<const char*, unsigned> sides[] = {{"mark.x", 1}, {"mark.y", 2}};
    for (const auto& [option, side] : sides) {
        const double last = std::max(source->get_dimension(side).length - 1.0, 1.0);
        volume->setOption(option, base::shortest(points[0][side] / last).c_str());
    }
}

bool CSectionView::OnKeyDown(unsigned key)
{
    const int dx = (key == VK_RIGHT) - (key == VK_LEFT), dy = (key == VK_UP) - (key == VK_DOWN);
    const SPMDataStream* const source = stream();
    const int firstSide = source && source->get_dimensions_number() == volumeDimensions ? 1 : 0; // behind the depth
    bool isOurs = (dx != 0 || dy != 0) && moveCrossbar(dx, dy);
    bool hasMoved = moveAcross(firstSide, dx);
    hasMoved = moveAcross(firstSide + 1, dy) || hasMoved;
    if (hasMoved) {
        moveVolumeMark();
        OnUpdate(this, document::data_hint(imageNumber), {});
    }
    return CImageView::OnKeyDown(key) || isOurs || hasMoved;
}
