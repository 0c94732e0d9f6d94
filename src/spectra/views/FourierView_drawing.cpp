// The picture of the spectrum, and what stands over it.
#include "base/streams/rounding.h"
#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/app/dpi.h"
#include "platform/draw/DC.h"
#include "spectra/figures/fourier_selection.h"
#include "spectra/views/FourierView.h"
#include "view/axes/scale_mark.h"
#include "view/scale/render.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <stdexcept>

using namespace vldv;

namespace {

constexpr colorEntry light = 0xFFFFFF, dark = 0;

CRect mirrored(CRect bins)
{
    bins = spectra::mirror_rect(bins);
    bins.NormalizeRect();
    return bins;
}

} // namespace

void CFourierView::DrawSpectrum()
{
    CountDisplayRect();
    image.Resize(displayRect.Width(), displayRect.Height());
    if (!image.Ok()) return;
    CRect window;
    if (!IsGood() || !window.IntersectRect(sourceRect, CRect({0, 0}, shownSize()))) {
        std::ranges::fill(image.bits(), std::byte{});
        return;
    }
    spectrum.setMode(mode());
    std::vector<std::int16_t> samples;
    try {
        spectrum.draw(window, doubleOption("contrast"), isOptionOn("normalize_spectrum"), samples);
    } catch (const std::bad_alloc&) {
        throw std::runtime_error("Zero pointer exception in function CFourierView::DrawSpectrum");
    }
    const VLAxis brightness(32768.0 / 65535.0, 1.0 / 65535.0, "");
    const CSize size{image.width(), image.height()};
    fitter.forget();
    const view::fitted_window shown = fitter.fit(samples.data(), window.Width(), CRect({0, 0}, window.Size()), size);
    scale.DrawImage({.bits = image.bits().data(),
                     .source = shown.samples,
                     .sourceStep = shown.step,
                     .size = {size.cx, size.cy},
                     .zAxis = &brightness,
                     .rgb32 = image.header().biBitCount == 32,
                     .range = &shown.range});
}

void CFourierView::OnDrawData(CDC& dc)
{
    CountDisplayRect();
    if (image.Ok()) {
        const CBitmap bitmap{.header = image.header(), .bits = image.bits().data()};
        // Until the next rendering a picture of another size stands in.
        dc.StretchDIBits(displayRect, bitmap, CRect(0, 0, image.width(), image.height()), SRCCOPY);
    } else {
        dc.FillSolidRect(displayRect, colorOption("background"));
    }
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(displayRect);
    dc.SetBkMode(TRANSPARENT);
    dc.SelectObject(font);
    drawAreas(dc);
    drawMarks(dc);
    dc.RestoreDC(saved);
}

/// Around all pixels that show these bins.
CRect CFourierView::clientBox(const CRect& bins) const noexcept
{
    const double x = sourceRect.Width() ? double(displayRect.Width()) / sourceRect.Width() : 1.0;
    const double y = sourceRect.Height() ? double(displayRect.Height()) / sourceRect.Height() : 1.0;
    const int u = spectra::zero_frequency(spectrum.width()), v = spectra::zero_frequency(spectrum.height());
    const auto column = [&](int bin) { return displayRect.left + base::nearest_int((bin + u - sourceRect.left) * x); };
    const auto row = [&](int bin) { return displayRect.bottom - base::nearest_int((bin + v - sourceRect.top) * y); };
    return {column(bins.left), row(bins.bottom + 1), column(bins.right + 1), row(bins.top)};
}

CPoint CFourierView::clientPoint(CPoint bin) const noexcept
{
    return clientBox({bin.x, bin.y, bin.x, bin.y}).CenterPoint();
}

/// What an edit acts on, solid where it was drawn and dotted where it is mirrored; ellipses lie in the parts into which
/// the axes split an area.
void CFourierView::drawAreas(CDC& dc) const
{
    const colorEntry color = colorOption("SelColor");
    dc.SelectObject(CBrush::null());
    const auto draw = [&](const CRect& bins) {
        const CRect box = clientBox(bins);
        if (shape() == spectra::selection_shape::elliptic)
            dc.Ellipse(box);
        else
            dc.Rectangle(box);
    };
    for (const CRect& area : control.areas()) {
        std::vector<CRect> parts{area};
        if (shape() == spectra::selection_shape::elliptic) {
            parts.clear();
            spectra::split_rect(area, parts);
        }
        for (const CRect& part : parts) {
            dc.SelectObject(CPen::solid(1, color));
            draw(part);
            dc.SelectObject(CPen::dotted(color));
            draw(mirrored(part));
        }
    }
}

