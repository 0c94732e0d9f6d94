#include "base/streams/rounding.h"
#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "platform/app/dpi.h"
#include "surface/overlay/decoration_drawing.h"
#include "surface/overlay/mark_drawing.h"
#include "surface/overlay/overlay_shapes.h"
#include "surface/tools/overlay_drawing.h"
#include "surface/views/SurfMathView.h"
#include "view/AxisLine.h"
#include "view/axes/AxisLabels.h"
#include "view/axes/chart_axes.h"
#include "view/image/SectionSource.h"
#include "view/image/VolumeSource.h"
#include "view/scale/render.h"

#include <cmath>

using namespace vldv;

namespace {

constexpr int scaleGap = 5; // pixels around the strip
constexpr const char* parametersListKey = "ParametersList";

} // namespace

void CSurfMathView::render()
{
    const short* const frame = samples();
    CountDisplayRect(); // another part of the image may have another shape
    image.Resize(displayRect.Width(), displayRect.Height());
    if (!image.Ok()) return;
    if (!frame || sourceRect.IsRectEmpty()) {
        std::ranges::fill(image.bits(), std::byte{});
        return;
    }
    const CRect whole({0, 0}, imageSize());
    CRect window;
    if (!window.IntersectRect(sourceRect, whole)) return;
    const CSize size{image.width(), image.height()};
    const view::fitted_window shown = fitter.fit(frame, whole.right, window, size);
    RECT region = view::shown_part(roiRect(), window, size);
    CRect inRegion;
    const bool hasRegion = drawn.roiActive && inRegion.IntersectRect(roiRect(), window);
    const CRect& part = hasRegion ? inRegion : window;
    // The picture may be made of means: the range is that of the samples, whatever the size of the window.
    const primitives::height_range range =
        hasRegion || !unmeasured.empty() ? shownRange.of(frame, whole.right, part, unmeasured) : shown.range;
    scale.DrawImage({.bits = image.bits().data(),
                     .source = shown.samples,
                     .sourceStep = shown.step,
                     .size = {size.cx, size.cy},
                     .zAxis = &valueAxis(),
                     .absolute = intOption("scaling.z") == 1,
                     .highlight = isOptionOn("highlight"),
                     .roi = hasRegion ? &region : nullptr,
                     .rgb32 = image.header().biBitCount == 32,
                     .lowOut = &displayMin,
                     .highOut = &displayMax,
                     .range = &range});
}

void CSurfMathView::setRegionOfInterest(CRect part)
{
    part.NormalizeRect();
    const CRect whole(0, 0, static_cast<int>(getSourceWidth()), static_cast<int>(getSourceHeight()));
    drawn.roi = {part.left, part.top, part.right, part.bottom};
    drawn.roiActive = !part.IsRectEmpty() && part != whole;
    RefreshDisplay();
}

void CSurfMathView::drawPicture(CDC& dc)
{
    const BITMAPINFOHEADER* const overlay = storageDoc() ? storageDoc()->getImageOverlay(imageNumber) : nullptr;
    if (overlay && isOptionOn("ShowOverlay")) return drawOverlay(dc, *overlay);
    if (!image.Ok()) return dc.FillSolidRect(displayRect, colorOption("background"));
    const CBitmap bitmap{.header = image.header(), .bits = image.bits().data()};
    const CRect all(0, 0, image.width(), image.height());
    // Until the next rendering a picture of another size stands in.
    dc.StretchDIBits(displayRect, bitmap, all, SRCCOPY);
}

void CSurfMathView::drawOverlay(CDC& dc, const BITMAPINFOHEADER& overlay)
{
    const auto sourceWidth = static_cast<std::uint64_t>(getSourceWidth());
    const auto sourceHeight = static_cast<std::uint64_t>(getSourceHeight());
    const auto width = static_cast<std::uint64_t>(std::abs(overlay.biWidth));
    const auto height = static_cast<std::uint64_t>(std::abs(overlay.biHeight));
    const auto part = [](std::uint64_t length, std::uint64_t pixels, std::uint64_t samples_) {
        return static_cast<int>(length * pixels / samples_);
    };
    const int left = part(static_cast<std::uint64_t>(sourceRect.left), width, sourceWidth);
    const int bottom = part(static_cast<std::uint64_t>(sourceRect.top), height, sourceHeight);
    const CSize size{part(static_cast<std::uint64_t>(sourceRect.Width()), width, sourceWidth),
                     part(static_cast<std::uint64_t>(sourceRect.Height()), height, sourceHeight)};
    // Rows of the bitmap count from the top here, those of the source from the bottom.
    const CRect from({left, static_cast<int>(height) - bottom - size.cy}, size);
    dc.StretchDIBits(displayRect, overlayBitmap.of(overlay), from, SRCCOPY);
}

