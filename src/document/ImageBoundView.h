#pragma once

/// A view that is bound to one image of a document, as far as the document needs to know it.
class IImageBoundView {
public:
    virtual unsigned getImageNumber() const = 0;
    virtual void setImageNumber(unsigned image) = 0;
    /// Reads the view's options anew, as after a change of the image number.
    virtual void LoadOptions() = 0;
    /// Closes the window around the view; the view leaves its document before this returns.
    virtual void closeFrame() = 0;

protected:
    ~IImageBoundView() = default;
};
