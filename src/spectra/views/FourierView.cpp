#include "spectra/views/FourierView.h"

#include "document/StorageDoc.h"
#include "document/samples/unmeasured_samples.h"
#include "document/update_hints.h"
#include "platform/app/WinApp.h"
#include "spectra/views/fourier_options.h"
#include "view/axes/axis_options.h"

#include <algorithm>

using namespace vldv;

namespace {

constexpr unsigned renderTimer = 5, renderDelay = 10; // milliseconds

} // namespace

CFourierView::CFourierView()
{
    using view = CFourierView;
    takeScale();
    for (const char* const name : {"contrast", "normalize_spectrum", "spectrum_mode"})
        AddOptionHandler(name, &view::oh_redraw);
    for (const char* const name : {"LeftMargin", "RightMargin", "TopMargin", "BottomMargin"})
        AddOptionHandler(name, &view::oh_resize);
    AddOptionHandler("ShowZScale", &view::oh_strip);
    for (const char* const name : {"selmode", "SelColor", "ShowFrequencyScale"})
        AddOptionHandler(name, &view::oh_drawn);
}

CFourierView::~CFourierView() = default;

// Data

const SPMDataStream* CFourierView::stream() const
{
    const CStorageDoc* const document = storageDoc();
    return document && imageNumber < document->getImagesNumber() ? &document->getImage(imageNumber) : nullptr;
}

bool CFourierView::hasSamples() const
{
    const SPMDataStream* const source = stream();
    if (!source || source->array_type() != SPM_ARRAY_INT16 || !storageDoc()->isImageOk(imageNumber)) return false;
    const CSize size = imageSize();
    return source->get_dimensions_number() == 2 && size.cx > 0 && size.cy > 0;
}

CSize CFourierView::imageSize() const
{
    const SPMDataStream* const source = stream();
    const auto length = [&](unsigned dimension) {
        const bool isThere = source && dimension < source->get_dimensions_number();
        return isThere ? static_cast<int>(source->get_dimension(dimension).length) : 1;
    };
    return {length(0), length(1)};
}

unsigned CFourierView::getSourceWidth() { return static_cast<unsigned>(imageSize().cx); }
unsigned CFourierView::getSourceHeight() { return static_cast<unsigned>(imageSize().cy); }

spectra::spectrum_grid CFourierView::grid() const
{
    const auto axis = [&](unsigned dimension) {
        const auto& side = stream()->get_dimension(dimension);
        return side.get_axes_number() > 0 ? side.get_axis(0) : VLAxis();
    };
    if (!hasSamples()) return {};
    return {spectrum.width(), spectrum.height(), axis(0), axis(1)};
}

/// An edit leads back to the image what is shown already: nothing is read then.
void CFourierView::LoadData()
{
    CImageView::LoadData();
    if (isWriting) return;
    spectrum.clear();
    if (!hasSamples()) return;
    const CWaitCursor wait;
    const CSize size = imageSize();
    const auto count = static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy);
    const auto* const samples =
        static_cast<const std::int16_t*>(storageDoc()->getImageDataS(imageNumber, subImageNumber));
    spectrum.transform({samples, count}, size.cx, size.cy);
    unmeasured = 0;
    for (const primitives::sample_run& each :
         document::unmeasured_samples(*storageDoc(), imageNumber).of(subImageNumber))
        unmeasured += each.count;
    control.keepWithin(size);
    RefreshDisplay();
}

/// The palette is that of the program, and its way through the values; a window of heights is none of frequencies.
void CFourierView::takeScale()
{
    scale.SyncWithStatic();
    if (scale.GetAutoScaling() == view::fixedScale) scale.SetAutoScaling(view::autoScale);
}

/// The image has another shape now.
void CFourierView::followShape()
{
    const CSize whole = imageSize();
    if (shownSize() == whole) return;
    LoadData();
    const CRect all({0, 0}, whole);
    if (sourceRect == all) return;
    double x = 1.0, y = 1.0;
    GetAspectRatio(x, y);
    sourceRect = all;
    const CSize fitting = fittingArea({static_cast<int>(whole.cx * x + 0.5), static_cast<int>(whole.cy * y + 0.5)});
    AdjustParentSize(fitting.cx, fitting.cy, true);
}

void CFourierView::OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object)
{
    if (!storageDoc() || storageDoc()->getImagesNumber() == 0) return;
    const document::hint told = document::hint::unpacked(hint);
    switch (told.code) {
    case document::hintNewData:
        sourceRect = CRect({0, 0}, imageSize());
        takeScale();
        return CImageView::OnUpdate(sender, hint, object);
    case document::hintNewSize:
        if (told.image == imageNumber) followShape();
        return CImageView::OnUpdate(sender, hint, object);
    case document::hintScaleChanged:
        if (!told.reloads && !hasFocus()) return;
        takeScale();
        return RefreshDisplay();
    case document::hintAxesChanged:
        if (document::axis_change::isOf(hint, imageNumber)) Invalidate(false);
        return CImageView::OnUpdate(sender, hint, object);
    default:
        return CImageView::OnUpdate(sender, hint, object);
    }
}

// Options

void CFourierView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    unsigned before = 0;
    CImageView::GetOptionsList(nullptr, &before);
    const std::vector<SPMVar> own = spectra::fourier_options();
    const unsigned all = before + static_cast<unsigned>(own.size());
    if (!vars) {
        *count = all;
        return;
    }
    CImageView::GetOptionsList(vars, count);
    view::tie_plain_margins(vars, std::min(before, *count));
    for (unsigned i = before; i < std::min(all, *count); ++i) vars[i] = own[i - before];
    *count = std::min(all, *count);
}

spectra::selection_shape CFourierView::shape() const
{
    return intOption("selmode") == 0 ? spectra::selection_shape::rectangular : spectra::selection_shape::elliptic;
}

spectra::spectrum_mode CFourierView::mode() const
{
    return intOption("spectrum_mode") == 0 ? spectra::spectrum_mode::power : spectra::spectrum_mode::magnitude;
}

void CFourierView::oh_redraw(const SPMVar&) { RefreshDisplay(); }
void CFourierView::oh_strip(const SPMVar&) { Invalidate(true); }
void CFourierView::oh_drawn(const SPMVar&) { Invalidate(false); }

void CFourierView::oh_resize(const SPMVar&)
{
    if (isOpened() && !isFullScreen()) AdjustParentSize(displayRect.Width(), displayRect.Height(), true);
    RefreshDisplay();
    Invalidate(true);
}

// Timer and size

/// A burst of changes is drawn once.
void CFourierView::RefreshDisplay()
{
    if (isRenderPending || !getPeer()) return;
    isRenderPending = true;
    SetTimer(renderTimer, renderDelay);
}

void CFourierView::OnTimer(unsigned id)
{
    if (id != renderTimer) return CImageView::OnTimer(id);
    KillTimer(renderTimer);
    isRenderPending = false;
    DrawSpectrum();
    Invalidate(true);
}

/// The display keeps the shape of the source, in the middle of the room that the margins leave.
void CFourierView::CountDisplayRect()
{
    CImageView::CountDisplayRect();
    displayRect = view::shape_kept(displayRect, sourceRect.Size());
}