std::vector<ISection*> CSurfMathView::sections() const
{
    std::vector<ISection*> found;
    if (!storageDoc()) return found;
    const bool together = isOptionOn("SelectionSynchr");
    for (CView* const view : storageDoc()->views()) {
        auto* const each = dynamic_cast<ISection*>(view);
        if (!each) continue;
        const unsigned of = each->sectionView().getImageNumber();
        if (of == imageNumber || (together && storageDoc()->similar_images(of, imageNumber))) found.push_back(each);
    }
    return found;
}

void CSurfMathView::drawSections(CDC& dc)
{
    const int width = intOption("section.line.solid.width");
    bool isFirst = true;
    for (ISection* const each : sections())
        each->drawOn(*this, dc, each->sectionView().intOption("profile.width"), width, pens.line, pens.under,
                     std::exchange(isFirst, false));
}

void CSurfMathView::drawVolumeCross(CDC& dc)
{
    const IVolumeSource* const cloud = Get3DCloudView();
    const auto* const view = dynamic_cast<const CDCView*>(cloud);
    if (!view || cloud->getVolume().get_dimensions_number() < 2) return;
    const auto place = [&](const char* mark, unsigned dimension, unsigned own) {
        const double size = cloud->getVolume().get_dimension(dimension).length;
        if (size == 0.0) return 0;
        // The mark is kept as a share of the volume, from its first sample to its last; the image may have another
        // grid.
        const double at = base::nearest_int((size - 1.0) * view->doubleOption(mark));
        return static_cast<int>(at * own / size);
    };
    const CPoint sample{place("mark.x", 0, getSourceWidth()), place("mark.y", 1, getSourceHeight())};
    surface::draw_cross(dc, {xsrc2clnt(sample.x), ysrc2clnt(sample.y)});
}

void CSurfMathView::OnDrawData(CDC& dc)
{
    CountDisplayRect();
    drawPicture(dc);
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(displayRect);
    dc.SetBkColor(0xFFFFFF);
    dc.SelectObject(font);
    const view::view_geometry geometry{displayRect, sourceRect};
    if (isOptionOn("ShowROI")) surface::draw_region_of_interest(dc, drawn, geometry);
    surface::draw_selection(dc, drawn, geometry, {intOption("SelectionFill"), colorOption("SelColor")});
    dc.SetBkColor(0xFFFFFF);
    drawSections(dc);
    drawVolumeCross(dc);
    surface::draw_marks(dc, drawn.marks, geometry,
                        {marksStyle, marksNumbered, colorOption("text"), colorOption("text_background")});
    surface::draw_curves(dc, drawn.curves, geometry);
    surface::draw_above(dc, drawn, geometry);
    if (stream()) surface::draw_decorations(dc, storageDoc()->decorations(imageNumber), drawingAxes(), geometry);
    dc.RestoreDC(saved);
}

surface::legend_content CSurfMathView::legendContent() const
{
    const CStorageDoc& document = *storageDoc();
    surface::legend_content content;
    content.path = base::narrow(document.GetPathName());
    content.imageName = document.getImage(imageNumber).get_description();
    content.x = axis("AxisX", 0);
    content.y = axis("AxisY", 1);
    content.z = valueAxis();
    const SPMDataStream& shown = document.getImage(imageNumber);
    const auto length = [&shown](unsigned dimension) {
        return dimension < shown.get_dimensions_number() ? static_cast<int>(shown.get_dimension(dimension).length) : 1;
    };
    content.samples = {length(0), length(1)};
    CWinApp* const app = AfxGetApp();
    if (app && isOptionOn("ShowParameters")) {
        const auto list =
            app->profile().readString(const_cast<CSurfMathView*>(this)->GetViewSection(), parametersListKey);
        content.parameters = surface::listed_parameters(list.value_or(""), [&](const std::string& name, bool global) {
            return std::string(document.getString(name.c_str(), global ? unsigned(-1) : imageNumber));
        });
    }
    content.statistics = statisticsRows;
    std::ranges::move(measureRows(), std::back_inserter(content.statistics));
    content.drawn = &drawn;
    return content;
}

