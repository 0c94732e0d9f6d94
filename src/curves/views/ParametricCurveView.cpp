#include "curves/views/ParametricCurveView.h"

#include "base/text.h"
#include "curves/figures/opening_part.h"
#include "curves/figures/pairs/chosen_x.h"
#include "curves/figures/pairs/pair_force.h"
#include "curves/views/pair_options.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "formats/shared/force/curve_lengths.h"
#include "formats/shared/void_ranges.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"

#include <algorithm>
#include <limits>
#include <string_view>

using namespace vldv;

namespace {

constexpr CSize firstSize(512, 320);
constexpr int leastWidth = 2, leastHeight = 20; // of what the profile may hold
constexpr const char* stepOfX = "global.curve.xscale";
constexpr unsigned noImage = static_cast<unsigned>(-1);

const VLAxis& chosen_axis(const SPMDataStream* stream, int chosen)
{
    static const VLAxis none;
    if (!stream || stream->values.get_axes_number() == 0) return none;
    const auto index = static_cast<unsigned>(chosen);
    return stream->values.get_axis(index < stream->values.get_axes_number() ? index : 0);
}

curves::pair_image image_of(const CStorageDoc& document, unsigned image)
{
    return {&document.getImage(image), document.getString(formats::curveLengthsKey, image),
            document.getString(formats::voidRangesKey, image)};
}

bool equal_texts(const char* a, const char* b) { return a && b && std::string_view(a) == b; }

bool is_true(const CStorageDoc& document, const char* key, unsigned image)
{
    for (const unsigned of : {image, noImage})
        if (const char* const told = document.getString(key, of); told && *told)
            return std::string_view(told) == "true" || base::leading_number(told).value_or(0.0) != 0.0;
    return false;
}

} // namespace

CParametricCurveView::CParametricCurveView()
{
    using view = CParametricCurveView;
    for (const char* const name : {"AxisX", "AxisZ"}) AddOptionHandler(name, &view::oh_axis);
    for (const char* const name : {"background", "line1color", "line2color", "show_only"})
        AddOptionHandler(name, &view::oh_refresh_display);
    for (const char* const name : {"ShowParametricCurveStats", "slant_threshold", "zero_threshold", "start_level"})
        AddOptionHandler(name, &view::oh_curve_stats);
    for (const char* const name : {"ShowMarks", "marks_mode"}) AddOptionHandler(name, &view::oh_marks);
    for (const char* const name : {"LeftMargin", "RightMargin", "TopMargin", "BottomMargin"})
        AddOptionHandler(name, &view::oh_resize);
}

CParametricCurveView::~CParametricCurveView() = default;

// Data

const SPMDataStream* CParametricCurveView::positions() const
{
    const CStorageDoc* const document = storageDoc();
    if (!document || paramImage >= document->getImagesNumber() || !document->isImageOk(paramImage)) return nullptr;
    return &document->getImage(paramImage);
}

/// Images may have come and gone since: the name leads to X.
const SPMDataStream* CParametricCurveView::getParameterStream()
{
    const CStorageDoc* const document = storageDoc();
    if (!document || imageNumber >= document->getImagesNumber()) return nullptr;
    const char* const name = document->getImage(imageNumber).get_parameter_stream();
    const auto isNamed = [&](unsigned number) {
        return number != imageNumber && number < document->getImagesNumber() &&
               equal_texts(document->getImage(number).get_name(), name);
    };
    for (unsigned i = 0; i < document->getImagesNumber() && !isNamed(paramImage); ++i)
        if (isNamed(i)) paramImage = i;
    if (!isNamed(paramImage)) paramImage = noImage;
    return positions();
}

curves::pair_source CParametricCurveView::source() const
{
    const CStorageDoc* const document = storageDoc();
    if (!positions() || imageNumber >= document->getImagesNumber() || !document->isImageOk(imageNumber)) return {};
    return {image_of(*document, paramImage), image_of(*document, imageNumber)};
}

const VLAxis& CParametricCurveView::axisX() const { return chosen_axis(positions(), intOption("AxisX")); }

const VLAxis& CParametricCurveView::axisY() const
{
    const CStorageDoc* const document = storageDoc();
    const bool hasImage = document && imageNumber < document->getImagesNumber();
    return chosen_axis(hasImage ? &document->getImage(imageNumber) : nullptr, intOption("AxisZ"));
}

unsigned CParametricCurveView::activeCurve() const noexcept
{
    return curves == 0 ? 0 : std::min(subImageNumber, curves - 1);
}

void CParametricCurveView::LoadData()
{
    CImageView::LoadData();
    const SPMDataStream* const before = positions();
    const SPMDataStream* const x = getParameterStream();
    if (x != before) LoadOptions("^Axis[XYZ]$"); // of another image
    stats.clear();
    RefreshDisplay();
    Invalidate(true);
}

bool CParametricCurveView::showsStatistics() const
{
    const CStorageDoc* const document = storageDoc();
    return document &&
           (isOptionOn("ShowParametricCurveStats") || is_true(*document, "ShowParametricCurveMin", imageNumber) ||
            is_true(*document, "ShowWLCparameters", imageNumber));
}

/// Of the active curve; others get theirs when they are turned to.
void CParametricCurveView::fill_parametric_curve_stats()
{
    if (active.isEmpty() || stats.contains(activeCurve())) return;
    stats[activeCurve()] = figuresOf(active);
}

force_curve_stats CParametricCurveView::getStatistics() const
{
    const auto found = stats.find(activeCurve());
    return found != stats.end() && showsStatistics() ? found->second : force_curve_stats();
}

