#pragma once
#include "curves/figures/curve_functions.h"
#include "curves/figures/curve_spectrum.h"
#include "curves/figures/display/curve_pane.h"
#include "curves/figures/display/section_marks.h"
#include "curves/figures/force/force_curve_stats.h"
#include "curves/figures/force/measured_curve.h"
#include "curves/figures/placed_points.h"
#include "curves/figures/profile.h"
#include "curves/figures/trend_line.h"
#include "curves/views/step_link.h"
#include "platform/draw/part_control.h"
#include "view/ImageView.h"
#include "view/image/SectionSource.h"
#include "vldv_api.h"

#include <optional>
#include <string>
#include <vector>

namespace vldv::curves {
struct figure_pane;
}

/// The view of curves: of a one-dimensional image, of a line through a surface or a volume. Each sub-image gives a
/// curve; the active one is what marks, figures and the spectrum refer to.
class VLDV_API CSectionView : public CImageView, public vldv::ISection {
public:
    CSectionView();
    ~CSectionView() override;

    const char* viewKind() const override { return "CSectionView"; }
    std::string GetViewSection() override { return "SectionView"; }

    // Points of the section: indices into the image, one a dimension
    /// Appends points of zeros where `index` is behind the last one. Does not reload.
    template <class... Coordinates>
    void SetPoint(unsigned index, Coordinates... coordinates)
    {
        setPoint(index, {static_cast<std::int32_t>(coordinates)...});
    }
    void setPoint(unsigned index, const vldv::curves::grid_point& point);
    /// Copies at most `capacity` coordinates; nothing of a point that is not there.
    void GetPoint(unsigned index, std::int32_t* out, unsigned capacity) const;

    const vldv::curves::profile& getSection() const noexcept { return section; }
    const vldv::curves::section_mark_set& getMarks() const noexcept { return marks; }
    /// The texts below the curves; the second one is that of the spectrum.
    const std::wstring& getText() const noexcept { return text; }
    const std::wstring& getSpectrumText() const noexcept { return spectrumLine; }
    /// The curves alone, where they stand in the window.
    void drawCurvesOn(CDC& dc) const { drawCurves(dc, displayRect.TopLeft(), false); }
    /// Puts the crossbar's upright line at a share of the curve, as the other end of a link does.
    void putCrossbar(double share);
    vldv::curves::step_link& stepLink() noexcept { return steps; }
    /// Applies a function to all curves and opens what it gives as a document.
    void CallMathFunction(vldv::curves::curve_function function, void* parameter);

    // ISection
    CImageView& sectionView() override { return *this; }
    CSize sourceSize() const override;
    unsigned getPointsNumber() const override { return static_cast<unsigned>(points.size()); }
    CPoint getSectionPoint(unsigned index) const override;
    void setSectionPoint(unsigned index, CPoint point) override { SetPoint(index, point.x, point.y); }
    bool isLine() const override { return false; }
    bool isHorizontal() const override;
    void reloadSection() override;
    void drawOn(CImageView& surface, CDC& dc, int shadow, int size, const CPen& line, const CPen& under,
                bool withMarks) override;
    void setStepOrigin(const vldv::step_origin& origin) override { steps.setOrigin(origin); }

    // What the base asks
    unsigned getSourceWidth() override { return static_cast<unsigned>(wantedSize().cx); }
    unsigned getSourceHeight() override { return static_cast<unsigned>(wantedSize().cy + spectrumHeight()); }
    void GetBestSize(int& cx, int& cy) override;
    void CountDisplayRect() override;
    void GetOptionsList(SPMVar* vars, unsigned* count) override;
    void LoadData() override;
    void showSubImage() override;
    void RefreshDisplay() override;
    void OnDrawData(CDC& dc) override;
    void OnDrawLegend(CDC& dc) override;
    void updateText() override;
    std::wstring GetClipboardText(bool full) override;
    std::wstring GetExportFilters() override;
    void Export(int filter, const wchar_t* path) override;
    int GetDataSelection(VLPluginDataSelection* out, unsigned count) override;
    void getSelectionCopy(SPMDataStream& target, const VLPluginDataSelection* list, unsigned count) override;

    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnActivateView(bool activates, CView* entered, CView* left) override;
    void imageRemoved(unsigned removed) override { steps.imageRemoved(removed); }
    void OnFrameClosed() override;
    void OnSize(CSize size) override;
    void OnTimer(unsigned id) override;
    bool OnMouseWheel(unsigned flags, int delta, CPoint point) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnCaptureChanged() override;
    bool OnKeyDown(unsigned key) override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;
    void OnCommandMessage(const char* id, CVarListDlg* dialog) override;

private:
    // Options
    void oh_refresh_display(const SPMVar& changed);
    void oh_reload(const SPMVar& changed);
    void oh_resize(const SPMVar& changed);
    void oh_update_text(const SPMVar& changed);
    void oh_textvspace(const SPMVar& changed);
    void oh_z_scaling(const SPMVar& changed);
    void oh_marks_mode(const SPMVar& changed);
    void oh_fcstat(const SPMVar& changed);
    void oh_fcmin(const SPMVar& changed);
    void oh_fcvalley(const SPMVar& changed);
    void oh_trend(const SPMVar& changed);
    vldv::curves::marks_mode marksMode() const;
    std::optional<vldv::curves::fixed_heights> fixedHeights() const;
    /// Keeps what a fixed range would be of the curves as they are.
    void storeFixedHeights(double range, double start, std::string units);

