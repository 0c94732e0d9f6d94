// What is drawn over the surface, and the brush that works on it there.
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "resources/frame_templates.h"
#include "spectra/figures/feature_overlay.h"
#include "spectra/views/FeaturesHistogramView.h"
#include "spectra/views/FeaturesTableView.h"

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

// The brush

void CFeaturesHistogramView::paint(CPoint to, bool value, bool begins)
{
    if (search.working().IsRectEmpty()) return;
    if (begins) lastBrushPoint = to;
    search.paint(intOption("brush_radius"), std::exchange(lastBrushPoint, to), to, value);
    updateSurfaceMask();
}

/// The features of the painted mask take the place of those that were found.
void CFeaturesHistogramView::endStroke()
{
    const auto read = readImage();
    if (!read || search.working().IsRectEmpty()) return;
    const CWaitCursor wait;
    search.measureMask(read->searched);
    dropBorder();
    RefreshView(true);
}

void CFeaturesHistogramView::removeFeatureAt(CPoint point)
{
    const auto number = search.featureAt(point);
    if (!number) return;
    search.features().erase(search.features().begin() + static_cast<std::ptrdiff_t>(*number));
    RefreshView(true);
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
        if (isOurs && told.code == hintIncludeRelease) endStroke();
        return;
    case hintExcludePress:
    case hintExcludeDrag:
    case hintExcludeRelease:
        if (isOurs) paint(*point, false, told.code == hintExcludePress);
        if (isOurs && told.code == hintExcludeRelease) endStroke();
        return;
    default:
        CHistogramView::OnUpdate(sender, hint, object);
    }
    if (told.code != document::hintNewData || shownDocument) return;
    shownDocument = GetDocument();
    openTable();
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

void CFeaturesHistogramView::openTable()
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
    UpdateTable();
}

void CFeaturesHistogramView::markFeature(std::size_t number)
{
    if (number >= features().size()) return;
    CStorageDoc& document = *storageDoc();
    document.UpdateAllViews(nullptr, document::hint{document::hintClearMarks, imageNumber}.packed());
    document.UpdateAllViews(nullptr, document::hint{document::hintAddMark, imageNumber}.packed(),
                            features()[number].pixels.front());
}

void CFeaturesHistogramView::removeFeatures(std::span<const std::size_t> numbers)
{
    std::vector<Feature>& all = search.features();
    std::size_t place = 0;
    std::erase_if(all, [&](const Feature&) { return std::ranges::binary_search(numbers, place++); });
    RefreshView(true);
}

void CFeaturesHistogramView::selectFeatureAt(CPoint point)
{
    const auto number = search.featureAt(point);
    CFeaturesTableView* const table = shownTable();
    if (number && table) table->showFeature(*number);
}
