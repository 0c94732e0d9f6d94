// The view's share of figures: it fetches, calls and shows.
#include "document/StorageDoc.h"
#include "document/samples/unmeasured_samples.h"
#include "surface/figures/measure/measurement_text.h"
#include "surface/views/SurfMathView.h"
#include "surface/views/clipboard_text.h"

#include <utility>

using namespace vldv;

namespace {

constexpr const char* directionKey = "\\Line direction";

} // namespace

void CSurfMathView::updateStatisticsLater()
{
    constexpr unsigned delay = 500; // milliseconds
    SetTimer(statisticsTimer, delay);
}

void CSurfMathView::updateStatistics()
{
    statisticsRows.clear();
    if (const short* const frame = samples()) {
        const std::size_t count = std::size_t{getSourceWidth()} * getSourceHeight();
        const document::unmeasured_samples voids(*storageDoc(), imageNumber);
        const auto leftOut = voids.of(subImageNumber);
        statisticsRows =
            surface::frame_statistics({frame, count}, static_cast<int>(getSourceWidth()), valueAxis(), leftOut);
        for (auto& row : surface::unmeasured_rows(primitives::count_of(leftOut), voids.unplaced()))
            statisticsRows.push_back(std::move(row));
    }
    Invalidate(true);
}

std::vector<surface::statistics_row> CSurfMathView::measureRows() const
{
    return surface::measure_rows(drawn.measure, intOption("text.compact_length"));
}

void CSurfMathView::refreshMeasureRows()
{
    std::vector<surface::statistics_row> rows = measureRows();
    if (std::exchange(panelRows, rows) == rows || !isOptionOn("ShowStatistics")) return;
    CRect panel = GetClientRect();
    if (!isCompact()) panel.left = panel.right - intOption("ParametersWidth");
    InvalidateRect(panel, true);
}

std::wstring CSurfMathView::GetClipboardText(bool full)
{
    if (!hasSamples()) return {};
    surface::legend_content content = legendContent();
    if (!isOptionOn("ShowStatistics")) content.statistics.clear();
    const bool withFile = isOptionOn("ShowLegend") && isOptionOn("ShowAdditionalLegend");
    return surface::clipboard_text(content, withFile, storageDoc()->getString(directionKey, imageNumber), full);
}
