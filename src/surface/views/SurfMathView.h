#pragma once
#include "surface/figures/measure/measurement_text.h"
#include "surface/figures/measure/statistics.h"
#include "surface/figures/overlay_bitmap.h"
#include "surface/figures/section_pens.h"
#include "surface/figures/selection_state.h"
#include "surface/tools/cursor_machine.h"
#include "surface/views/legend.h"
#include "surface/views/view_world.h"
#include "view/ImageView.h"
#include "view/Scale.h"
#include "view/scale/render_step.h"
#include "vldv_api.h"

#include <memory>
#include <vector>

namespace vldv {
class ISection;
}

/// The view of a surface: its heights in colours with axes, scale and legends, and over them what the user selects,
/// draws and measures.
class VLDV_API CSurfMathView : public CImageView {
public:
    CSurfMathView();
    ~CSurfMathView() override;

    const char* viewKind() const override { return "CSurfMathView"; }
    std::string GetViewSection() override { return "SurfMathView"; }
    bool supportsOverlay() override { return true; }
    /// Of the image; 1 where there are no 16-bit samples.
    unsigned getSourceWidth() override;
    unsigned getSourceHeight() override;
    void CountDisplayRect() override;
    void RefreshDisplay() override;
    void LoadData() override;
    void getBestScale(double* low, double* high, const char** units) override;
    std::wstring GetClipboardText(bool full) override;
    long GetToolbarIDs(unsigned* first, unsigned* second, unsigned* third) override;
    int GetDataSelection(VLPluginDataSelection* out, unsigned count) override;
    void getSelectionCopy(SPMDataStream& target, const VLPluginDataSelection* list, unsigned count) override;
    void GetOptionsList(SPMVar* vars, unsigned* count) override;
    void OnDrawData(CDC& dc) override;
    void OnDrawLegend(CDC& dc) override;
    /// Puts the scale's window where it belongs. \param reposition  shows or hides it too
    void UpdateZScale(bool reposition);
    /// The smallest region that covers what the state of the mouse draws now, client pixels.
    CRgn GetInvalidateRgn() const { return machine.invalidateRgn(); }
    /// The line of the status bar for the cursor over a sample.
    std::wstring GetMouseText(CPoint source) const;

    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnSize(CSize size) override;
    void OnTimer(unsigned id) override;
    void OnSetFocus() override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnCaptureChanged() override;
    bool OnKeyDown(unsigned key) override;
    bool OnKeyUp(unsigned key) override;
    void OnContextMenu(CPoint point) override;
    bool OnMouseWheel(unsigned flags, int delta, CPoint point) override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;

    /// The samples that give the range of the colours, corners in any order; an empty part, or all of the image: none.
    void setRegionOfInterest(CRect part);

    CScale& getScale() noexcept { return scale; }
    const vldv::surface::selection_state& getDrawn() const noexcept { return drawn; }
    /// The stream shown, or null.
    const SPMDataStream* stream() const;
    /// The samples of the active sub-image; empty without.
    vldv::surface::sample_frame shownFrame() const;
    /// The shown samples with the axes that the user chose, for figures.
    vldv::surface::measured_surface measured() const;
    /// As the options choose.
    const VLAxis& axisX() const { return axis("AxisX", 0); }
    const VLAxis& axisY() const { return axis("AxisY", 1); }
    /// Of the samples shown: an axis that falls is turned with them, so that larger samples are larger values.
    const VLAxis& valueAxis() const;
    vldv::surface::drawing_axes drawingAxes() const;
    /// All sections and profiles on this image and, with "SelectionSynchr", on similar ones.
    std::vector<vldv::ISection*> sections() const;
    /// The view of the document that enumerates features, or null.
    CImageView* featuresView() const;
    bool areMarksNumbered() const noexcept { return marksNumbered; }
    int getMarksStyle() const noexcept { return marksStyle; }
    /// A surface to measure the legend's texts on; null without a window.
    std::unique_ptr<CDC> legendDC() const;
    /// Shows another part of the image.
    void showPart(const CRect& window);
    /// The same where it is another one, with all that shows it.
    void moveTo(const CRect& window);
    /// Takes over what is selected on a similar image.
    void adoptSelection(const vldv::surface::selection_state& from);
    void updateStatistics();
    /// Updates the statistics once for all that changes within the delay.
    void updateStatisticsLater();
    /// Repaints the panel when it shows other rows of the measurement now.
    void refreshMeasureRows();
    void refreshZoomWindow();

private:
    static constexpr unsigned statisticsTimer = 213;

    // Options
    void oh_compact(const SPMVar& changed);
    void oh_additional_legend(const SPMVar& changed);
    void oh_z_scale(const SPMVar& changed);
    void oh_panel(const SPMVar& changed);
    void oh_statistics(const SPMVar& changed);
    void oh_z_scaling(const SPMVar& changed);
    void oh_length_axis(const SPMVar& changed);
    void oh_z_axis(const SPMVar& changed);
    void oh_reload(const SPMVar& changed);
    void oh_section_pens(const SPMVar& changed);
    void rebuildSectionPens();
    bool isCompact() const { return isOptionOn("CompactLegend"); }
    void sendShapeHint();

    // Data
    bool hasSamples() const;
    /// Samples of the active sub-image as the document has them; null without.
    const short* givenSamples() const;
    /// Samples of the active sub-image, turned when their axis falls.
    const short* samples() const;
    bool isTurned() const;
    const VLAxis& axis(const char* option, unsigned dimension) const;
    CRect roiRect() const;
    std::vector<vldv::surface::statistics_row> measureRows() const;
    CSize imageSize() const;
    CRect selectionBounds() const;

