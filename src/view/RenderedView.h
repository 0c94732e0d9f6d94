#pragma once
#include "view/ImageView.h"
#include "view/Scale.h"

/// A surface as a picture and nothing more: the sub-image through its colour scale, rendered 10 ms after the last
/// request and stretched into the display.
class CRenderedView : public CImageView {
public:
    const char* viewKind() const override { return "CSurfMathView"; }
    std::string GetViewSection() override { return "SurfaceView"; }
    unsigned getSourceWidth() override { return size(0); }
    unsigned getSourceHeight() override { return size(1); }
    void LoadData() override;
    void RefreshDisplay() override;
    void OnDrawData(CDC& dc) override;
    void OnTimer(unsigned id) override;
    CScale& getScale() noexcept { return scale; }

private:
    unsigned size(unsigned dimension) const;
    void render();

    CScale scale;
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
