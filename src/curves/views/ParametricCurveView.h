#pragma once
#include "curves/figures/force/force_curve_stats.h"
#include "curves/figures/pairs/pair_marks.h"
#include "curves/figures/pairs/pair_pane.h"
#include "curves/figures/pairs/pair_source.h"
#include "platform/draw/part_control.h"
#include "view/ImageView.h"
#include "vldv_api.h"

#include <array>
#include <map>
#include <string>

/// A one-dimensional image over another one: each point a pair of samples with the same number. The other image is the
/// one that the parameter stream of the first names.
class VLDV_API CParametricCurveView : public CImageView {
public:
    CParametricCurveView();
    ~CParametricCurveView() override;

    const char* viewKind() const override { return "CParametricCurveView"; }
    std::string GetViewSection() override { return "ParametricCurveView"; }

    /// Both images hold samples.
    bool IsGood() const noexcept { return curves > 0; }
    unsigned getParamImageNumber() const noexcept { return paramImage; }
    /// Measures the image against `x`: against an image of the document that has its name and description, which takes
    /// the data of `x` with an undo step when it is another object, else against a new image.
    /// \return false, with nothing changed, without a document or for a stream without one dimension
    bool setXDataStream(const SPMDataStream& x);
    void setXDataStream(unsigned number) override;

    /// The mark less than `tolerance` pixels away both ways. \param mark  -1 without one; may be null
    bool FindMarkXY(CPoint at, int tolerance, int* mark) const;
    /// The value of the active curve at the pair that a mark stands on; NaN without one.
    double FindMarkY(int mark) const;
    const vldv::curves::pair_mark_set& getMarks() const noexcept { return marks; }
    const vldv::curves::pair_series& getActiveCurve() const noexcept { return active; }
    /// Of the active curve; cleared while they are not shown.
    force_curve_stats getStatistics() const;
    const std::wstring& getText() const noexcept { return text; }

    // What the base asks
    unsigned getSourceWidth() override { return static_cast<unsigned>(displaySize.cx); }
    unsigned getSourceHeight() override { return static_cast<unsigned>(displaySize.cy); }
    void GetBestSize(int&, int&) override {}
    void GetAspectRatio(double& x, double& y) override;
    void GetOptionsList(SPMVar* vars, unsigned* count) override;
    const SPMDataStream* getParameterStream() override;
    void LoadData() override;
    void RefreshDisplay() override;
    void OnDrawData(CDC& dc) override;
    void OnDrawLegend(CDC& dc) override;
    void updateText() override;
    std::wstring GetClipboardText(bool full) override;
    std::wstring GetExportFilters() override;
    void Export(int filter, const wchar_t* path) override;
    int GetDataSelection(VLPluginDataSelection* out, unsigned count) override;

    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnSize(CSize size) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnCaptureChanged() override;
    bool OnMouseWheel(unsigned flags, int delta, CPoint point) override;
    bool OnKeyDown(unsigned key) override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;

private:
    // Options
    void oh_axis(const SPMVar& changed);
    void oh_refresh_display(const SPMVar& changed);
    void oh_curve_stats(const SPMVar& changed);
    void oh_marks(const SPMVar& changed);
    void oh_resize(const SPMVar& changed);
    vldv::curves::pair_marks_mode marksMode() const;

    // Data
    /// The image of X, or null.
    const SPMDataStream* positions() const;
    vldv::curves::pair_source source() const;
    const VLAxis& axisX() const;
    const VLAxis& axisY() const;
    unsigned activeCurve() const noexcept;
    bool isShown(unsigned curve) const;
    bool showsStatistics() const;
    void tellStepOfX();
    void fill_parametric_curve_stats();
    force_curve_stats figuresOf(const vldv::curves::pair_series& series) const;

    // Size and drawing
    CSize storedSize();
    void Resize(int width, int height);
    void SetTextPos();
    void drawAgain();
    void drawCurves(CDC& dc, CPoint origin) const;
    void drawNames(CDC& dc) const;
    bool isDotted(unsigned curve) const;
    colorEntry colorOf(unsigned curve) const;
    void drawStatistics(CDC& dc) const;
    void draw_marks(CDC* dc);
    void drawTexts(CDC& dc);
    CPoint placeOf(int mark) const noexcept;
    void invalidateMark(int mark);
    void markMoved(int mark);
    void settleMarks();
    void SetDefaultCursor();
    void tellPointer(CPoint point);
    void showPart();
    CRect axisRect() const; ///< with the numbers along X

    // Commands
    void OnCopydataastext();
    void OnUpdateHasData(CCmdUI& ui);
    void OnTypeMarks();
    void OnUpdateTypeMarks(CCmdUI& ui);
    void OnSelectXCurve();
    void OnUpdateSelectXCurve(CCmdUI& ui);
    void OnShowOverOwnAxis();
    void OnUpdateShowOverOwnAxis(CCmdUI& ui);
    void OnForceanalysis();
    void OnUpdateForceanalysis(CCmdUI& ui);
    void OnAnalyseAllCurves();
    void OnUpdateAnalyseAll(CCmdUI& ui);
    void OnRefresh();
    std::string table() const;

    unsigned paramImage = static_cast<unsigned>(-1);
    unsigned curves = 0;
    vldv::curves::pair_series active;
    vldv::curves::pair_pane pane;
    vldv::curves::pair_mark_set marks;
    vldv::platform::part_control partControl; ///< part of the positions that is shown
    std::array<double, 4> markY{};
    std::map<unsigned, force_curve_stats> stats; ///< of the curves that were shown with them
    std::wstring text;
    CRect textRect;
    CSize displaySize{512, 320};
};
