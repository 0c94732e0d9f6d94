#pragma once
#include "platform/draw/geometry.h"

namespace vldv {

/// The view that enumerates features, as a surface that opens it sees it.
class IFeaturesSource {
public:
    /// Where it looks, samples of the image; before its first update, or with data to be loaded anew.
    virtual void setWorkingRect(const CRect& rect) = 0;

    /// Opens the table of the features beside the view.
    virtual void showTable() = 0;

    // What was painted since the image last changed is taken back before the image's own steps are.
    virtual bool canUndoPainting() const = 0;
    virtual bool canRedoPainting() const = 0;
    virtual void undoPainting() = 0;
    virtual void redoPainting() = 0;

protected:
    ~IFeaturesSource() = default;
};

} // namespace vldv