void CParametricCurveView::setXDataStream(unsigned number)
{
    paramImage = number;
    if (isOpened()) LoadData();
}

bool CParametricCurveView::setXDataStream(const SPMDataStream& x)
{
    CStorageDoc* const document = storageDoc();
    const std::optional<unsigned> number = document ? curves::measure_against(*document, imageNumber, x) : std::nullopt;
    if (!number) return false;
    paramImage = *number;
    LoadOptions("^Axis[XYZ]$");
    document->setString(stepOfX, base::formatted("%lg", axisX().scale).c_str(), noImage);
    document->UpdateAllViews(this, document::data_hint(imageNumber));
    LoadData();
    return true;
}

/// What the document tells of X follows X.
void CParametricCurveView::tellStepOfX()
{
    CStorageDoc& document = *storageDoc();
    const std::string now = base::formatted("%lg", axisX().scale);
    if (const char* const told = document.getString(stepOfX, noImage); *told && IsGood() && now != told)
        document.setString(stepOfX, now.c_str(), noImage);
}

void CParametricCurveView::OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object)
{
    if (!storageDoc() || storageDoc()->getImagesNumber() == 0) return;
    const document::hint told = document::hint::unpacked(hint);
    if (told.code == document::hintNewData) {
        if (!isOpened()) {
            displaySize = storedSize();
            if (subImageNumber == 0 && imageNumber < storageDoc()->getImagesNumber())
                subImageNumber = curves::opening_part(storageDoc()->getImage(imageNumber));
        }
        CImageView::OnUpdate(sender, hint, object);
        return SetTextPos();
    }
    CImageView::OnUpdate(sender, hint, object);
    // What X holds shows here, too.
    const bool isOfX = told.code == document::hintAxesChanged ? document::axis_change::isOf(hint, paramImage)
                                                              : told.image == paramImage;
    const bool changesData = told.code == document::hintNewSize || told.code == document::hintDataChanged ||
                             told.code == document::hintAxesChanged;
    if (isOfX && changesData && isOpened()) LoadData();
    if ((isOfX || told.image == imageNumber) && changesData && isOpened()) tellStepOfX();
    if (told.code == document::hintRedraw) Invalidate(true);
}

// Options

void CParametricCurveView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    unsigned before = 0;
    CImageView::GetOptionsList(nullptr, &before);
    const CStorageDoc* const document = storageDoc();
    const bool hasImage = document && imageNumber < document->getImagesNumber();
    const SPMDataStream* const x = positions();
    const std::vector<SPMVar> own =
        curves::pair_options(x ? &x->values : nullptr, hasImage ? &document->getImage(imageNumber).values : nullptr);
    const unsigned all = before + static_cast<unsigned>(own.size());
    if (!vars) {
        *count = all;
        return;
    }
    CImageView::GetOptionsList(vars, count);
    curves::tie_pair_margins(vars, std::min(before, *count));
    for (unsigned i = before; i < std::min(all, *count); ++i) vars[i] = own[i - before];
}

curves::pair_marks_mode CParametricCurveView::marksMode() const
{
    return static_cast<curves::pair_marks_mode>(intOption("marks_mode"));
}

void CParametricCurveView::oh_axis(const SPMVar&)
{
    stats.clear();
    RefreshDisplay();
    Invalidate(true);
}

void CParametricCurveView::oh_refresh_display(const SPMVar&)
{
    RefreshDisplay();
    Invalidate(true);
}

void CParametricCurveView::oh_curve_stats(const SPMVar&)
{
    stats.clear();
    if (showsStatistics()) fill_parametric_curve_stats();
    updateText();
    Invalidate(true);
}

void CParametricCurveView::oh_marks(const SPMVar&)
{
    settleMarks();
    updateText();
    Invalidate(true);
}

void CParametricCurveView::oh_resize(const SPMVar&)
{
    if (isOpened()) Resize(displaySize.cx, displaySize.cy);
}

// Size

CSize CParametricCurveView::storedSize()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return firstSize;
    const auto read = [&](const char* name, int usual, int least) {
        const int kept = app->profile().readInt(GetViewSection(), name).value_or(usual);
        return kept < least ? usual : std::min(kept, static_cast<int>(largestDisplay().cx));
    };
    return {read("DefaultWidth", firstSize.cx, leastWidth), read("DefaultHeight", firstSize.cy, leastHeight)};
}

void CParametricCurveView::SetTextPos()
{
    if (!isFullScreen()) AdjustParentSize(displaySize.cx, displaySize.cy, true);
    CountDisplayRect();
}

void CParametricCurveView::Resize(int width, int height)
{
    if (!IsGood()) return;
    displaySize = {width, height};
    if (CWinApp* const app = AfxGetApp()) {
        app->profile().writeInt(GetViewSection(), "DefaultWidth", width);
        app->profile().writeInt(GetViewSection(), "DefaultHeight", height);
    }
    SetTextPos();
    RefreshDisplay();
    Invalidate(true);
}

void CParametricCurveView::OnSize(CSize size)
{
    CImageView::OnSize(size);
    CountDisplayRect();
    if (!isOpened()) return;
    const CFrameWnd* const frame = GetParentFrame();
    const bool isUsers = !isFullScreen() && !(frame && frame->IsZoomed());
    if (isUsers && !displayRect.IsRectEmpty()) displaySize = displayRect.Size();
    RefreshDisplay();
}

/// The window has no zoom: what it shows fills it.
void CParametricCurveView::GetAspectRatio(double& x, double& y) { x = y = 1.0; }
