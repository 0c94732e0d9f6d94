#pragma once
#include "view/ImageView.h"
#include "view/Scale.h"

/// A surface as a picture and its colour scale: the sub-image, rendered 10 ms after a request and stretched into the
/// display, and beside it a strip of the scale with the heights it stands for.
class CRenderedView : public CImageView {
public:
    CRenderedView();
    const char* viewKind() const override { return "CSurfMathView"; }
    std::string GetViewSection() override { return "SurfMathView"; }
    unsigned getSourceWidth() override { return size(0); }
    unsigned getSourceHeight() override { return size(1); }
    void LoadData() override;
    void RefreshDisplay() override;
    void GetOptionsList(SPMVar* vars, unsigned* count) override;
    void OnDrawData(CDC& dc) override;
    void OnDrawLegend(CDC& dc) override;
    void OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object) override;
    void OnSize(CSize size_) override;
    void OnTimer(unsigned id) override;
    CScale& getScale() noexcept { return scale; }

private:
    unsigned size(unsigned dimension) const;
    const VLAxis& valueAxis() const;
    void render();
    bool showsScale() const;
    bool isAbsolute() const { return static_cast<int>(options["scaling.z"]) == 1; }
    CRect scaleRect() const;
    /// Puts the strip's window where it belongs.
    void UpdateZScale();
    void oh_z_scale(const SPMVar& changed);
    void oh_scaling(const SPMVar& changed);

    CScale scale;
    int displayMin = 0, displayMax = 0; ///< raw values of the window drawn last
    bool isRenderPending = false;
    VLDIBImage picture; ///< one pixel a sample
};

/// The same for the quick view.
class CQVSurfView : public CRenderedView {
public:
    const char* viewKind() const override { return "CQVSurfView"; }
    bool isQuickView() const override { return true; }
    std::string GetViewSection() override { return "QuickView"; }
    void GetOptionsList(SPMVar* vars, unsigned* count) override;
};
