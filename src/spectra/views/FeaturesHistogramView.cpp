#include "spectra/views/FeaturesHistogramView.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/WinApp.h"
#include "spectra/figures/features/feature_table.h"
#include "spectra/views/features_options.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

using namespace vldv;

namespace {

constexpr unsigned reloadTimer = 2, doubleClickTime = 400; // milliseconds

} // namespace

CFeaturesHistogramView::CFeaturesHistogramView()
{
    using view = CFeaturesHistogramView;
    for (const char* const name : {"AxisX", "AxisY", "AxisZ", "threshold.mode", "exclude_border"})
        AddOptionHandler(name, &view::oh_reload_features);
    for (const char* const name : {"threshold.manual.level", "threshold.depth"})
        AddOptionHandler(name, &view::oh_delayed_reload);
    for (const char* const name : {"NBars", "NBars.manual.count"}) AddOptionHandler(name, &view::oh_refresh_view);
    AddOptionHandler("mask_type", &view::oh_mask_type);
    for (const char* const name : {"keep_inner", "contour_color", "skeleton_color", "show_marks"})
        AddOptionHandler(name, &view::oh_do_filter);
}

CFeaturesHistogramView::~CFeaturesHistogramView() = default;

// Data

CSize CFeaturesHistogramView::imageSize() const
{
    const SPMDataStream* const source = stream();
    if (!source || source->array_type() != SPM_ARRAY_INT16 || source->get_dimensions_number() != 2) return {0, 0};
    return {static_cast<int>(source->get_dimension(0).length), static_cast<int>(source->get_dimension(1).length)};
}

const VLAxis& CFeaturesHistogramView::axis(const char* option, unsigned dimension) const
{
    return storageDoc()->getAxis(imageNumber, static_cast<unsigned>(intOption(option)), dimension);
}

spectra::feature_axes CFeaturesHistogramView::axes() const
{
    if (imageSize().cx == 0) return {};
    const VLAxis& values = axis("AxisZ", unsigned(-1));
    return {axis("AxisX", 0), axis("AxisY", 1), values.scale < 0.0 ? document::turned_axis(values) : values};
}

std::optional<CFeaturesHistogramView::read_image> CFeaturesHistogramView::readImage() const
{
    const CSize size = imageSize();
    const auto count = static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy);
    const auto* const first = static_cast<const std::int16_t*>(
        count > 0 ? storageDoc()->getImageDataS(imageNumber, subImageNumber) : nullptr);
    if (!first) return std::nullopt;
    std::optional<read_image> made(std::in_place, document::rising_heights({first, count}, axis("AxisZ", unsigned(-1))),
                                   document::unmeasured_samples(*storageDoc(), imageNumber).of(subImageNumber));
    made->searched = {{made->heights.samples().data(), size.cx, size.cy, 2 * size.cx}, axes(), made->unmeasured};
    return made;
}

void CFeaturesHistogramView::LoadData()
{
    CImageView::LoadData();
    const bool hadFeatures = !features().empty();
    const CWaitCursor wait;
    const auto read = readImage();
    const CRect whole({0, 0}, imageSize());
    CRect rect;
    if (!rect.IntersectRect(workingRect, whole)) rect = whole;
    if (read)
        search.find(read->searched, rect, threshold());
    else
        search.clear();
    dropBorder();
    RefreshView(hadFeatures);
}

spectra::threshold_choice CFeaturesHistogramView::threshold() const
{
    return {static_cast<spectra::threshold_mode>(std::clamp(intOption("threshold.mode"), 0, 3)),
            doubleOption("threshold.manual.level"), doubleOption("threshold.depth")};
}

/// Counts what touches the border of the rectangle, and leaves it out where the user wants that.
void CFeaturesHistogramView::dropBorder()
{
    const auto touches = [this](const Feature& each) { return search.isOnBorder(each); };
    onBorder = static_cast<std::size_t>(std::ranges::count_if(search.features(), touches));
    if (isOptionOn("exclude_border")) std::erase_if(search.features(), touches);
}

spectra::height_histogram CFeaturesHistogramView::makeHistogram()
{
    if (features().empty()) return {};
    return {distribution.bins,
            distribution.valueMin,
            distribution.valueMax,
            distribution.valueRange,
            static_cast<std::uint32_t>(features().size()),
            distribution.peakCount};
}

std::string CFeaturesHistogramView::valueUnits() const { return spectra::feature_metrics()[metricIndex].units(axes()); }

void CFeaturesHistogramView::RefreshView(bool keepSelection)
{
    const auto valueAt = [this](double share) { return distribution.valueMin + share * distribution.valueRange; };
    const double low = valueAt(getDelimiters().f1), high = valueAt(getDelimiters().f2);
    distribution = spectra::distribute(features(), metricIndex, manualBars());
    spectra::sort_features(search.features(), metricIndex, sortDescending);
    if (keepSelection) putDelimiters(spectra::share_of(distribution, low), spectra::share_of(distribution, high));
    rebuildHistogram();
    DoTheFilter();
}

// Filter

spectra::feature_filter CFeaturesHistogramView::filter() const
{
    return {getDelimiters().f1, getDelimiters().f2, isOptionOn("keep_inner")};
}

bool CFeaturesHistogramView::isFiltered(const Feature& feature) const
{
    return spectra::passes(feature, distribution, filter());
}

std::vector<const Feature*> CFeaturesHistogramView::filteredFeatures(bool inverted) const
{
    std::vector<const Feature*> chosen;
    for (const Feature& each : features())
        if (isFiltered(each) != inverted) chosen.push_back(&each);
    return chosen;
}

void CFeaturesHistogramView::updateText()
{
    CHistogramView::updateText();
    if (features().empty()) return;
    setText(base::widen(spectra::metric_heading(metricIndex, axes()) + "\t") + getText());
}

std::string CFeaturesHistogramView::countsText() const
{
    const auto number = [](const char* format, std::size_t count) {
        return base::formatted(format, static_cast<unsigned long>(count));
    };
    std::string told = number("Features: %lu", features().size());
    told += number("   filtered: %lu", filteredFeatures().size());
    told +=
        number(isOptionOn("exclude_border") ? "   on the border, left out: %lu" : "   on the border: %lu", onBorder);
    told += number("   single samples, dropped: %lu", search.dropped());
    if (search.notMeasured() > 0) told += number("   samples not measured, left out: %lu", search.notMeasured());
    return told;
}

// Options

void CFeaturesHistogramView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    std::vector<SPMVar> all = optionsWithoutAxis();
    std::ranges::move(spectra::features_options(stream()), std::back_inserter(all));
    giveOptions(all, vars, count);
}

void CFeaturesHistogramView::oh_reload_features(const SPMVar&) { LoadData(); }
void CFeaturesHistogramView::oh_refresh_view(const SPMVar&) { RefreshView(true); }
void CFeaturesHistogramView::oh_do_filter(const SPMVar&) { DoTheFilter(); }

void CFeaturesHistogramView::oh_mask_type(const SPMVar&)
{
    clearOverlays();
    DoTheFilter();
}

/// Moving the level again and again costs one search.
void CFeaturesHistogramView::oh_delayed_reload(const SPMVar&)
{
    if (reloadArmed) {
        reloadPending = true;
        return;
    }
    reloadArmed = true;
    SetTimer(reloadTimer, doubleClickTime);
}

void CFeaturesHistogramView::OnTimer(unsigned id)
{
    if (id != reloadTimer) return CHistogramView::OnTimer(id);
    if (std::exchange(reloadPending, false)) return; // one more period
    KillTimer(reloadTimer);
    reloadArmed = false;
    LoadData();
    Invalidate(true);
}
