// What the menu of a histogram does.
#include "base/streams/rounding.h"
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "resources/commands.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "spectra/figures/histogram_table.h"
#include "spectra/views/HistogramView.h"
#include "view/dialogs/resolution_dialog.h"
#include "view/image/picture_export.h"
#include "view/image/table_file.h"

#include <utility>
#include <vector>

using namespace vldv;

bool CHistogramView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    using view = CHistogramView;
    static constexpr command_row<view> rows[] = {
        {commands::refresh, &view::OnRefresh},
        {commands::cutoff, &view::OnCutoff, &view::OnUpdateCutoff},
        {commands::resolution, &view::OnViewResolution, &view::OnUpdateResolution},
    };
    return dispatch_command<view>(*this, rows, id, ui) || CImageView::OnCmdMsg(id, ui);
}

void CHistogramView::OnRefresh() { LoadData(); }

void CHistogramView::OnUpdateCutoff(CCmdUI& ui) { ui.Enable(hasBars() && stream() && !isOperationOpen()); }
void CHistogramView::OnUpdateResolution(CCmdUI& ui) { ui.Enable(hasBars() && stream()); }

/// Samples beyond the delimiters get their values.
void CHistogramView::OnCutoff()
{
    if (!hasBars() || !stream()) return;
    CStorageDoc& document = *storageDoc();
    spectra::raw_window window = spectra::cutoff_window(counted, control.shares(), valueAxis());
    if (valueAxis().scale < 0.0) std::swap(window.low, window.high); // larger samples are smaller values
    const unsigned length = document.getSubImageLength(imageNumber);
    const auto* const first = static_cast<const std::int16_t*>(document.getImageDataS(imageNumber, subImageNumber));
    std::vector<std::int16_t> samples(first, first + length);
    spectra::cut_off(samples, window);
    document.pushUndo(imageNumber, true);
    document.setImageDataS(imageNumber, samples.data(), length, 0, subImageNumber);
    document.SetModifiedFlag(true);
    document.UpdateAllViews(nullptr, document::data_hint(imageNumber));
}

/// Lets the user correct the axes, by the true distance of both delimiters where he knows it.
void CHistogramView::OnViewResolution()
{
    const VLAxis& axis = valueAxis();
    const spectra::delimited_share between = spectra::share_between(counted, control.shares());
    const int steps = axis.scale == 0.0 ? 0 : base::nearest_int((between.x1 - between.x0) / axis.scale);
    view::run_resolution(*storageDoc(), imageNumber, {0, 0, static_cast<unsigned>(intOption("AxisZ"))},
                         view::measured_distance{{0, 0}, steps}, this);
}

std::wstring CHistogramView::GetExportFilters()
{
    return CImageView::GetExportFilters() + base::widen(string_resource(texts::textFilter));
}

void CHistogramView::Export(int filter, const wchar_t* path)
{
    const int ofBase = CountExportFormats(CImageView::GetExportFilters().c_str());
    if (filter <= ofBase) return CImageView::Export(filter, path);
    if (filter == ofBase + 1 && hasBars())
        view::save_table(path, spectra::histogram_table(counted, valueUnits().c_str()));
}
