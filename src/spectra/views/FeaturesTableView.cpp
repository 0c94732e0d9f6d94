#include "spectra/views/FeaturesTableView.h"

#include "base/text.h"
#include "document/update_hints.h"
#include "platform/app/Document.h"
#include "platform/app/keys.h"
#include "spectra/figures/feature_table.h"
#include "spectra/views/FeaturesHistogramView.h"

using namespace vldv;

namespace {

using rows = std::vector<std::vector<std::wstring>>;

rows footer_of(std::span<const Feature> features)
{
    using summary = spectra::metric_summary;
    constexpr std::pair<const wchar_t*, double summary::*> lines[] = {{L"Mean", &summary::mean},
                                                                      {L"Std. dev.", &summary::deviation},
                                                                      {L"Sum", &summary::sum},
                                                                      {L"Lowest", &summary::lowest},
                                                                      {L"Highest", &summary::highest}};
    const auto all = spectra::summarize(features);
    rows made;
    for (const auto& [name, member] : lines) {
        std::vector<std::wstring>& line = made.emplace_back(1, name);
        for (const summary& each : all) line.push_back(base::widen(spectra::metric_cell(each.*member)));
    }
    return made;
}

} // namespace

void CFeaturesTableView::featuresChanged(CFeaturesHistogramView* of)
{
    source = of;
    headings.clear();
    footer.clear();
    note = L"The window of the features is closed";
    if (source) {
        // The metric by which they are sorted says how.
        for (std::size_t i = 0; i < spectra::featureMetrics; ++i)
            headings.push_back(base::widen(spectra::metric_heading(i, source->axes())) + (i != source->metric() ? L""
                                                                                          : source->isDescending()
                                                                                              ? L" \u25BC"
                                                                                              : L" \u25B2"));
        footer = footer_of(source->features());
        note = base::widen(source->countsText());
    }
    showRows();
}

void CFeaturesTableView::showFeature(std::size_t number)
{
    if (getPeer()) getPeer()->showGridRow(number);
}

std::size_t CFeaturesTableView::gridRows() const { return source ? source->features().size() : 0; }

std::wstring CFeaturesTableView::gridCell(std::size_t row, std::size_t column) const
{
    if (row >= gridRows() || column >= spectra::featureMetrics) return {};
    return base::widen(spectra::metric_cell(source->features()[row].metrics[column]));
}

bool CFeaturesTableView::isGridRowGrey(std::size_t row) const
{
    return row < gridRows() && source->isFiltered(source->features()[row]);
}

/// The view of the features tells by itself when they change.
void CFeaturesTableView::OnUpdate(CView*, std::uint32_t hint, const hint_object&)
{
    if (document::hint::unpacked(hint).code == document::hintNewData && !source) showRows();
}

void CFeaturesTableView::OnTableHeading(unsigned column)
{
    if (GetDocument()) GetDocument()->UpdateAllViews(this, document::hint{document::hintChooseMetric, column}.packed());
}

void CFeaturesTableView::OnTableRow(unsigned row)
{
    if (source) source->markFeature(row);
}

bool CFeaturesTableView::OnKeyDown(unsigned key)
{
    if (key != VK_DELETE || !source) return CGridView::OnKeyDown(key);
    if (const std::vector<std::size_t> chosen = selectedRows(); !chosen.empty()) source->removeFeatures(chosen);
    return true;
}
