#include "base/streams/rounding.h"
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/dpi.h"
#include "surface/figures/mask_group.h"
#include "surface/figures/measure/measurements.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/views/SurfMathView.h"
#include "view/image/SectionSource.h"

#include <algorithm>
#include <utility>

using namespace vldv;

namespace {

constexpr int markHeight = 4; // of a section's marks, in widths of its line

bool is_inside(CPoint point, CSize size) noexcept
{
    return point.x >= 0 && point.y >= 0 && point.x < size.cx && point.y < size.cy;
}

} // namespace

void CSurfMathView::OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object)
{
    if (!stream()) return;
    const document::hint told = document::hint::unpacked(hint);
    const bool isOurs = told.image == imageNumber;
    switch (told.code) {
    case document::hintNewData:
        return onNewData(sender, hint, object);
    case document::hintNewSize:
        if (isOurs) onNewSize(sender, hint, object);
        return;
    case document::hintDataChanged:
        paletteDirty = !hasStoredPalette();
        if (isOurs) renewStoredPalette();
        CImageView::OnUpdate(sender, hint, object);
        if (isOurs && told.reloads) refreshZoomWindow();
        if (isOurs) dropClearedObject();
        return remeasure();
    case document::hintAxesChanged:
        CImageView::OnUpdate(sender, hint, object);
        return remeasure();
    case document::hintScaleChanged:
        return onScaleChanged(sender, hint, object);
    case document::hintRedraw:
        CImageView::OnUpdate(sender, hint, object);
        return Invalidate(true);
    case document::hintSectionChanged:
        return onSectionChanged(sender, hint, object);
    case document::hintClearMarks:
        if (isOurs) machine.removeMarks();
        return;
    case document::hintAddMark:
        if (const auto* const point = std::get_if<CPoint>(&object); isOurs && point) machine.addMark(*point);
        return;
    case document::hintShowPoint:
        if (const auto* const point = std::get_if<CPoint>(&object); isOurs && point)
            moveTo(view::window_showing(sourceRect, imageSize(), *point));
        return;
    case document::hintDrawingPart:
        if (const auto* const part = std::get_if<CRect>(&object); isOurs && part)
            InvalidateRect(view::view_geometry{displayRect, sourceRect}.around(*part), false);
        return;
    case document::hintShowText:
        if (const auto* const text = std::get_if<std::string>(&object); isOurs && text) showText(*text);
        return;
    default:
        return CImageView::OnUpdate(sender, hint, object);
    }
}

void CSurfMathView::showText(const std::string& text)
{
    showMeasure({.isVisible = true,
                 .text = base::widen(text),
                 .position = drawn.measure.position,
                 .alignment = drawn.measure.alignment,
                 .thing = surface::measured_thing::other,
                 .points = {}});
}

void CSurfMathView::onNewData(CView* sender, std::uint32_t hint, const hint_object& object)
{
    knownSize = imageSize();
    sourceRect = CRect({0, 0}, knownSize);
    scale.SyncWithStatic();
    loadStoredPalette(CScale::GetStaticScale());
    CImageView::OnUpdate(sender, hint, object);
    if (!scale.getPeer() && getPeer()) scale.createStrip(this);
    UpdateZScale(true);
    rebuildSectionPens();
}

void CSurfMathView::onNewSize(CView* sender, std::uint32_t hint, const hint_object& object)
{
    const CSize whole = imageSize();
    const CSize known = std::exchange(knownSize, whole);
    if (known != whole) {
        machine.endDrag();
        drawn.measure.isVisible = false; // what it tells of may be gone
        refreshMeasureRows();
    }
    // A part as large as the image, but somewhere else, was a part of what the image has been.
    const bool changed = sourceRect != CRect({0, 0}, whole);
    int width = whole.cx, height = whole.cy;
    if (changed) {
        double x = 1.0, y = 1.0;
        const bool isFlat = whole.cx == 1 || whole.cy == 1;
        if (!isFlat) GetAspectRatio(x, y);
        sourceRect = CRect({0, 0}, whole);
        width = base::nearest_int(whole.cx * x);
        height = base::nearest_int(whole.cy * y);
        if (isFlat) GetBestSize(width, height);
        // What had to be shrunk to stay inside the main window comes back with the image that it was.
        const bool isBack = shrunken && shrunken->before == whole && shrunken->to == displayRect.Size();
        const CSize wanted = isBack ? shrunken->display : CSize{width, height};
        const CSize fitting = fittingArea(wanted);
        if (fitting != wanted && known.cx > 0)
            shrunken = {known, displayRect.Size(), fitting};
        else
            shrunken.reset();
        width = fitting.cx;
        height = fitting.cy;
    } else {
        // Margins have changed: the picture keeps its size.
        width = displayRect.Width();
        height = displayRect.Height();
    }
    AdjustParentSize(width, height, true);
    if (changed) bringFrameInside();
    UpdateZScale(true);
    if (changed) dropOutside(whole);
    CImageView::OnUpdate(sender, hint, object);
}

