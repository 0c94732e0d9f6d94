// What is drawn over the surface, and the brush that works on it there.
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "resources/frame_templates.h"
#include "spectra/figures/features/feature_overlay.h"
#include "spectra/figures/features/feature_table.h"
#include "spectra/views/FeaturesHistogramView.h"
#include "spectra/views/FeaturesTableView.h"
#include "spectra/views/items_windows.h"
#include "view/frame/open_view.h"

#include <algorithm>

using namespace vldv;

namespace {

constexpr std::uint32_t outColor = 192; ///< of contours and skeletons that do not pass
constexpr auto overlayOf = DEC_IMAGE_SURFACE;

CFeaturesTableView* table_of(const CDocument* document)
{
    if (!document) return nullptr;
    for (CView* const each : document->views())
        if (auto* const table = dynamic_cast<CFeaturesTableView*>(each)) return table;
    return nullptr;
}

} // namespace

void CFeaturesHistogramView::clearOverlays()
{
    if (!storageDoc()) return;
    for (const char* const key : {spectra::featuresKey, spectra::featuresOutKey})
        storageDoc()->set_decoration(key, nullptr, 0, overlayOf, imageNumber);
}

void CFeaturesHistogramView::DoTheFilter()
{
    CStorageDoc& document = *storageDoc();
    document.UpdateAllViews(nullptr, document::hint{document::hintClearMarks, imageNumber}.packed());
    updateText();
    Invalidate(false);
    UpdateTable();
    using spectra::feature_mask_type;
    const auto type = static_cast<feature_mask_type>(std::clamp(intOption("mask_type"), 0, 4));
    if (type == feature_mask_type::none || imageSize().cx == 0) return;
    if (isOptionOn("show_marks"))
        for (const Feature* const each : filteredFeatures())
            document.UpdateAllViews(nullptr, document::hint{document::hintAddMark, imageNumber}.packed(),
                                    each->pixels.front());
    spectra::feature_overlays drawn = spectra::draw_features(
        features(), [this](const Feature& each) { return isFiltered(each); }, type, search.working());
    const bool isLine = type == feature_mask_type::contour || type == feature_mask_type::skeleton;
    const std::uint32_t color = type == feature_mask_type::contour    ? colorOption("contour_color")
                                : type == feature_mask_type::skeleton ? colorOption("skeleton_color")
                                                                      : 0u;
    const VLAxis &x = document.getAxis(imageNumber, 0, 0), &y = document.getAxis(imageNumber, 0, 1);
    const VLPluginDecoration passing = drawn.passing.record(x, y, spectra::featuresKey, color);
    const VLPluginDecoration others = drawn.others.record(x, y, spectra::featuresOutKey, isLine ? outColor : 0u);
    document.set_decoration(spectra::featuresKey, &passing, 1, overlayOf, imageNumber);
    document.set_decoration(spectra::featuresOutKey, &others, 1, overlayOf, imageNumber);
}

/// Shows the mask while it is being painted.
void CFeaturesHistogramView::updateSurfaceMask()
{
    CStorageDoc& document = *storageDoc();
    spectra::feature_overlay drawn = spectra::draw_mask(search.mask(), search.working());
    const VLPluginDecoration record =
        drawn.record(document.getAxis(imageNumber, 0, 0), document.getAxis(imageNumber, 0, 1), spectra::featuresKey, 0);
    document.set_decoration(spectra::featuresKey, &record, 1, overlayOf, imageNumber);
}

/// The same for what a stroke has changed.
void CFeaturesHistogramView::updateSurfaceMask(const CRect& part)
{
    const CRect& working = search.working();
    const CRect inMask(part.left - working.left, part.top - working.top, part.right - working.left,
                       part.bottom - working.top);
    storageDoc()->paintDecoration(spectra::featuresKey, imageNumber, part, [&](document::decoration::element& drawn) {
        spectra::redraw_mask(search.mask(), inMask, drawn.bytes);
    });
}

// The brush

void CFeaturesHistogramView::paint(CPoint to, bool value, bool begins)
{
    if (search.working().IsRectEmpty()) return;
    if (begins) {
        lastBrushPoint = to;
        search.beginEdit();
        updateSurfaceMask();
    }
    updateSurfaceMask(search.paint(intOption("brush_radius"), std::exchange(lastBrushPoint, to), to, value));
}

/// The features of the painted mask take the place of those that were found.
void CFeaturesHistogramView::measureMask()
{
    const auto read = readImage();
    if (!read || search.working().IsRectEmpty()) return;
    const CWaitCursor wait;
    search.measureMask(read->searched);
    dropBorder();
    if (intOption("mask_type") == static_cast<int>(spectra::feature_mask_type::none)) clearOverlays(); // the stroke
    RefreshView(true);
}

