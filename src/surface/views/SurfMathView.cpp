#include "surface/views/SurfMathView.h"

#include "document/StorageDoc.h"
#include "document/samples/rising_heights.h"
#include "document/samples/unmeasured_samples.h"
#include "platform/app/WinApp.h"

#include <algorithm>

using namespace vldv;

namespace {

constexpr unsigned renderTimer = 5, renderDelay = 10; // milliseconds
constexpr int firstLength = 128, firstWidth = 16;     // of the scale's strip
constexpr const char* section = "SurfMathView";

int profile_number(const char* key, int otherwise)
{
    CWinApp* const app = AfxGetApp();
    return app ? app->profile().readInt(section, key).value_or(otherwise) : otherwise;
}

/// Columns and rows; a line of samples has one row, and nothing has neither.
CSize shape_of(const SPMDataStream& stream)
{
    const unsigned dimensions = stream.get_dimensions_number();
    if (dimensions == 0) return {0, 0};
    return {static_cast<int>(stream.get_dimension(0).length),
            dimensions > 1 ? static_cast<int>(stream.get_dimension(1).length) : 1};
}

} // namespace

CSurfMathView::CSurfMathView()
{
    autoRefresh = profile_number("AutoRefresh", 1) != 0;
    marksNumbered = profile_number("MarksNumbered", 1) != 0;
    marksStyle = std::clamp(profile_number("MarksStyle", 0), 0, 1);
    scale.SetDirection(tdVertical);
    scale.SetDimensions(firstLength, firstWidth);
    scale.setInverse(CScale::GetStaticScale()->getInverse());
    scale.SyncWithStatic();
    const auto handle = [this](std::initializer_list<const char*> names, auto handler) {
        for (const char* name : names) AddOptionHandler(name, handler);
    };
    handle({"CompactLegend"}, &CSurfMathView::oh_compact);
    handle({"ShowAdditionalLegend"}, &CSurfMathView::oh_additional_legend);
    handle({"ShowZScale", "CompactLegend.z_scale.margin", "CompactLegend.z_scale.size", "CompactLegend.z_scale.width",
            "CompactLegend.z_scale.position", "FullLegend.z_scale.width"},
           &CSurfMathView::oh_z_scale);
    for (const char* name :
         {"scaling.x", "scaling.y", "SelColor", "SelectionFill", "ShowROI", "SelectionSynchr", "TextVertSpace",
          "ShowOverlay", "CompactLegend.scale_mark", "CompactLegend.scale_mark.direction",
          "CompactLegend.scale_mark.position", "CompactLegend.scale_mark.margin", "CompactLegend.scale_mark.size",
          "CompactLegend.transparent", "FullLegend.scale_mark"})
        AddOptionHandler(name, &CSurfMathView::oh_invalidate);
    handle({"scaling.z"}, &CSurfMathView::oh_z_scaling);
    handle({"AxisX", "AxisY"}, &CSurfMathView::oh_length_axis);
    handle({"AxisZ"}, &CSurfMathView::oh_z_axis);
    handle({"ShowParameters", "ParametersWidth"}, &CSurfMathView::oh_panel);
    handle({"ShowStatistics"}, &CSurfMathView::oh_statistics);
    handle({"highlight", "invert"}, &CSurfMathView::oh_reload);
    handle({"section.line.style", "section.line.solid.width", "section.line.color"}, &CSurfMathView::oh_section_pens);
    unsavedOptions = {"highlight", "invert"};
    // Files and profiles hold them. The strip of a compact view shows as it does beside a full one, and stays upright.
    idleOptions = {"CompactLegend.z_scale", "CompactLegend.z_scale.direction", "highlight.x", "highlight.y"};
}

CSurfMathView::~CSurfMathView() = default;

const SPMDataStream* CSurfMathView::stream() const
{
    const CStorageDoc* const shown = storageDoc();
    return shown && imageNumber < shown->getImagesNumber() ? &shown->getImage(imageNumber) : nullptr;
}

bool CSurfMathView::hasSamples() const
{
    const SPMDataStream* const source = stream();
    if (!source || source->array_type() != SPM_ARRAY_INT16 || !storageDoc()->isImageOk(imageNumber)) return false;
    const CSize size = shape_of(*source);
    const std::uint64_t shown = std::uint64_t(size.cx) * std::uint64_t(size.cy);
    return shown > 0 && source->array_length() >= shown; // a third side may be empty
}

const short* CSurfMathView::givenSamples() const
{
    return hasSamples() ? static_cast<const short*>(storageDoc()->getImageDataS(imageNumber, subImageNumber)) : nullptr;
}

