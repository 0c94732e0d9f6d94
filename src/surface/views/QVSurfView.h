#pragma once
#include "surface/views/SurfMathView.h"

/// A surface in the quick view: small, with its scale mark alone unless its own options say more.
class CQVSurfView : public CSurfMathView {
public:
    const char* viewKind() const override { return "CQVSurfView"; }
    bool isQuickView() const override { return true; }
    std::string GetViewSection() override { return "QuickView"; }
    void GetOptionsList(SPMVar* vars, unsigned* count) override;
};
