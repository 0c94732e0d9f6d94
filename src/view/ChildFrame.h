#pragma once
#include "platform/app/FrameWnd.h"
#include "view/axes/SizeLine.h"
#include "vldv_api.h"

#include <string>
#include <vector>

class CImageView;
class CStorageDoc;

/// The strip of tabs over a view that chooses the sub-image or the bitmap of the image. The host shows it, 20 pixels
/// high.
struct CSubimgSwitch {
    static constexpr int height = 20;
    std::vector<std::wstring> names;
    int selected = 0;
    bool visible = false;
    bool operator==(const CSubimgSwitch&) const = default;
};

namespace vldv::view {

/// What a frame's title is put together from.
struct frame_title {
    std::wstring document{};
    bool isChanged = false;    ///< the document differs from its file
    bool isImage = false;      ///< the view shows one image of a document
    std::string description{}; ///< of the image
    unsigned imageIndex = 0, imageCount = 1;
    unsigned subImage = 0, subImageCount = 1;
    std::vector<std::string> subImageNames{};
    bool hasZoom = false;
    double zoomX = 1.0, zoomY = 1.0;
    int windowNumber = 0; ///< 0: none is shown
};
VLDV_API std::wstring title_text(const frame_title& parts);

/// Edges of a frame while the user drags them.
enum sizing_edge {
    sizeLeft = 1,
    sizeRight,
    sizeTop,
    sizeTopLeft,
    sizeTopRight,
    sizeBottom,
    sizeBottomLeft,
    sizeBottomRight
};
/// The frame's rectangle while `edge` is dragged to make it `wanted`: not below `smallest`, and from a corner with a
/// picture of `aspect` (width over height) inside `insets` around it.
VLDV_API CRect sized_frame(const CRect& wanted, int edge, CSize insets, CSize smallest, double aspect);

} // namespace vldv::view

/// The frame of every document window: titles it with image, sub-image and zoom, has the tabs that choose a sub-image,
/// and ties its size to the view's margins and shape.
class VLDV_API CChildFrame : public CFrameWnd {
public:
    /// Frame and view are there: fills the tabs.
    void OnInitImageView(CImageView* view);
    /// The view has loaded data: the tabs may have changed.
    void OnLoadData();
    /// The user chose a tab.
    void OnSubimageSelChange(int tab);
    std::wstring OnSubimageGetTooltip(int tab) const;
    const CSubimgSwitch& switchBar() const noexcept { return bar; }
    /// Both are there and fit each other.
    virtual bool GetImageViewAndDoc(CImageView*& view, CStorageDoc*& document) const;

    /// Asks first where something would be lost.
    void OnClose() override;
    void OnUpdateFrameTitle(bool addNumber) override;
    void OnResetToolbar() override;
    std::vector<vldv::toolbar_button> addedButtons() override;
    CRect viewRect() const override;
    /// Smallest outer size: the margins and a small picture.
    CSize OnGetMinMaxInfo() const;
    /// The rectangle to use while the user drags an edge.
    CRect OnSizing(int edge, const CRect& wanted) const;
    /// A drag of the frame begins: the size lines show over the client area until it ends.
    void OnNcLButtonDown();
    void OnCaptureChanged() override;
    bool isSizing() const noexcept { return sizing; }
    void OnNcLButtonDblClk();
    void RecalcLayout() override;

private:
    CSize insets() const;
    /// Of tabs and tools above the view.
    int stripsHeight() const noexcept { return (bar.visible ? CSubimgSwitch::height : 0) + toolbarHeight; }
    void changeHeight(int change);

    CSubimgSwitch bar;
    CSizeLine sizeLine;
    int toolbarHeight = 0;
    bool sizing = false;
    bool changingTab = false;
};

/// The frame of the quick view.
class VLDV_API CQVChildFrame : public CChildFrame {};
