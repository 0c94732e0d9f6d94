#pragma once
#include "platform/draw/geometry.h"

namespace vldv {

/// The view that enumerates features, as a surface that opens it sees it.
class IFeaturesSource {
public:
    /// Where it looks, samples of the image; before its first update, or with data to be loaded anew.
    virtual void setWorkingRect(const CRect& rect) = 0;

protected:
    ~IFeaturesSource() = default;
};

} // namespace vldv