void CFeaturesHistogramView::undoPainting()
{
    search.undo();
    measureMask();
}

void CFeaturesHistogramView::redoPainting()
{
    search.redo();
    measureMask();
}

void CFeaturesHistogramView::removeFeatureAt(CPoint point)
{
    if (const auto number = search.featureAt(point)) removeFeatures({&*number, 1});
}

void CFeaturesHistogramView::chooseMetric(unsigned metric)
{
    if (metric >= spectra::featureMetrics) return;
    const bool isSame = metric == metricIndex;
    if (isSame) sortDescending = !sortDescending;
    metricIndex = metric;
    RefreshView(isSame);
}

void CFeaturesHistogramView::OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object)
{
    if (!storageDoc() || storageDoc()->getImagesNumber() == 0) return;
    const document::hint told = document::hint::unpacked(hint);
    const auto* const point = std::get_if<CPoint>(&object);
    if (told.code == document::hintChooseMetric) return chooseMetric(told.image);
    const bool isOurs = point && told.image == imageNumber;
    using enum document::feature_hint;
    switch (told.code) {
    case hintMarkRemoved:
        if (isOurs) removeFeatureAt(*point);
        return;
    case hintMarkSet:
        if (isOurs) selectFeatureAt(*point);
        return;
    case hintIncludePress:
    case hintIncludeDrag:
    case hintIncludeRelease:
        if (isOurs) paint(*point, true, told.code == hintIncludePress);
        if (isOurs && told.code == hintIncludeRelease) measureMask();
        return;
    case hintExcludePress:
    case hintExcludeDrag:
    case hintExcludeRelease:
        if (isOurs) paint(*point, false, told.code == hintExcludePress);
        if (isOurs && told.code == hintExcludeRelease) measureMask();
        return;
    default:
        CHistogramView::OnUpdate(sender, hint, object);
    }
    if (told.code == document::hintNewData) shownDocument = GetDocument();
}

/// What is drawn stays, as other drawings do; the table has nothing to show.
void CFeaturesHistogramView::OnFrameClosed()
{
    if (CFeaturesTableView* const table = table_of(shownDocument)) table->featuresChanged(nullptr);
    shownDocument = nullptr;
    CHistogramView::OnFrameClosed();
}

// The table

CFeaturesTableView* CFeaturesHistogramView::shownTable() const { return table_of(GetDocument()); }

void CFeaturesHistogramView::UpdateTable()
{
    if (CFeaturesTableView* const table = shownTable()) table->featuresChanged(this);
}

void CFeaturesHistogramView::showTable()
{
    if (CFeaturesTableView* const table = shownTable()) {
        if (table->GetParentFrame()) table->GetParentFrame()->ActivateFrame();
        return;
    }
    CWinApp* const app = AfxGetApp();
    CDocTemplate* const maker = app ? app->findTemplate(featuresTableFrame) : nullptr;
    CFrameWnd* const frame = maker ? maker->CreateNewFrame(GetDocument(), nullptr) : nullptr;
    if (!frame) return;
    maker->InitialUpdateFrame(frame, GetDocument(), true);
    PositionWindowNearby(frame, 0, legendDown);
    view::bring_inside(*frame);
    UpdateTable();
}

void CFeaturesHistogramView::markFeature(std::size_t number)
{
    if (number >= features().size()) return;
    CStorageDoc& document = *storageDoc();
    document.UpdateAllViews(nullptr, document::hint{document::hintClearMarks, imageNumber}.packed());
    document.UpdateAllViews(nullptr, document::hint{document::hintAddMark, imageNumber}.packed(),
                            features()[number].pixels.front());
    document.UpdateAllViews(nullptr, document::hint{document::hintShowPoint, imageNumber}.packed(),
                            features()[number].bounds.CenterPoint());
}

void CFeaturesHistogramView::removeFeatures(std::span<const std::size_t> numbers)
{
    search.beginEdit();
    std::size_t place = 0;
    search.remove([&](const Feature&) { return std::ranges::binary_search(numbers, place++); });
    RefreshView(true);
}

void CFeaturesHistogramView::openItems(std::span<const std::size_t> numbers)
{
    spectra::open_items(*this, spectra::items_of(features(), numbers, axes()));
}
void CFeaturesHistogramView::OnItems() { openItems({}); }

void CFeaturesHistogramView::selectFeatureAt(CPoint point)
{
    const auto number = search.featureAt(point);
    CFeaturesTableView* const table = shownTable();
    if (number && table) table->showFeature(*number);
}
