// The view's share of figures: it fetches, calls and shows.
#include "document/StorageDoc.h"
#include "surface/SurfMathView.h"
#include "surface/measurement_text.h"

namespace {

constexpr const char* directionKey = "\\Line direction";

} // namespace

void CSurfMathView::updateStatistics()
{
    statisticsRows.clear();
    if (const short* const frame = samples()) {
        const std::size_t count = std::size_t{getSourceWidth()} * getSourceHeight();
        statisticsRows = surface::frame_statistics({frame, count}, static_cast<int>(getSourceWidth()), valueAxis());
        surface::add_measure_rows(statisticsRows, drawn.measure, static_cast<int>(options["text.compact_length"]));
    }
    Invalidate(true);
}

std::wstring CSurfMathView::GetClipboardText(bool full)
{
    if (!hasSamples()) return {};
    surface::legend_content content = legendContent();
    if (!options["ShowStatistics"]) content.statistics.clear();
    const bool withFile = options["ShowLegend"] && options["ShowAdditionalLegend"];
    return surface::clipboard_text(content, withFile, storageDoc()->getString(directionKey, imageNumber), full);
}
