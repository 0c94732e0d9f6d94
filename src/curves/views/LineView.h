#pragma once
#include "curves/views/SectionView.h"

/// The profile of one row or column of a surface: a section with two ends that goes where the cursor leads it.
class VLDV_API CLineView : public CSectionView {
public:
    const char* viewKind() const override { return "CLineView"; }
    std::string GetViewSection() override { return "LineView"; }
    bool isLine() const override { return true; }
};