void CSurfMathView::OnDrawLegend(CDC& dc)
{
    const int saved = dc.SaveDC();
    dc.SelectObject(font);
    surface::draw_measure_text(dc, *this, drawn.measure);
    if (stream()) {
        const surface::legend_content content = legendContent();
        surface::draw_legend_texts(dc, *this, content);
        surface::draw_legend_scale_mark(dc, *this, content);
        surface::draw_legend_axes(dc, *this, content);
        if (isOptionOn("ShowZScale")) drawZScale(dc);
    }
    dc.RestoreDC(saved);
}

/// Where the strip stands: beside the picture, or in a corner of it when the legend is compact.
CRect CSurfMathView::scaleStrip() const
{
    const CRect client = GetClientRect();
    const int top = intOption("TopMargin"), left = intOption("LeftMargin");
    if (!isCompact()) {
        const double share = doubleOption("FullLegend.z_scale.width");
        const int width = static_cast<int>(std::lround(displayRect.Width() * share));
        const int height = client.Height() - top - intOption("BottomMargin") - 2 * scaleGap;
        const bool hasPanel = isOptionOn("ShowParameters") || isOptionOn("ShowStatistics");
        const int right = client.right - (hasPanel ? intOption("ParametersWidth") : 0) - scaleGap;
        return {{right - width, top + scaleGap}, CSize{width, height}};
    }
    const int position = intOption("CompactLegend.z_scale.position");
    const double margin = doubleOption("CompactLegend.z_scale.margin");
    const double length = doubleOption("CompactLegend.z_scale.size");
    const double width = doubleOption("CompactLegend.z_scale.width");
    const bool isBottom = (position & 1) != 0, isRight = (position & 2) != 0;
    const CPoint corner{left + base::nearest_int(displayRect.Width() * (isRight ? 1.0 - margin - width : margin)),
                        top + base::nearest_int(displayRect.Height() * (isBottom ? 1.0 - margin - length : margin))};
    return {corner,
            CSize{base::nearest_int(displayRect.Width() * width), base::nearest_int(displayRect.Height() * length)}};
}

void CSurfMathView::UpdateZScale(bool reposition)
{
    if (!scale.getPeer()) return;
    const CRect place = scaleStrip();
    scale.SetDimensions(place.Height(), place.Width());
    scale.MoveWindow(place);
    if (!reposition) return;
    scale.ShowWindow(isOptionOn("ShowZScale"));
    scale.Invalidate(true);
}

void CSurfMathView::drawZScale(CDC& dc)
{
    const CRect strip = scaleStrip();
    if (strip.IsRectEmpty()) return;
    const bool isLeft = !isCompact() || (displayRect.left + displayRect.right) / 2 < strip.right;
    const auto color = colorOption("legend");
    const VLAxis& heights = valueAxis();
    const double start = intOption("scaling.z") == 0 ? 0.0 : heights.at(displayMin);
    constexpr int tics = 4;
    const view::shown_axis shown =
        view::shown_span(heights.get_units(), start, (displayMax - displayMin) * heights.scale, true);
    const std::string format = view::label_format(shown.start, shown.end, tics);
    const CPen pen{PS_SOLID | PS_GEOMETRIC, 1, color, {}};
    const int saved = dc.SaveDC();
    const bool isTransparent = isCompact() && isOptionOn("CompactLegend.transparent");
    dc.SetBkMode(isTransparent ? TRANSPARENT : OPAQUE);
    dc.setTextRim(true);
    dc.SetBkColor(static_cast<colorEntry>(intOption(isCompact() ? "legend" : "background")));
    dc.SetTextColor(static_cast<colorEntry>(intOption(isCompact() ? "background" : "legend")));
    axis_line line;
    line.dc = &dc;
    line.axisPen = &pen;
    line.flags = AXIS_VERTICAL | AXIS_LINE | AXIS_TICKS | AXIS_TEXT | (isLeft ? AXIS_OTHER_SIDE : 0u);
    line.ticNumber = tics;
    line.ticLength = 3;
    line.minGap = scaleGap;
    line.x0 = line.x1 = isLeft ? strip.left - 1 : strip.right + 1;
    line.y0 = strip.bottom;
    line.y1 = strip.top;
    line.start = shown.start;
    line.end = shown.end;
    line.units = shown.units.c_str();
    line.format = format.c_str();
    DrawAxisLine(&line);
    scale.DrawScale(dc, strip, tdVertical);
    // An outline on the three sides away from the axis.
    dc.SelectObject(pen);
    const int far = isLeft ? strip.right : strip.left - 1, near = isLeft ? strip.left - 1 : strip.right;
    const CPoint outline[] = {{near, strip.top - 1}, {far, strip.top - 1}, {far, strip.bottom}, {near, strip.bottom}};
    dc.Polyline(outline);
    dc.RestoreDC(saved);
}
