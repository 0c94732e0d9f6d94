#include "view/RenderedView.h"

#include "base/rounding.h"
#include "base/units.h"
#include "document/StorageDoc.h"
#include "view/AxisLine.h"

#include <cmath>
#include <cstring>

namespace {

constexpr unsigned renderTimer = 5, renderDelay = 10; // milliseconds
constexpr int scaleMargin = 65;                       ///< pixels right of the picture, for strip and labels
constexpr int scaleGap = 5;                           ///< around the strip
constexpr double scaleWidth = 0.03125;                ///< of the strip, of the picture's width
constexpr int firstLength = 128, firstWidth = 16;
constexpr std::uint32_t newData = 0; ///< low byte of a hint

constexpr const char* scalingRow = "scaling.z(Z Scale),enum,Relative,Absolute";
constexpr view::option_row renderedOptions[] = {
    {"ShowZScale(Show Z Scale),boolean", "true"},
    {scalingRow, "Absolute"},
};
constexpr view::option_row quickOptions[] = {
    {"ShowZScale(Show Z Scale),boolean", "false"},
    {scalingRow, "Absolute"},
};

} // namespace

CRenderedView::CRenderedView()
{
    scale.SetDirection(tdVertical);
    scale.SetDimensions(firstLength, firstWidth);
    scale.setInverse(CScale::GetStaticScale()->getInverse());
    scale.SyncWithStatic();
    AddOptionHandler("ShowZScale", &CRenderedView::oh_z_scale);
    AddOptionHandler("ShowLegend", &CRenderedView::oh_z_scale);
    AddOptionHandler("scaling.z", &CRenderedView::oh_scaling);
}

void CRenderedView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    unsigned before = 0;
    CImageView::GetOptionsList(nullptr, &before);
    if (vars) CImageView::GetOptionsList(vars, count);
    view::list_options(isQuickView() ? quickOptions : renderedOptions, before, vars, count);
    for (unsigned i = 0; vars && !isQuickView() && i < *count; ++i)
        if (std::strcmp(vars[i].get_name(), "RightMargin") == 0) vars[i] = double{scaleMargin};
}

bool CRenderedView::showsScale() const { return options["ShowLegend"] && options["ShowZScale"]; }

void CRenderedView::oh_z_scale(const SPMVar&)
{
    setOption("RightMargin", showsScale() ? std::to_string(scaleMargin).c_str() : "0");
    UpdateZScale();
    Invalidate(true);
}

void CRenderedView::oh_scaling(const SPMVar&) { RefreshDisplay(); }

CRect CRenderedView::scaleRect() const
{
    const int width = std::max(1, base::nearest_int(displayRect.Width() * scaleWidth));
    const int height = std::max(1, displayRect.Height() - 2 * scaleGap);
    return {{GetClientRect().right - width - scaleGap, displayRect.top + scaleGap}, CSize{width, height}};
}

void CRenderedView::UpdateZScale()
{
    if (!scale.getPeer()) return;
    const CRect place = scaleRect();
    scale.SetDimensions(place.Height(), place.Width());
    scale.MoveWindow(place);
    scale.ShowWindow(showsScale());
    scale.Invalidate(true);
}

void CRenderedView::OnSize(CSize size_)
{
    CImageView::OnSize(size_);
    UpdateZScale();
}

void CRenderedView::OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object)
{
    CImageView::OnUpdate(sender, hint, object);
    if ((hint & 0xffu) != newData || scale.getPeer() || !getPeer()) return;
    scale.createStrip(this);
    UpdateZScale();
}

const VLAxis& CRenderedView::valueAxis() const
{
    return storageDoc()->getAxis(imageNumber, static_cast<unsigned>(int(options["AxisZ"])), unsigned(-1));
}