bool CSurfMathView::isTurned() const { return axis("AxisZ", unsigned(-1)).scale < 0.0; }

const short* CSurfMathView::samples() const
{
    const short* const given = givenSamples();
    if (!given || !isTurned()) return given;
    const CSize size = imageSize();
    const std::size_t count = static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy);
    // On an axis that falls, the samples are shown turned with a turned axis, so that high is bright. The copy is made
    // when it is first asked for and lasts until the data are loaded again.
    if (turnedSamples.size() != count) {
        turnedSamples.resize(count);
        document::turn_heights({given, count}, turnedSamples.data());
    }
    return turnedSamples.data();
}

const VLAxis& CSurfMathView::valueAxis() const
{
    const VLAxis& given = axis("AxisZ", unsigned(-1));
    return isTurned() ? turnedAxis = document::turned_axis(given) : given;
}

surface::sample_frame CSurfMathView::shownFrame() const
{
    const short* const frame = samples();
    const CSize size = imageSize();
    if (!frame) return {};
    return {
        {frame, static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy)}, size.cx, size.cy, unmeasured};
}

CSize CSurfMathView::imageSize() const { return hasSamples() ? shape_of(*stream()) : CSize{1, 1}; }

unsigned CSurfMathView::getSourceWidth() { return static_cast<unsigned>(imageSize().cx); }
unsigned CSurfMathView::getSourceHeight() { return static_cast<unsigned>(imageSize().cy); }

const VLAxis& CSurfMathView::axis(const char* option, unsigned dimension) const
{
    static const VLAxis indices; // of a side that the image does not have
    const SPMDataStream* const source = stream();
    const bool isThere = source && (dimension == unsigned(-1) || dimension < source->get_dimensions_number());
    if (!isThere) return indices;
    return storageDoc()->getAxis(imageNumber, static_cast<unsigned>(intOption(option)), dimension);
}

/// The display keeps the shape of the source, in the middle of the room that the margins leave.
void CSurfMathView::CountDisplayRect()
{
    CImageView::CountDisplayRect();
    displayRect = view::shape_kept(displayRect, sourceRect.Size());
}

CRect CSurfMathView::roiRect() const
{
    CRect rect(drawn.roi.left, drawn.roi.top, drawn.roi.right, drawn.roi.bottom);
    rect.NormalizeRect();
    return rect;
}

void CSurfMathView::LoadData()
{
    CImageView::LoadData();
    fitter.forget();
    shownRange.forget();
    turnedSamples.clear();
    overlayBitmap.forget();
    unmeasured.clear();
    if (!hasSamples()) return;
    unmeasured = document::unmeasured_samples(*storageDoc(), imageNumber).of(subImageNumber);
    if (!*storageDoc()->getString("palette", imageNumber)) scale.SyncWithStatic();
    invertDisplay(isOptionOn("invert"));
    if (isOptionOn("ShowStatistics")) updateStatisticsLater();
    RefreshDisplay();
}

void CSurfMathView::getBestScale(double* low, double* high, const char** units)
{
    const short* const frame = givenSamples(); // the base takes them with the axis of the document
    CRect part;
    if (!drawn.roiActive || !frame || !part.IntersectRect(roiRect(), CRect({0, 0}, imageSize())))
        return CImageView::getBestScale(low, high, units);
    const primitives::height_range range = view::range_keeper().of(frame, imageSize().cx, part, unmeasured);
    readWell(range.minimum, range.maximum, low, high, units);
}

void CSurfMathView::showPart(const CRect& window)
{
    sourceRect = window;
    UpdateDisplayRect();
    RefreshDisplay();
}

/// A burst of changes is drawn once, and one that does not end, as a drag, every time the delay is over.
void CSurfMathView::RefreshDisplay()
{
    if (isRenderPending || !getPeer()) return;
    isRenderPending = true;
    SetTimer(renderTimer, renderDelay);
}

void CSurfMathView::OnTimer(unsigned id)
{
    if (id == renderTimer) {
        KillTimer(renderTimer);
        isRenderPending = false;
        render();
        Invalidate(true);
    } else if (id == statisticsTimer) {
        KillTimer(statisticsTimer);
        updateStatistics();
    } else {
        CImageView::OnTimer(id);
    }
}

void CSurfMathView::OnSize(CSize size)
{
    CImageView::OnSize(size);
    UpdateZScale(true);
}

void CSurfMathView::OnSetFocus()
{
    CImageView::OnSetFocus();
    loadStoredPalette(CScale::GetStaticScale());
}
