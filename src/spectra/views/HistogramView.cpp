#include "spectra/views/HistogramView.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/samples/measured_samples.h"
#include "document/samples/rising_heights.h"
#include "document/update_hints.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "spectra/views/histogram_options.h"
#include "view/axes/axis_options.h"

#include <algorithm>
#include <string_view>

using namespace vldv;

CHistogramView::CHistogramView()
{
    using view = CHistogramView;
    AddOptionHandler("AxisZ", &view::oh_update_text);
    for (const char* const name : {"NBars", "NBars.manual.count"}) AddOptionHandler(name, &view::oh_reload);
    for (const char* const name : {"BarColor", "background", "CountScale", "ShowCumulative", "CumulativeColor"})
        AddOptionHandler(name, &view::oh_redraw_histogram);
    for (const char* const name : {"LeftMargin", "RightMargin", "TopMargin", "BottomMargin"})
        AddOptionHandler(name, &view::oh_resize);
}

CHistogramView::~CHistogramView() = default;

// Data

const SPMDataStream* CHistogramView::stream() const
{
    const CStorageDoc* const document = storageDoc();
    if (!document || imageNumber >= document->getImagesNumber() || !document->isImageOk(imageNumber)) return nullptr;
    return &document->getImage(imageNumber);
}

const VLAxis& CHistogramView::valueAxis() const
{
    static const VLAxis none;
    const SPMDataStream* const source = stream();
    if (!source || source->values.get_axes_number() == 0) return none;
    const auto chosen = static_cast<unsigned>(intOption("AxisZ"));
    return source->values.get_axis(chosen < source->values.get_axes_number() ? chosen : 0);
}

spectra::height_histogram CHistogramView::makeHistogram()
{
    const SPMDataStream* const source = stream();
    if (!source || source->array_type() != SPM_ARRAY_INT16) return {};
    document::measured_samples measured(*storageDoc(), imageNumber);
    const document::rising_heights heights(measured.of(subImageNumber), valueAxis());
    return spectra::make_histogram(heights.samples(), heights.axis(), manualBars());
}

std::optional<unsigned> CHistogramView::manualBars()
{
    constexpr int manual = 1;
    if (intOption("NBars") != manual) return std::nullopt;
    return static_cast<unsigned>(intOption("NBars.manual.count"));
}

std::string CHistogramView::valueUnits() const { return valueAxis().get_units(); }

void CHistogramView::LoadData()
{
    CImageView::LoadData();
    rebuildHistogram();
}

void CHistogramView::rebuildHistogram()
{
    counted = makeHistogram();
    const std::string units = valueUnits();
    shownUnits = readable_units(units.c_str(), counted.valueRange);
    histogram = spectra::in_units(counted, units.c_str(), shownUnits.c_str());
    updateText();
    RefreshDisplay();
    Invalidate(true);
}

void CHistogramView::putDelimiters(double first, double second)
{
    control.put(0, first);
    control.put(1, second);
}

void CHistogramView::updateText()
{
    const std::string told = hasBars() ? spectra::share_text(share(), shownUnits.c_str()) : std::string();
    text = base::widen(told);
}

void CHistogramView::OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object)
{
    if (!storageDoc() || storageDoc()->getImagesNumber() == 0) return;
    const document::hint told = document::hint::unpacked(hint);
    if (told.code == document::hintNewData && !isOpened()) {
        displaySize = storedSize();
        control.reset();
    }
    CImageView::OnUpdate(sender, hint, object);
    if (told.code == document::hintNewData || (told.code == document::hintNewSize && told.image == imageNumber))
        SetTextPos();
    if (told.code == document::hintAxesChanged && document::axis_change::isOf(hint, imageNumber) && isOpened())
        LoadData();
}

// Options

void CHistogramView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    unsigned before = 0;
    CImageView::GetOptionsList(nullptr, &before);
    const SPMDataStream* const source = stream();
    const std::vector<SPMVar> own = spectra::histogram_options(source ? &source->values : nullptr);
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

std::vector<SPMVar> CHistogramView::optionsWithoutAxis()
{
    unsigned count = 0;
    CHistogramView::GetOptionsList(nullptr, &count);
    std::vector<SPMVar> all(count);
    CHistogramView::GetOptionsList(all.data(), &count);
    std::erase_if(all, [](const SPMVar& each) { return std::string_view(each.get_name()) == "AxisZ"; });
    return all;
}

void CHistogramView::giveOptions(const std::vector<SPMVar>& all, SPMVar* vars, unsigned* count)
{
    const auto wanted = static_cast<unsigned>(all.size());
    *count = vars ? std::min(*count, wanted) : wanted;
    if (vars) std::copy_n(all.begin(), *count, vars);
}

/// The bars stay; what stands below them does not.
void CHistogramView::oh_update_text(const SPMVar&) { LoadData(); }

void CHistogramView::oh_reload(const SPMVar&) { LoadData(); }

void CHistogramView::oh_redraw_histogram(const SPMVar&)
{
    RefreshDisplay();
    Invalidate(true);
}

void CHistogramView::oh_resize(const SPMVar&)
{
    if (isOpened()) SetTextPos();
    Invalidate(true);
}

// Size

CSize CHistogramView::storedSize()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return firstSize;
    const auto read = [&](const char* name, int usual) {
        const int kept = app->profile().readInt(GetViewSection(), name).value_or(usual);
        return kept < 1 ? usual : std::min(kept, static_cast<int>(largestDisplay().cx));
    };
    return {read("DefaultWidth", firstSize.cx), read("DefaultHeight", firstSize.cy)};
}

void CHistogramView::keepSize(CSize size)
{
    displaySize = size;
    if (CWinApp* const app = AfxGetApp()) {
        app->profile().writeInt(GetViewSection(), "DefaultWidth", size.cx);
        app->profile().writeInt(GetViewSection(), "DefaultHeight", size.cy);
    }
}

void CHistogramView::SetTextPos()
{
    if (!isFullScreen()) AdjustParentSize(displaySize.cx, displaySize.cy, true);
    CountDisplayRect();
    RefreshDisplay();
}

void CHistogramView::OnSize(CSize size)
{
    CImageView::OnSize(size);
    CountDisplayRect();
    if (!isOpened()) return;
    const CFrameWnd* const frame = GetParentFrame();
    const bool isUsers = !isFullScreen() && !(frame && frame->IsZoomed());
    if (isUsers && hasBars() && !displayRect.IsRectEmpty()) keepSize(displayRect.Size());
    RefreshDisplay();
    Invalidate(true);
}

/// The window has no zoom: what it shows fills it.
void CHistogramView::GetAspectRatio(double& x, double& y) { x = y = 1.0; }
