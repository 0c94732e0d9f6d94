// What the menu of a spectrum does.
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/StorageDocTemplate.h"
#include "platform/app/WinApp.h"
#include "resources/commands.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "spectra/figures/fourier_selection.h"
#include "spectra/figures/frame_edit.h"
#include "spectra/figures/spectrum_curves.h"
#include "spectra/figures/spectrum_peaks.h"
#include "spectra/figures/spectrum_table.h"
#include "spectra/views/FourierView.h"
#include "view/image/picture_export.h"
#include "view/image/table_file.h"
#include "view/panes/TextView.h"

#include <utility>
#include <vector>

using namespace vldv;

namespace {

struct writing_scope {
    explicit writing_scope(bool& flag_) : flag(flag_) { flag = true; }
    writing_scope(const writing_scope&) = delete;
    writing_scope& operator=(const writing_scope&) = delete;
    ~writing_scope() { flag = false; }

private:
    bool& flag;
};

} // namespace

bool CFourierView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    using view = CFourierView;
    static constexpr command_row<view> rows[] = {
        {commands::selectSpectrum, commands::markSpectrum, &view::OnMouseMode, &view::OnUpdateMouseMode},
        {commands::zeroInner, commands::zeroOuter, &view::OnEdit, &view::OnUpdateEdit},
        {commands::increase, commands::decrease, &view::OnEdit, &view::OnUpdateEdit},
        {commands::moreContrast, commands::restoreContrast, &view::OnContrast},
        {commands::removeSpectrumSelection, &view::OnClearSelection, &view::OnUpdateClearSelection},
        {commands::removeSpectrumMarks, &view::OnClearMarks, &view::OnUpdateClearMarks},
        {commands::normalize, &view::OnNormalize},
        {commands::refresh, &view::OnRefresh},
        {commands::radialSpectrum, &view::OnRadialSpectrum, &view::OnUpdateHasLength},
        {commands::originProfile, &view::OnOriginProfile, &view::OnUpdateHasLength},
        {commands::spectrumPeaks, &view::OnPeaks, &view::OnUpdateHasSpectrum},
    };
    return dispatch_command<view>(*this, rows, id, ui) || CImageView::OnCmdMsg(id, ui);
}

// The mouse

void CFourierView::OnMouseMode(unsigned id)
{
    using tool = spectra::spectrum_control::tool;
    control.release();
    control.used = id == commands::selectSpectrum ? tool::areas : tool::marks;
}

void CFourierView::OnUpdateMouseMode(CCmdUI& ui)
{
    const bool selects = control.used == spectra::spectrum_control::tool::areas;
    ui.SetRadio(selects == (ui.m_nID == commands::selectSpectrum));
}

// Edits

std::vector<CRect> CFourierView::storedParts() const
{
    std::vector<CRect> parts;
    for (const CRect& area : control.areas()) spectra::split_rect(area, parts);
    return parts;
}

void CFourierView::OnUpdateEdit(CCmdUI& ui) { ui.Enable(IsGood() && !control.areas().empty() && !isOperationOpen()); }

void CFourierView::OnEdit(unsigned id)
{
    const spectra::spectrum_edit edit = id == commands::zeroInner   ? spectra::zeroInner
                                        : id == commands::zeroOuter ? spectra::zeroOuter
                                        : id == commands::increase  ? spectra::increase
                                                                    : spectra::decrease;
    const CWaitCursor wait;
    if (!IsGood() || !spectrum.edit(storedParts(), shape(), edit)) return;
    DrawSpectrum();
    Invalidate(false);
    UpdateWindow();
    BackFourier();
}

/// Gives the image what the spectrum is now. What lies beyond 16 bits is cut off there: the spectrum of that is shown.
void CFourierView::BackFourier()
{
    const CSize size = shownSize();
    bool isExact = false;
    try {
        const spectra::shown_spectrum::restored_frame made = spectrum.restored();
        const writing_scope writing(isWriting);
        spectra::replace_frame(*storageDoc(), imageNumber, subImageNumber, made.samples, static_cast<unsigned>(size.cx),
                               static_cast<unsigned>(size.cy));
        isExact = made.isExact;
    } catch (...) {
        LoadData(); // of the image, which is as it was
        throw;
    }
    if (!isExact) LoadData();
}

