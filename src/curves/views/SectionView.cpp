#include "curves/views/SectionView.h"

#include "curves/figures/opening_part.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "platform/app/dpi.h"
#include "primitives/numeric.h"

#include <algorithm>

using namespace vldv;

namespace {

constexpr CSize firstSize(512, 160);
constexpr int leastWidth = 2, leastHeight = 20; // of what the profile may hold

} // namespace

CSectionView::CSectionView()
{
    using view = CSectionView;
    const struct {
        void (view::*handler)(const SPMVar&);
        std::initializer_list<const char*> options;
    } rows[] = {
        {&view::oh_refresh_display,
         {"background", "AxisZ", "line1color", "line2color", "line.width", "show_only", "spectrum_mode"}},
        {&view::oh_reload,
         {"ShowSpectrum", "scaling.x", "ZScale.zero", "ZScale.Scaling.fixed.units", "ZScale.Scaling.fixed.value",
          "ZScale.Scaling.fixed.zero_mode", "ZScale.Scaling.fixed.zero.value", "profile.width"}},
        {&view::oh_resize, {"HorizontalAxis", "LeftMargin", "RightMargin", "TopMargin", "BottomMargin"}},
        {&view::oh_update_text,
         {"VerticalValue", "HorizontalValue", "Values", "AxisX", "normalize_spectrum", "show_line_number"}},
        {&view::oh_textvspace, {"TextVertSpace"}},
        {&view::oh_z_scaling, {"ZScale.Scaling"}},
        {&view::oh_marks_mode, {"marks_mode"}},
        {&view::oh_fcstat, {"ShowForceCurveStats", "zero_threshold", "slant_threshold"}},
        {&view::oh_fcmin, {"ShowForceCurveMin", "window_r"}},
        {&view::oh_fcvalley, {"ShowForceCurveSquares"}},
        {&view::oh_trend, {"ShowTrendLine"}},
    };
    for (const auto& row : rows)
        for (const char* const name : row.options) AddOptionHandler(name, row.handler);
}

CSectionView::~CSectionView() = default;

const SPMDataStream* CSectionView::stream() const
{
    const CStorageDoc* const document = storageDoc();
    return document && imageNumber < document->getImagesNumber() ? &document->getImage(imageNumber) : nullptr;
}

const VLAxis& CSectionView::positionAxis() const
{
    static const VLAxis indices;
    const SPMDataStream* const source = stream();
    if (!source || section.dimension() >= source->get_dimensions_number()) return indices;
    return storageDoc()->getAxis(imageNumber, static_cast<unsigned>(intOption("AxisX")), section.dimension());
}

const VLAxis& CSectionView::valueAxis() const
{
    static const VLAxis none;
    const VLAxesContainer& axes = section.values;
    if (axes.get_axes_number() == 0) return none;
    const auto chosen = static_cast<unsigned>(intOption("AxisZ"));
    return axes.get_axis(chosen < axes.get_axes_number() ? chosen : 0);
}

unsigned CSectionView::activeCurve() const noexcept
{
    return section.curves == 0 ? 0 : std::min(subImageNumber, section.curves - 1);
}

double CSectionView::zeroOffset() const
{
    const VLAxis& axis = valueAxis();
    constexpr int histogramZero = 2;
    if (intOption("ZScale.zero") != histogramZero || !hasCurves()) return axis.start;
    const auto length = static_cast<int>(section.length);
    return -find_zero_level(section.samples.data(), length, static_cast<int>(section.curves),
                            length * static_cast<int>(sizeof(std::int16_t)), 0) *
           axis.scale;
}

// Size: the display is what the user made it, whatever it shows. A window that fills the screen or the main window, or
// a pixel a sample, says nothing of that.

CSize CSectionView::storedSize()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return firstSize;
    const std::string profileSection = GetViewSection();
    const auto read = [&](const char* name, int usual, int least) {
        const int kept = app->profile().readInt(profileSection, name).value_or(usual);
        return kept < least ? usual : std::min(kept, static_cast<int>(largestDisplay().cx));
    };
    return {read("DefaultWidth", firstSize.cx, leastWidth), read("DefaultHeight", firstSize.cy, leastHeight)};
}

int CSectionView::spectrumHeight() const
{
    return isOptionOn("ShowSpectrum") ? intOption("BottomMargin") + displaySize.cy : 0;
}

