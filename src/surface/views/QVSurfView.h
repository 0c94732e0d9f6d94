#pragma once
#include "surface/views/SurfMathView.h"
#include "vldv_api.h"

/// A surface in the quick view: small, with its scale mark alone unless its own options say more.
class VLDV_API CQVSurfView : public CSurfMathView {
public:
    const char* viewKind() const override { return "CQVSurfView"; }
    bool isQuickView() const override { return true; }
    std::string GetViewSection() override { return "QuickView"; }
    void GetOptionsList(SPMVar* vars, unsigned* count) override;
};
