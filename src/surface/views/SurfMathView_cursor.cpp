// Mouse, keys and what they select.
#include "document/StorageDoc.h"
#include "surface/figures/data_selection.h"
#include "surface/figures/region_edit.h"
#include "surface/views/SurfMathView.h"
#include "surface/views/zoom_window.h"
#include "view/image/SectionSource.h"

#include <algorithm>
#include <cstring>

using namespace vldv;

void CSurfMathView::OnLButtonDown(unsigned flags, CPoint point)
{
    machine.press(flags, point);
    CImageView::OnLButtonDown(flags, point);
}

void CSurfMathView::OnLButtonUp(unsigned flags, CPoint point)
{
    machine.release(flags, point);
    CImageView::OnLButtonUp(flags, point);
}

/// The machine chooses the pointer, where views without one show an arrow.
void CSurfMathView::OnMouseMove(unsigned flags, CPoint point) { machine.move(flags, point); }

void CSurfMathView::OnCaptureChanged() { machine.captureLost(); }

bool CSurfMathView::OnKeyDown(unsigned key) { return machine.keyDown(key) || CImageView::OnKeyDown(key); }

bool CSurfMathView::OnKeyUp(unsigned key)
{
    machine.keyUp(key);
    return CImageView::OnKeyUp(key);
}

std::wstring CSurfMathView::GetMouseText(CPoint source) const
{
    return surface::status_text(measured(), drawn, source);
}

surface::measured_surface CSurfMathView::measured() const
{
    const surface::sample_frame frame = shownFrame();
    if (frame.isEmpty() || stream()->get_dimensions_number() < 2) return {};
    return {.samples = frame.samples.data(),
            .width = frame.width,
            .height = frame.height,
            .unmeasured = unmeasured,
            .x = axisX(),
            .y = axisY(),
            .z = valueAxis(),
            .isAbsoluteX = intOption("scaling.x") == 1,
            .isAbsoluteY = intOption("scaling.y") == 1};
}

surface::drawing_axes CSurfMathView::drawingAxes() const
{
    if (!stream() || stream()->get_dimensions_number() < 2) return {};
    return {storageDoc()->getAxis(imageNumber, 0, 0), storageDoc()->getAxis(imageNumber, 0, 1), imageSize()};
}

CRect CSurfMathView::selectionBounds() const { return surface::selection_bounds(drawn, sourceRect, imageSize()); }

CImageView* CSurfMathView::featuresView() const
{
    if (!GetDocument()) return nullptr;
    for (CView* const each : GetDocument()->views())
        if (auto* const view = dynamic_cast<CImageView*>(each);
            view && view->getImageNumber() == imageNumber &&
            std::strcmp(view->viewKind(), "CFeaturesHistogramView") == 0)
            return view;
    return nullptr;
}

std::unique_ptr<CDC> CSurfMathView::legendDC() const
{
    std::unique_ptr<CDC> dc = getPeer() ? getPeer()->clientDC() : nullptr;
    if (dc) dc->SelectObject(font);
    return dc;
}

void CSurfMathView::adoptSelection(const surface::selection_state& from)
{
    if (drawn.tracking) return;
    drawn.region = from.region;
    if (drawn.mode != from.mode) drawn.measure.isVisible = false; // it belongs to what the mode has drawn
    drawn.mode = from.mode;
    drawn.selectionActive = from.selectionActive;
    drawn.selection = from.selection;
    machine.setDefaultCursor();
    Invalidate(true);
    refreshMeasureRows();
    refreshZoomWindow();
}

void CSurfMathView::refreshZoomWindow() { surface::refresh_zoom_window(*this, selectionBounds()); }

int CSurfMathView::GetDataSelection(VLPluginDataSelection* out, unsigned count)
{
    if (!hasSamples()) return 0;
    const std::vector<VLPluginDataSelection> selected = surface::data_selections(drawn, imageSize());
    if (!out) return static_cast<int>(selected.size());
    const std::size_t filled = std::min<std::size_t>(count, selected.size());
    std::copy_n(selected.begin(), filled, out);
    return static_cast<int>(filled);
}

void CSurfMathView::getSelectionCopy(SPMDataStream& target, const VLPluginDataSelection* list, unsigned count)
{
    if (hasSamples()) surface::copy_selected(target, *stream(), {list, count});
}
