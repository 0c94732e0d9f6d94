#pragma once
#include "spectra/figures/shown_spectrum.h"
#include "spectra/figures/spectrum_control.h"
#include "spectra/figures/spectrum_curves.h"
#include "spectra/figures/wave.h"
#include "view/ImageView.h"
#include "view/Scale.h"
#include "view/scale/render_step.h"
#include "vldv_api.h"

#include <optional>
#include <string>
#include <vector>

/// The spectrum of an image with the zero frequency in its middle. What is selected in it can be taken out of the
/// image, or made stronger or weaker; marks tell period, frequency and direction.
class VLDV_API CFourierView : public CImageView {
public:
    CFourierView();
    ~CFourierView() override;

    const char* viewKind() const override { return "CFourierView"; }
    std::string GetViewSection() override { return "FourierView"; }

    /// There are samples.
    bool IsGood() const noexcept { return !spectrum.isEmpty(); }
    const vldv::spectra::spectrum_control& getControl() const noexcept { return control; }
    CScale& getScale() noexcept { return scale; }

    // What the base asks
    unsigned getSourceWidth() override;
    unsigned getSourceHeight() override;
    void GetOptionsList(SPMVar* vars, unsigned* count) override;
    void CountDisplayRect() override;
    void LoadData() override;
    void RefreshDisplay() override;
    void OnDrawData(CDC& dc) override;
    void OnDrawLegend(CDC& dc) override;
    std::wstring GetClipboardText(bool full) override;
    std::wstring GetExportFilters() override;
    void Export(int filter, const wchar_t* path) override;

    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnTimer(unsigned id) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnCaptureChanged() override;
    bool OnMouseWheel(unsigned flags, int delta, CPoint point) override;
    bool OnKeyDown(unsigned key) override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;

private:
    // Options
    void oh_redraw(const SPMVar& changed);
    void oh_resize(const SPMVar& changed);
    void oh_strip(const SPMVar& changed);
    void oh_drawn(const SPMVar& changed);
    vldv::spectra::selection_shape shape() const;
    vldv::spectra::spectrum_mode mode() const;

    // Data
    const SPMDataStream* stream() const;
    bool hasSamples() const;
    CSize imageSize() const;
    const VLAxis& valueAxis() const;
    CSize shownSize() const noexcept { return {spectrum.width(), spectrum.height()}; }
    vldv::spectra::spectrum_grid grid() const;
    std::vector<CRect> storedParts() const;
    void followShape();
    void takeScale();

    // Drawing
    void DrawSpectrum();
    void drawAreas(CDC& dc) const;
    void drawMarks(CDC& dc) const;
    void drawStrip(CDC& dc) const;
    CRect stripRect() const;
    CRect clientBox(const CRect& bins) const noexcept;
    CPoint clientPoint(CPoint bin) const noexcept;

    // Mouse
    vldv::spectra::spectrum_control::pointer pointerAt(CPoint point) const;
    void tellPointer(CPoint point);
    void showCursor(CPoint point);
    void redrawSelection();

    // Commands
    void OnMouseMode(unsigned id);
    void OnUpdateMouseMode(CCmdUI& ui);
    void OnEdit(unsigned id);
    void OnUpdateEdit(CCmdUI& ui);
    void OnContrast(unsigned id);
    void OnClearSelection();
    void OnUpdateClearSelection(CCmdUI& ui);
    void OnClearMarks();
    void OnUpdateClearMarks(CCmdUI& ui);
    void OnNormalize();
    void OnRefresh();
    void OnRadialSpectrum();
    void OnOriginProfile();
    void OnPeaks();
    void OnUpdateHasSpectrum(CCmdUI& ui);
    void OnUpdateHasLength(CCmdUI& ui);
    void BackFourier();
    vldv::spectra::spectrum_curve_source curveSource();
    void openCurve(const std::optional<SPMDataStream>& curve);

    vldv::spectra::shown_spectrum spectrum;
    vldv::spectra::spectrum_control control;
    CScale scale;
    vldv::view::window_fitter fitter;
    CPoint pressed;             ///< where the button went down
    std::size_t unmeasured = 0; ///< samples that went into the spectrum as they are
    bool isClick = false;       ///< and has not moved since
    bool isWriting = false;     ///< the image gets what the spectrum shows already
    bool isRenderPending = false;
};