/// The curves' pane; that of the spectrum lies below it and is as large.
void CSectionView::CountDisplayRect()
{
    CImageView::CountDisplayRect();
    if (!isOptionOn("ShowSpectrum")) return;
    const int height = (displayRect.Height() - intOption("BottomMargin")) / 2;
    displayRect.bottom = displayRect.top + std::max(height, 0);
}

/// With "Fixed Scale" a sample is a pixel, as far as the screen goes.
CSize CSectionView::wantedSize() const
{
    if (!hasFixedScale() || !hasCurves()) return displaySize;
    const int margins = intOption("LeftMargin") + intOption("RightMargin");
    const int most = std::max(static_cast<int>(largestDisplay().cx) / 2 - margins, 1);
    return {std::min(CorrectDPISize(static_cast<int>(section.length)), most), displaySize.cy};
}

bool CSectionView::hasFixedScale() const
{
    constexpr int fixedScale = 1;
    return intOption("HorizontalAxis") == fixedScale;
}

void CSectionView::GetBestSize(int& cx, int& cy)
{
    const CSize wanted = wantedSize();
    cx = wanted.cx;
    cy = wanted.cy + spectrumHeight();
}

void CSectionView::fitParent()
{
    const CSize wanted = wantedSize();
    if (!isFullScreen()) AdjustParentSize(wanted.cx, wanted.cy + spectrumHeight(), true);
    CountDisplayRect();
}

void CSectionView::keepSize()
{
    const CFrameWnd* const frame = GetParentFrame();
    if (isFullScreen() || (frame && frame->IsZoomed()) || displayRect.IsRectEmpty()) return;
    if (!hasFixedScale()) displaySize.cx = displayRect.Width();
    displaySize.cy = displayRect.Height();
}

void CSectionView::Resize(int width, int height)
{
    if (!hasCurves()) return;
    displaySize = {width, height};
    if (CWinApp* const app = AfxGetApp()) {
        app->profile().writeInt(GetViewSection(), "DefaultWidth", width);
        app->profile().writeInt(GetViewSection(), "DefaultHeight", height);
    }
    fitParent();
    RefreshDisplay();
    Invalidate(true);
}

void CSectionView::OnSize(CSize size)
{
    CImageView::OnSize(size);
    CountDisplayRect();
    if (isSizing || !isOpened()) return;
    keepSize();
    RefreshDisplay();
}

void CSectionView::OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object)
{
    if (!storageDoc() || storageDoc()->getImagesNumber() == 0) return;
    const document::hint told = document::hint::unpacked(hint);
    switch (told.code) {
    case document::hintNewData: {
        if (!isOpened()) {
            displaySize = storedSize();
            marks.reset();
            if (const SPMDataStream* const source = stream(); source && subImageNumber == 0)
                subImageNumber = curves::opening_part(*source);
        }
        const bool isStep = !isOpened() && steps.restore();
        CImageView::OnUpdate(sender, hint, object);
        if (isStep) showAsStep();
        return fitParent();
    }
    case document::hintDataChanged:
        CImageView::OnUpdate(sender, hint, object);
        for (const int mark : {curves::firstMark, curves::secondMark}) updateMarkY(mark);
        return;
    case document::hintRedraw:
        CImageView::OnUpdate(sender, hint, object);
        return Invalidate(true);
    default:
        return CImageView::OnUpdate(sender, hint, object);
    }
}

/// Over lines, with the crossbar that leads the profile.
void CSectionView::showAsStep()
{
    for (const char* const axis : {"AxisX", "AxisZ"}) setOption(axis, "line");
    setOption("marks_mode", "Crossbar");
}

/// A surface below may show the line first.
void CSectionView::OnActivateView(bool activates, CView* entered, CView* left)
{
    if (activates) tellSurfaces();
    CImageView::OnActivateView(activates, entered, left);
}

void CSectionView::OnFrameClosed()
{
    steps.cut();
    CImageView::OnFrameClosed();
}

void CSectionView::tellSurfaces()
{
    const SPMDataStream* const source = stream();
    if (!source || source->get_dimensions_number() < 2) return;
    storageDoc()->UpdateAllViews(this, document::hint{document::hintSectionChanged, imageNumber}.packed(),
                                 static_cast<CView*>(this));
}