/// A lengthy object is the document's: when its drawings are cleared, there is nothing to go on from nor to tell of.
void CSurfMathView::dropClearedObject()
{
    const bool isKept = surface::kept_mask(&storageDoc()->decorations(imageNumber), surface::lengthyMaskKey);
    if (isKept || drawn.tracking || drawn.lengthy.path.empty()) return;
    drawn.lengthy = {};
    if (drawn.measure.thing != surface::measured_thing::lengthyObject) return;
    drawn.measure.isVisible = false;
    refreshMeasureRows();
}

/// The image has fewer samples: what lies outside of it goes.
void CSurfMathView::dropOutside(CSize whole)
{
    const auto isOutside = [whole](CPoint point) { return !is_inside(point, whole); };
    drawn.selectionActive = false;
    std::erase_if(drawn.marks, isOutside);
    std::erase_if(drawn.isoline, isOutside);
    for (std::vector<CPoint>& curve : drawn.curves) std::erase_if(curve, isOutside);
    std::erase_if(drawn.curves, [](const std::vector<CPoint>& curve) { return curve.empty(); });
    drawn.lengthy = {}; // its samples are those of the image as it was
    surface::selection_rect& rect = drawn.selection;
    for (int* const x : {&rect.left, &rect.right}) *x = std::clamp(*x, 0, whole.cx);
    for (int* const y : {&rect.top, &rect.bottom}) *y = std::clamp(*y, 0, whole.cy);
}

void CSurfMathView::onScaleChanged(CView* sender, std::uint32_t hint, const hint_object& object)
{
    if ((document::hint::unpacked(hint).reloads || hasFocus()) && mayStorePalette()) {
        paletteDirty = false;
        scale.SyncDelimiters();
        if (const CScale* const common = CScale::GetStaticScale()) scale.SetPaletteId(common->GetPaletteId());
        storePalette();
    }
    if (autoRefresh) CImageView::OnUpdate(sender, hint, object);
}

void CSurfMathView::onSectionChanged(CView* sender, std::uint32_t hint, const hint_object& object)
{
    CView* const* const view = std::get_if<CView*>(&object);
    auto* const changed = view ? dynamic_cast<ISection*>(*view) : nullptr;
    if (changed && changed->getPointsNumber() > 0) {
        const CSize theirs = changed->sourceSize();
        const CSize ours = imageSize();
        CRect bounds;
        for (unsigned i = 0; i < changed->getPointsNumber(); ++i) {
            const CPoint point = changed->getSectionPoint(i);
            const CPoint here{theirs.cx ? point.x * ours.cx / theirs.cx : point.x,
                              theirs.cy ? point.y * ours.cy / theirs.cy : point.y};
            const CRect at(here.x, here.y, here.x + 1, here.y + 1);
            bounds.UnionRect(bounds, at);
        }
        const std::vector<ISection*> all = sections();
        // Its marks may have moved, though it stays where it is.
        const int shadow = changed->sectionView().intOption("profile.width");
        const int reach = std::max(CorrectDPISize(markHeight * intOption("section.line.solid.width")), shadow) + 1;
        for (const CRect& each : {sectionBounds, bounds}) {
            CRect area = surface::scaled({each.left, each.top, each.right, each.bottom}, {displayRect, sourceRect});
            area.NormalizeRect();
            area.InflateRect(reach, reach);
            InvalidateRect(area, false);
        }
        if ((!all.empty() && all.front() != changed) || bounds != sectionBounds) {
            sectionBounds = bounds;
            UpdateSelections();
        }
    }
    CImageView::OnUpdate(sender, hint, object);
}

void CSurfMathView::showMeasure(surface::measure_text measure)
{
    const CRgn before = GetInvalidateRgn();
    drawn.measure = std::move(measure);
    InvalidateRgn(CRgn::combined(before, GetInvalidateRgn(), RGN_OR), false);
    refreshMeasureRows();
}

/// The steps may be others now.
void CSurfMathView::remeasure()
{
    forgetPlace(); // what it told of the pointer
    if (!drawn.measure.isVisible) return;
    surface::measure_text told = surface::remeasured(drawn.measure, surface::steps_of(axisX(), axisY()));
    if (told.text != drawn.measure.text) showMeasure(std::move(told));
}