/// The strip, for paper and pictures, where it has no window, and the axis of the heights at its left side.
void CRenderedView::OnDrawLegend(CDC& dc)
{
    if (!showsScale() || !picture.Ok() || !storageDoc() || !storageDoc()->isImageOk(imageNumber)) return;
    const CRect strip = scaleRect();
    scale.DrawScale(dc, strip, tdVertical);
    const VLAxis& heights = valueAxis();
    // The axis shows physical heights, or heights above the lowest colour.
    const double low = isAbsolute() ? displayMin * heights.scale + heights.start : 0.0;
    const double high = low + (displayMax - displayMin) * heights.scale;
    double larger = std::max(std::fabs(low), std::fabs(high));
    const char* const units = default_units_z(heights.get_units(), &larger);
    const auto color = static_cast<colorEntry>(int(options["legend"]));
    const CPen pen = CPen::solid(1, color);
    dc.SelectObject(font);
    dc.SetTextColor(color);
    dc.SetBkMode(TRANSPARENT);
    axis_line axis;
    axis.dc = &dc;
    axis.axisPen = &pen;
    axis.flags = AXIS_VERTICAL | AXIS_OTHER_SIDE | AXIS_LINE | AXIS_TICKS | AXIS_TEXT;
    axis.ticNumber = 4;
    axis.ticLength = 3;
    axis.minGap = scaleGap;
    axis.x0 = axis.x1 = strip.left - 1;
    axis.y0 = strip.bottom;
    axis.y1 = strip.top;
    axis.start = convert_size(heights.get_units(), units, low);
    axis.end = convert_size(heights.get_units(), units, high);
    axis.units = units;
    axis.format = "%lg";
    DrawAxisLine(&axis);
}

unsigned CRenderedView::size(unsigned dimension) const
{
    const CStorageDoc* const shown = storageDoc();
    if (!shown || imageNumber >= shown->getImagesNumber()) return 0;
    const SPMDataStream& stream = shown->getImage(imageNumber);
    return dimension < stream.get_dimensions_number() ? stream.get_dimension(dimension).length : 0;
}

void CRenderedView::LoadData()
{
    CImageView::LoadData();
    scale.SyncWithStatic();
    RefreshDisplay();
}

/// A burst of changes is drawn once, and one that does not end, as a drag, every time the delay is over.
void CRenderedView::RefreshDisplay()
{
    if (isRenderPending || !getPeer()) return;
    isRenderPending = true;
    SetTimer(renderTimer, renderDelay);
}

void CRenderedView::OnTimer(unsigned id)
{
    if (id != renderTimer) return;
    KillTimer(renderTimer);
    isRenderPending = false;
    render();
    Invalidate(false);
}

void CRenderedView::render()
{
    const CStorageDoc* const shown = storageDoc();
    if (!shown || !shown->isImageOk(imageNumber) || shown->getImage(imageNumber).array_type() != SPM_ARRAY_INT16) {
        picture.Clear();
        return;
    }
    const int width = static_cast<int>(size(0)), height = static_cast<int>(size(1));
    if ((picture.width() != width || picture.height() != height) && !picture.Create(width, height, true)) return;
    const auto* samples = static_cast<const short*>(shown->getImageDataS(imageNumber, subImageNumber));
    scale.DrawImage(picture.bits().data(), samples, width * static_cast<int>(sizeof(short)), {width, height},
                    valueAxis(), isAbsolute(), false, nullptr, true, &displayMin, &displayMax);
}

void CRenderedView::OnDrawData(CDC& dc)
{
    if (!picture.Ok()) {
        dc.FillSolidRect(displayRect, static_cast<colorEntry>(int(options["background"])));
        return;
    }
    const CBitmap bitmap{.header = picture.header(), .bits = picture.bits().data()};
    // Rows of the bitmap count from the top, those of the source from the bottom.
    const CRect part(sourceRect.left, picture.height() - sourceRect.bottom, sourceRect.right,
                     picture.height() - sourceRect.top);
    const bool shrinks = displayRect.Width() < sourceRect.Width() || displayRect.Height() < sourceRect.Height();
    const int before = dc.SetStretchBltMode(shrinks ? HALFTONE : COLORONCOLOR);
    dc.StretchDIBits(displayRect, bitmap, part, SRCCOPY);
    dc.SetStretchBltMode(before);
}

void CQVSurfView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    static constexpr view::option_row own[] = {{"default_width,int,32", "192"}, {"default_height,int,32", "192"}};
    unsigned before = 0;
    CRenderedView::GetOptionsList(nullptr, &before);
    if (vars) CRenderedView::GetOptionsList(vars, count);
    view::list_options(own, before, vars, count);
}
