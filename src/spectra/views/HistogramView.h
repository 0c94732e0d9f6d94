#pragma once
#include "platform/draw/part_control.h"
#include "spectra/figures/bar_chart.h"
#include "spectra/figures/delimiter_control.h"
#include "spectra/figures/histogram.h"
#include "view/ImageView.h"
#include "vldv_api.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// How often each height of an image occurs: bars over the values, and two delimiters that tell the share of the
/// samples between them. What was not measured is not counted.
class VLDV_API CHistogramView : public CImageView {
public:
    CHistogramView();
    ~CHistogramView() override;

    const char* viewKind() const override { return "CHistogramView"; }
    std::string GetViewSection() override { return "HistogramView"; }

    /// There are samples.
    bool IsGood() const noexcept { return hasBars(); }
    const vldv::spectra::height_histogram& getHistogram() const noexcept { return histogram; }
    const vldv::spectra::delimiters& getDelimiters() const noexcept { return control.shares(); }
    const std::wstring& getText() const noexcept { return text; }

    // What the base asks
    unsigned getSourceWidth() override { return static_cast<unsigned>(displaySize.cx); }
    unsigned getSourceHeight() override { return static_cast<unsigned>(displaySize.cy); }
    void GetBestSize(int&, int&) override {}
    void GetAspectRatio(double& x, double& y) override;
    void GetOptionsList(SPMVar* vars, unsigned* count) override;
    void LoadData() override;
    void RefreshDisplay() override;
    void OnDrawData(CDC& dc) override;
    void OnDrawLegend(CDC& dc) override;
    void updateText() override;
    std::wstring GetClipboardText(bool) override { return text; }
    std::wstring GetExportFilters() override;
    void Export(int filter, const wchar_t* path) override;

    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnSize(CSize size) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnCaptureChanged() override;
    bool OnMouseWheel(unsigned flags, int delta, CPoint point) override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;

protected:
    /// The bars and what they stand over; empty without an image that has heights.
    virtual vldv::spectra::height_histogram makeHistogram();
    /// Of the values below the chart.
    virtual std::string valueUnits() const;
    static constexpr CSize firstSize{256, 128};
    /// Delimiters that the user has moved were let go.
    virtual void delimitersReleased() {}
    /// Asks for the bars anew and shows them.
    void rebuildHistogram();
    void putDelimiters(double first, double second);
    void setText(std::wstring text_) { text = std::move(text_); }
    const SPMDataStream* stream() const;
    /// How many bars the user wants; nothing: that is worked out.
    std::optional<unsigned> manualBars();
    /// The options of a histogram of something else than heights.
    std::vector<SPMVar> optionsWithoutAxis();
    /// Answers `GetOptionsList`.
    static void giveOptions(const std::vector<SPMVar>& all, SPMVar* vars, unsigned* count);

private:
    // Options
    void oh_update_text(const SPMVar& changed);
    void oh_reload(const SPMVar& changed);
    void oh_redraw_histogram(const SPMVar& changed);
    void oh_resize(const SPMVar& changed);

    // Data
    const VLAxis& valueAxis() const;
    bool hasBars() const noexcept { return !histogram.bins.empty(); }
    vldv::spectra::delimited_share share() const { return share_between(histogram, control.shares()); }

    // Size and drawing
    CSize storedSize();
    void keepSize(CSize size);
    void SetTextPos();
    void DrawHistogram(CDC& dc, CPoint origin);
    void drawDelimiters(CDC& dc);
    void drawText(CDC& dc);
    vldv::spectra::count_scale countScale() const;
    CRect delimiterRect(int number) const;
    void invalidateDelimiters();
    CRect axisRect() const; ///< with the numbers below the chart
    void showPart();
    void tellPointer(CPoint point);

    // Commands
    void OnRefresh();
    void OnCutoff();
    void OnUpdateCutoff(CCmdUI& ui);
    void OnViewResolution();
    void OnUpdateResolution(CCmdUI& ui);

    vldv::spectra::height_histogram counted;   ///< over values in the units of the image
    vldv::spectra::height_histogram histogram; ///< over values that read well
    std::string shownUnits;
    vldv::spectra::delimiter_control control;
    vldv::platform::part_control partControl; ///< part of the values that is shown
    std::wstring text;
    CRect textRect;
    CSize displaySize = firstSize;
};
