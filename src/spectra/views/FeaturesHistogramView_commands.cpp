// What the menu of features does to the image.
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/WinApp.h"
#include "resources/commands.h"
#include "spectra/figures/features/feature_edit.h"
#include "spectra/figures/frame_edit.h"
#include "spectra/views/FeaturesHistogramView.h"

#include <algorithm>

using namespace vldv;

bool CFeaturesHistogramView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    using view = CFeaturesHistogramView;
    static constexpr command_row<view> rows[] = {
        {commands::filteredFeatures, &view::OnRemoveFiltered, &view::OnUpdateHasFeatures},
        {commands::selectedFeatures, &view::OnRemoveSelected, &view::OnUpdateHasFeatures},
        {commands::profileHeight, &view::OnProfileHeight, &view::OnUpdateHasFeatures},
        {commands::excludeFiltered, &view::OnExcludeFiltered, &view::OnUpdateHasFeatures},
        {commands::fillFeatures, &view::OnFillInner, &view::OnUpdateHasFeatures},
        {commands::featuresTable, &view::OnTable},
        {commands::tableItems, &view::OnItems, &view::OnUpdateHasFeatures},
    };
    // Bars are features here: neither do delimiters cut heights, nor are their distances some of a calibration.
    if (id == commands::cutoff || id == commands::resolution) return false;
    return dispatch_command<view>(*this, rows, id, ui) || CHistogramView::OnCmdMsg(id, ui);
}

void CFeaturesHistogramView::OnUpdateHasFeatures(CCmdUI& ui) { ui.Enable(!features().empty() && !isOperationOpen()); }

/// Gives the image what `edit` makes of its rising heights.
template <class Edit>
void CFeaturesHistogramView::editImage(Edit edit)
{
    const auto read = readImage();
    if (!read) return;
    const CWaitCursor wait;
    const std::span<const std::int16_t> heights = read->heights.samples();
    std::vector<std::int16_t> samples(heights.begin(), heights.end());
    const CSize size = imageSize();
    edit(primitives::height_block{samples.data(), size.cx, size.cy, 2 * size.cx});
    if (axis("AxisZ", unsigned(-1)).scale < 0.0) document::turn_heights(samples, samples.data());
    spectra::replace_frame(*storageDoc(), imageNumber, subImageNumber, samples);
}

void CFeaturesHistogramView::remove_features(bool selected)
{
    const std::vector<const Feature*> chosen = filteredFeatures(selected);
    if (chosen.empty()) return;
    editImage([&](primitives::height_block heights) {
        for (const Feature* const each : chosen) spectra::flatten_feature(heights, *each, search.levels().zeroLevel);
    });
}

void CFeaturesHistogramView::OnFillInner()
{
    const std::vector<const Feature*> chosen = filteredFeatures();
    if (chosen.empty()) return;
    editImage([&](primitives::height_block heights) { spectra::fill_inner_areas(heights, chosen); });
}

/// A step of the image's history leads back to all features, which are then found again: what was painted before is no
/// step of its own any more.
void CFeaturesHistogramView::OnExcludeFiltered()
{
    storageDoc()->pushUndo(imageNumber, true);
    search.remove([this](const Feature& each) { return isFiltered(each); });
    search.forgetEdits();
    RefreshView(false);
    Invalidate(true);
}

void CFeaturesHistogramView::OnProfileHeight()
{
    const auto read = readImage();
    CWinApp* const app = AfxGetApp();
    if (!read || !app) return;
    const auto average =
        spectra::average_profile_height(read->searched.heights, filteredFeatures(), search.levels().threshold);
    app->host().output(average ? spectra::profile_height_text(*average, search.levels().zeroLevel, axes().z)
                               : std::string("No filtered feature rises above the threshold"));
}
