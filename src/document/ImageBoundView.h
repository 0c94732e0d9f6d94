#pragma once
#include "vldv_api.h"

namespace vldv {

/// A view that is bound to one image of a document, as far as the document needs to know it.
class VLDV_API IImageBoundView {
public:
    virtual unsigned getImageNumber() const = 0;
    virtual void setImageNumber(unsigned image) = 0;
    /// Reads the view's options anew, as after a change of the image number.
    virtual void LoadOptions() = 0;
    /// A view that only lets files be looked through.
    virtual bool isQuickView() const { return false; }
    /// Name of its runtime class.
    virtual const char* viewKind() const { return ""; }
    /// Image that gives the X values of a view of pairs.
    virtual void setXDataStream(unsigned) {}
    /// An image is gone and later ones have moved up; called before the view's own number follows.
    virtual void imageRemoved(unsigned) {}
    /// Closes the window around the view; the view leaves its document before this returns.
    virtual void closeFrame() = 0;

protected:
    ~IImageBoundView() = default;
};

} // namespace vldv