    // Data
    const SPMDataStream* stream() const;
    bool hasCurves() const;
    void takeCurves();
    void measureCurves();
    /// Of the dimension along which the curves run, and of the values, as the options choose.
    const VLAxis& positionAxis() const;
    const VLAxis& valueAxis() const;
    unsigned activeCurve() const noexcept;
    /// Of others there is nothing that looks at neighbours or pairs of samples.
    bool isMeasuredThroughout(unsigned curve) const;
    /// Samples of the active curve, which may be fewer than those of others.
    std::uint32_t shownLength() const { return section.lengthOf(activeCurve()); }
    std::span<const std::int16_t> shownCurve() const { return section.curve(activeCurve()); }
    /// What is added to raw * scale for values: the axis's start, or less by the zero level of all samples.
    double zeroOffset() const;
    bool hasForceFigures() const;
    vldv::curves::measured_curve measuredCurve(unsigned curve) const;
    void measureForce();
    void fill_force_curve_statistics();
    void fill_force_curve_min();
    void fill_force_curve_valleys();
    void fill_trend_line_data();
    std::string forceHeader() const;
    /// \param found  of that curve
    std::string forceRow(unsigned curve, const force_curve_stats& found) const;
    void tellSurfaces(); ///< the other views of the document: this section shows something else now

    // Size
    int spectrumHeight() const;
    CSize storedSize();
    CSize wantedSize() const; ///< of the curves' pane
    bool hasFixedScale() const;
    void keepSize(); ///< what the user has made of the window
    void Resize(int width, int height);
    void fitParent();
    vldv::curves::mark_panes panes() const;

    // Part of the curves that is shown
    void showPart();
    CRect axisRect() const; ///< with the numbers along X
    std::string pointerText(CPoint point) const;
    void tellPointer(CPoint point);

    // Drawing
    void DoRefreshDisplay(bool quick);
    void measurePane();
    void fitFixedScale();
    struct shown_curve {
        unsigned index;
        bool isDotted;
        colorEntry color;
    };
    std::vector<shown_curve> shownCurves() const; ///< in the order in which they are drawn
    void drawCurves(CDC& dc, CPoint origin, bool quick) const;
    bool isQuickAlreadyFine() const;
    void drawNames(CDC& dc) const;
    void drawSpectrum(CDC& dc, CPoint origin, bool quick) const;
    void draw_marks(CDC& dc) const;
    void draw_crossbar(CDC& dc) const;
    void draw_step_pointer(CDC& dc) const;
    void drawSpectrumPane(CDC& dc, const CRect& shown);
    int columnOfMark(int mark, const CRect& shown) const;
    void drawUprightMark(CDC& dc, int mark, const CRect& shown) const;
    void drawMarkDot(CDC& dc, int mark, const CRect& shown) const;
    void drawTexts(CDC& dc);
    void drawFigures(CDC& dc);
    void drawDecorations(CDC& dc, const vldv::curves::figure_pane& on) const;
    void drawSpectrumAxes(CDC& dc, const CRect& below);
    double positionStart() const; ///< of the first sample, as the axis has it
    vldv::curves::pane_heights shownHeights() const;
    double heightStart() const;
    CRect textRect(int line) const;
    int rowHeight() const;
    double sampleOf(int mark) const noexcept;
    void updateMarkY(int mark);
    void marksMoved(int mark);
    void invalidateMark(int mark);
    void SetDefaultCursor();
    bool moveCrossbar(int dx, int dy);
    void showAsStep();
    void update_step_data() { steps.crossbarMoved(); }
    bool moveAcross(int side, int by);
    void moveVolumeMark();
    void drawMarkOn(const CImageView& surface, CDC& dc, int mark, int size) const;
    std::string marksText() const;
    std::string placeText() const;
    std::string spectrumTextAt(double bin) const;

    // Commands
    void OnLineDifferentiate();
    void OnCorrelation(unsigned id);
    void OnCurveForceanalysis();
    void OnUpdateForceanalysis(CCmdUI& ui);
    void OnAnalyseAllCurves();
    void OnUpdateAnalyseAll(CCmdUI& ui);
    void OnCurveHistogram();
    void OnCurveSelectXCurve();
    void OnUpdateSelectXCurve(CCmdUI& ui);
    void OnUpdateHistogram(CCmdUI& ui);
    void OnCurveCopydataastext();
    void OnViewResolution();
    void OnTypeMarks();
    void OnUpdateTypeMarks(CCmdUI& ui);
    void OnRefresh();
    void OnUpdateHasData(CCmdUI& ui);

    std::vector<vldv::curves::grid_point> points;
    vldv::curves::placed_points placed; ///< where they were put, in the image as it was then
    vldv::curves::profile section;
    CMinMaxInfo min_max;
    vldv::curves::curve_pane pane;
    vldv::curves::section_mark_set marks;
    vldv::curves::curve_spectrum spectrum;
    vldv::curves::trend_line trend;
    force_curve_stats stats;
    std::wstring text, spectrumLine;
    int textRows = 1; ///< below the curves, as they were drawn last
    vldv::curves::step_link steps{*this};
    vldv::platform::part_control partControl; ///< part of the curves that is shown
    CSize displaySize{512, 160};
    bool isSizing = false;
};