void CFourierView::drawMarks(CDC& dc) const
{
    dc.setTextRim(true);
    dc.SetTextColor(light);
    dc.SetBkColor(dark);
    const int arm = CorrectDPISize(4);
    constexpr std::size_t mostTexts = 4; // more would cover each other
    const std::vector<CPoint>& marks = control.marks();
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const CPoint at = clientPoint(marks[i]);
        dc.SelectObject(CPen::solid(1, colorOption("SelColor")));
        const CPoint cross[] = {{at.x - arm, at.y}, {at.x + arm + 1, at.y}, {at.x, at.y - arm}, {at.x, at.y + arm + 1}};
        dc.Polyline(std::span(cross).first(2));
        dc.Polyline(std::span(cross).last(2));
        const spectra::wave told = spectra::wave_at(grid(), marks[i].x, marks[i].y);
        const std::wstring text =
            marks.size() > mostTexts ? std::to_wstring(i + 1) : base::widen(spectra::wave_text(told));
        const CSize extent = dc.GetTextExtent(text);
        const bool fitsRight = at.x + 2 * arm + extent.cx <= displayRect.right;
        dc.SetTextAlign(TA_TOP | TA_LEFT);
        dc.TextOut(fitsRight ? at.x + 2 * arm : at.x - 2 * arm - extent.cx,
                   std::min(at.y, displayRect.bottom - extent.cy), text);
    }
}

/// In the upper left corner, as the one of a compact surface.
CRect CFourierView::stripRect() const
{
    constexpr double margin = 0.05, length = 0.25, width = 0.0625; // of the display
    const auto of = [](int side, double share) { return base::nearest_int(side * share); };
    return {{displayRect.left + of(displayRect.Width(), margin), displayRect.top + of(displayRect.Height(), margin)},
            CSize{of(displayRect.Width(), width), of(displayRect.Height(), length)}};
}

void CFourierView::drawStrip(CDC& dc) const
{
    const CRect strip = stripRect();
    if (strip.IsRectEmpty()) return;
    scale.DrawScale(dc, strip, tdVertical);
    dc.FrameRect({strip.left - 1, strip.top - 1, strip.right + 1, strip.bottom + 1}, CBrush::solid(light));
}

void CFourierView::OnDrawLegend(CDC& dc)
{
    if (!IsGood()) return;
    const int saved = dc.SaveDC();
    dc.SelectObject(font);
    dc.SetBkMode(TRANSPARENT);
    dc.setTextRim(true);
    dc.SetTextColor(light);
    dc.SetBkColor(dark);
    if (isOptionOn("ShowZScale")) drawStrip(dc);
    if (unmeasured > 0) {
        dc.SetTextAlign(TA_LEFT | TA_BOTTOM);
        dc.TextOut(displayRect.left + CorrectDPISize(4), displayRect.bottom - CorrectDPISize(4),
                   base::widen(base::formatted("Points not measured: %lu", static_cast<unsigned long>(unmeasured))));
        dc.SetTextAlign(TA_LEFT | TA_TOP);
    }
    const spectra::wave step = spectra::wave_at(grid(), 1.0, 0.0);
    if (isOptionOn("ShowFrequencyScale") && step.fx != 0.0) {
        constexpr int lowerRight = 3;
        const view::scale_mark_style style{
            .isHorizontal = true, .position = lowerRight, .size = 0.0, .thickness = CorrectDPISize(2), .share = 0.25};
        const std::string unit = step.unitX.empty() ? std::string() : "1/" + step.unitX;
        view::draw_scale_mark(*this, dc, displayRect, sourceRect.Width() * std::fabs(step.fx), unit, style);
    }
    dc.RestoreDC(saved);
}