    // Drawing
    void render();
    void drawPicture(CDC& dc);
    void drawOverlay(CDC& dc, const BITMAPINFOHEADER& overlay);
    void drawSections(CDC& dc);
    void drawVolumeCross(CDC& dc);
    CRect scaleStrip() const;
    void drawZScale(CDC& dc);
    vldv::surface::legend_content legendContent() const;

    // What other changes mean
    void onNewData(CView* sender, std::uint32_t hint, const vldv::hint_object& object);
    void onNewSize(CView* sender, std::uint32_t hint, const vldv::hint_object& object);
    void onScaleChanged(CView* sender, std::uint32_t hint, const vldv::hint_object& object);
    void showText(const std::string& text);
    void onSectionChanged(CView* sender, std::uint32_t hint, const vldv::hint_object& object);
    void dropOutside(CSize whole);
    void dropClearedObject();
    /// It shows a part of its parent's image in a document of its own.
    bool isZoomWindow() const { return getParentView() && getParentView()->GetDocument() != GetDocument(); }
    void showMeasure(vldv::surface::measure_text measure);
    void remeasure();
    void zoomSource(double factor, CPoint around);

    // Palette kept with the image
    bool hasStoredPalette() const;
    /// The view has a scale of its own, and a stroke of the user's may have changed it.
    bool mayStorePalette() const;
    void storePalette();
    void renewStoredPalette();
    /// \param followed  the scale that others follow, which gets it too; null: none
    void loadStoredPalette(CScale* followed);
    void invertDisplay(bool on);

    // Commands
    void OnAutoRefresh();
    void OnUpdateAutoRefresh(CCmdUI& ui);
    void OnRefresh();
    void OnNormalize();
    void OnFileInfo();
    void OnUpdateFileInfo(CCmdUI& ui);
    void OnShowZScale();
    void OnUpdateShowZScale(CCmdUI& ui);
    void OnCompact();
    void OnUpdateCompact(CCmdUI& ui);
    void OnHighlight();
    void OnUpdateHighlight(CCmdUI& ui);
    void OnInvert();
    void OnUpdateInvert(CCmdUI& ui);
    void OnRemoveMarks();
    void OnUpdateRemoveMarks(CCmdUI& ui);
    void OnRemoveCurves();
    void OnUpdateRemoveCurves(CCmdUI& ui);
    void OnNumbered();
    void OnUpdateNumbered(CCmdUI& ui);
    void OnMarkStyle(unsigned id);
    void OnUpdateMarkStyle(CCmdUI& ui);
    void OnSelectRoi();
    void OnClearRoi();
    void OnUpdateClearRoi(CCmdUI& ui);
    void OnCursorMode(unsigned id);
    void OnUpdateCursorMode(CCmdUI& ui);
    void OnInverseSelection();
    void OnUpdateInverseSelection(CCmdUI& ui);
    void OnCurveToSection();
    void OnUpdateCurveToSection(CCmdUI& ui);
    void OnMeasureDistance();
    void OnUpdateMeasureDistance(CCmdUI& ui);
    void OnSaveDecorations();
    void OnLoadDecorations();
    void OnZoomWindow();
    void OnUpdateZoomWindow(CCmdUI& ui);
    void OnOpenView(unsigned id);
    void OnUpdateOpenView(CCmdUI& ui);
    void OnEnumFeatures();
    void OnUpdateEnumFeatures(CCmdUI& ui);
    void OnResolution();
    void OnUpdateHasSamples(CCmdUI& ui);
    void OnCalibrationCurve();
    void OnUpdateCalibrationCurve(CCmdUI& ui);
    void OnResample();
    void OnFindSteps();
    void OnUpdateFindSteps(CCmdUI& ui);
    void OnRememberPalette();
    void OnUpdateRememberPalette(CCmdUI& ui);

    vldv::surface::selection_state drawn;
    vldv::surface::view_world world{*this};
    vldv::surface::cursor_machine machine{drawn, world};
    CScale scale;
    vldv::surface::section_pens pens;
    std::vector<vldv::surface::statistics_row> statisticsRows; ///< of the frame
    std::vector<vldv::surface::statistics_row>
        panelRows;   ///< of the measurement, as the panel was last told to show them
    CSize knownSize; ///< of the image when it was last looked at
    struct shrunken_picture {
        CSize before, display; ///< image and picture until the window would have grown out of the main one
        CSize to;              ///< picture since then
    };
    std::optional<shrunken_picture> shrunken;
    CRect sectionBounds; ///< of the section shown last, samples of this image
    bool autoRefresh = true;
    bool marksNumbered = true;
    int marksStyle = 0;
    std::string knownPalette;           ///< text of the image's palette that the scale was given or has given last
    bool paletteDirty = false;          ///< the scale differs from the one stored with the image
    bool invertedDisplay = false;       ///< the scale runs backwards because of the option "invert"
    int displayMin = 0, displayMax = 0; ///< raw samples with the first and last colour
    mutable std::vector<std::int16_t> turnedSamples; ///< kept until the data change
    mutable VLAxis turnedAxis;
    vldv::view::window_fitter fitter;
    vldv::view::range_keeper shownRange;
    std::vector<vldv::primitives::sample_run> unmeasured; ///< of the frame, in rising order; kept until the data change
    vldv::surface::overlay_bitmap overlayBitmap;
    bool isRenderPending = false;
};
