#pragma once
#include "vldv_api.h"

#include <functional>
#include <string>
#include <vector>

class CImageView;

/// Lets the user choose views of open images by small pictures of what they show.
class VLDV_API CImgOpSelectViewDialog {
public:
    /// \param from_  the view that asks, which is not offered
    /// \param offers_  which other views are; empty: all that show an image with samples
    CImgOpSelectViewDialog(const CImageView& from_, std::string title_, bool takesSeveral_,
                           std::function<bool(CImageView&)> offers_ = {});

    /// The views that can be chosen; of several on one image and sub-image the first.
    std::vector<CImageView*> offered() const;
    /// \return the user has chosen some
    bool DoModal();
    const std::vector<CImageView*>& selected() const noexcept { return views; }

private:
    const CImageView& from;
    std::string title;
    bool takesSeveral;
    std::function<bool(CImageView&)> offers;
    std::vector<CImageView*> views;
};