// Contrast

void CFourierView::OnContrast(unsigned id)
{
    constexpr double usual = 0.5;
    const double now = doubleOption("contrast");
    const double wanted = id == commands::moreContrast ? 2.0 * now : id == commands::lessContrast ? 0.5 * now : usual;
    setOption("contrast", base::general(wanted, 17).c_str());
}

// Selection and marks

void CFourierView::OnClearSelection()
{
    control.clearAreas();
    redrawSelection();
}
void CFourierView::OnUpdateClearSelection(CCmdUI& ui) { ui.Enable(!control.areas().empty()); }

void CFourierView::OnClearMarks()
{
    control.clearMarks();
    redrawSelection();
}
void CFourierView::OnUpdateClearMarks(CCmdUI& ui) { ui.Enable(!control.marks().empty()); }

void CFourierView::OnNormalize()
{
    sourceRect = CRect({0, 0}, imageSize());
    adjustToBestSize();
    RefreshDisplay();
}

void CFourierView::OnRefresh() { LoadData(); }

// Results

void CFourierView::OnUpdateHasSpectrum(CCmdUI& ui) { ui.Enable(IsGood()); }
void CFourierView::OnUpdateHasLength(CCmdUI& ui)
{
    ui.Enable(IsGood() && spectra::wave_at(grid(), 1.0, 1.0).hasLength());
}

const VLAxis& CFourierView::valueAxis() const
{
    static const VLAxis none;
    const SPMDataStream* const source = stream();
    return source && source->values.get_axes_number() > 0 ? source->values.get_axis(0) : none;
}

spectra::spectrum_curve_source CFourierView::curveSource()
{
    spectrum.setMode(mode());
    return {spectrum, grid(), valueAxis(), mode()};
}

/// In a document of its own.
void CFourierView::openCurve(const std::optional<SPMDataStream>& curve)
{
    auto* const maker = dynamic_cast<CStorageDocTemplate*>(GetDocument()->GetDocTemplate());
    auto* const made = curve && maker ? dynamic_cast<CStorageDoc*>(maker->CreateNewDocument()) : nullptr;
    if (!made) return;
    made->AddNewImages(&*curve, 1);
    storageDoc()->deriveTitle(*made);
    made->SetModifiedFlag(true);
    openFrames(*made);
}

void CFourierView::OnRadialSpectrum()
{
    const CWaitCursor wait;
    openCurve(spectra::radial_spectrum(curveSource()));
}

/// Through the last mark, else the middle of the last area, else along X.
void CFourierView::OnOriginProfile()
{
    CPoint through{1, 0};
    if (!control.marks().empty())
        through = control.marks().back();
    else if (!control.areas().empty())
        through = control.areas().back().CenterPoint();
    if (through == CPoint{0, 0}) through = {1, 0};
    openCurve(spectra::origin_profile(curveSource(), through));
}

void CFourierView::OnPeaks()
{
    const CWaitCursor wait;
    const std::vector<spectra::spectrum_peak> peaks = spectra::find_peaks(spectrum.frame());
    std::vector<CPoint> marks;
    for (const spectra::spectrum_peak& each : peaks) marks.push_back(each.bin);
    control.setMarks(std::move(marks));
    redrawSelection();
    const std::wstring text = base::widen(spectra::peaks_text(peaks, grid(), valueAxis()));
    if (CTextView* const view = GetTextView(nullptr, GetDocument())) view->appendText(text);
}

// Text

std::wstring CFourierView::GetClipboardText(bool)
{
    if (!IsGood()) return {};
    return base::widen(spectra::marks_table(curveSource(), control.marks()));
}

std::wstring CFourierView::GetExportFilters()
{
    return CImageView::GetExportFilters() + base::widen(string_resource(texts::textFilter));
}

void CFourierView::Export(int filter, const wchar_t* path)
{
    const int ofBase = CountExportFormats(CImageView::GetExportFilters().c_str());
    if (filter <= ofBase) return CImageView::Export(filter, path);
    if (filter == ofBase + 1 && IsGood()) view::save_table(path, spectra::marks_table(curveSource(), control.marks()));
}
