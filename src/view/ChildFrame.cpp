#include "view/ChildFrame.h"

#include "base/streams/rounding.h"
#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/app/WinApp.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "view/ImageView.h"
#include "view/panes/TextView.h"

#include <cmath>

using namespace vldv;

namespace {

/// "Bitmap" when the image has one to show, then the sub-images, as far as there is a choice.
std::vector<std::wstring> tab_names(const CStorageDoc& document, unsigned image, bool hasOverlay)
{
    std::vector<std::wstring> names;
    const unsigned count = document.getSubImagesNumber(image);
    if (hasOverlay) names.push_back(base::widen(string_resource(texts::overlayTab)));
    if (count < 2 && !hasOverlay) return names;
    const std::vector<smart_string>& own = document.getImage(image).subimage_names();
    for (unsigned i = 0; i < count; ++i) {
        const bool isNamed = i < own.size() && *own[i].c_str();
        names.push_back(base::widen(isNamed ? own[i].c_str() : std::to_string(i + 1).c_str()));
    }
    return names;
}

bool has_overlay(CImageView& view, const CStorageDoc& document)
{
    return view.supportsOverlay() && document.getImageOverlay(view.getImageNumber()) != nullptr;
}

} // namespace

namespace vldv::view {

std::wstring title_text(const frame_title& parts)
{
    std::string text = parts.isChanged ? base::narrow(CFrameWnd::changedMark) : std::string();
    text += base::narrow(parts.document);
    if (parts.isImage) {
        if (!parts.description.empty())
            text += "[" + parts.description;
        else if (parts.imageCount > 1)
            text += "[" + std::to_string(parts.imageIndex);
        if (parts.subImageCount > 1)
            text += ":" + (parts.subImage < parts.subImageNames.size() ? parts.subImageNames[parts.subImage]
                                                                       : std::to_string(parts.subImage + 1));
        text += "]"; // also where nothing was opened
    }
    if (parts.hasZoom) {
        // Display over source in percent. Where the sides differ and one of them is at 100, only the other one is told;
        // a picture at 100 both ways has no zoom to tell.
        const double x = base::round_half_up(parts.zoomX * 100.0), y = base::round_half_up(parts.zoomY * 100.0);
        if (std::fabs(x - y) > 1.0) {
            if (x == 100.0)
                text += base::formatted("(X/%.0f%%)", y / x * 100.0);
            else if (y == 100.0)
                text += base::formatted("(%.0f%%/Y)", x / y * 100.0);
            else
                text += base::formatted("(%.0f%%/%.0f%%)", x, y);
        } else if (x != 100.0 || y != 100.0) {
            text += base::formatted("(%.0f%%)", x);
        }
    }
    if (parts.windowNumber > 0) text += ":" + std::to_string(parts.windowNumber);
    return base::widen(text);
}

CRect sized_frame(const CRect& wanted, int edge, CSize insets, CSize smallest, double aspect)
{
    CSize size{std::max(wanted.Width(), smallest.cx), std::max(wanted.Height(), smallest.cy)};
    const bool isCorner =
        edge == sizeTopLeft || edge == sizeTopRight || edge == sizeBottomLeft || edge == sizeBottomRight;
    if (isCorner && aspect > 0.0) {
        // The picture keeps its shape inside what was dragged: the side that is relatively larger gives in.
        const double width = std::max(size.cx - insets.cx, 1), height = std::max(size.cy - insets.cy, 1);
        const double fitting = std::min(width, height * aspect);
        size.cx = std::max(smallest.cx, insets.cx + static_cast<int>(base::round_half_up(fitting)));
        size.cy = std::max(smallest.cy, insets.cy + static_cast<int>(base::round_half_up(fitting / aspect)));
    }
    // The edge that is not dragged stays.
    CRect out(wanted.TopLeft(), size);
    if (edge == sizeLeft || edge == sizeTopLeft || edge == sizeBottomLeft) out.OffsetRect(wanted.right - out.right, 0);
    if (edge == sizeTop || edge == sizeTopLeft || edge == sizeTopRight) out.OffsetRect(0, wanted.bottom - out.bottom);
    return out;
}

} // namespace vldv::view

bool CChildFrame::GetImageViewAndDoc(CImageView*& view, CStorageDoc*& document) const
{
    view = dynamic_cast<CImageView*>(GetActiveView());
    document = view ? view->storageDoc() : nullptr;
    return document && view->getImageNumber() < document->getImagesNumber();
}

void CChildFrame::OnInitImageView(CImageView*)
{
    OnResetToolbar();
    OnLoadData();
}

void CChildFrame::OnLoadData()
{
    CImageView* view = nullptr;
    CStorageDoc* document = nullptr;
    if (changingTab || !GetImageViewAndDoc(view, document)) return;
    const CSubimgSwitch before = bar;
    const bool overlay = has_overlay(*view, *document);
    bar.names = tab_names(*document, view->getImageNumber(), overlay);
    bar.visible = overlay || document->getSubImagesNumber(view->getImageNumber()) >= 2;
    bar.selected = static_cast<int>(view->getSubImageNumber());
    if (overlay) bar.selected = view->isOptionOn("ShowOverlay") ? 0 : bar.selected + 1;
    if (getPeer() && bar != before) { // data also reloads many times a second, under a drag of the scale
        getPeer()->setTabs(bar.names, bar.selected, bar.visible);
        if (bar.visible != before.visible) {
            changeHeight(bar.visible ? CSubimgSwitch::height : -CSubimgSwitch::height);
        }
    }
    RecalcLayout();
    OnUpdateFrameTitle(true);
}

/// Gives a strip its room, or takes it back, so that the view keeps its size.
void CChildFrame::changeHeight(int change)
{
    const CSize outer = GetWindowRect().Size();
    SetWindowSize({outer.cx, outer.cy + change});
}

void CChildFrame::OnResetToolbar()
{
    auto* const view = dynamic_cast<CDCView*>(GetActiveView());
    if (!view || !getPeer()) return;
    constexpr long largeTools = -2;
    enum { asMain, small, large };
    const long kind = view->GetToolbarIDs(nullptr, nullptr, nullptr);
    const bool isShown = kind != 0 && view->isOptionOn("toolbar");
    const int size = view->intOption("toolbar.size");
    const int before = toolbarHeight;
    toolbarHeight = getPeer()->setToolbar(isShown ? menuId() : 0, size == asMain ? kind == largeTools : size == large,
                                          isShown ? addedButtons() : std::vector<toolbar_button>());
    if (toolbarHeight == before) return;
    changeHeight(toolbarHeight - before);
    RecalcLayout();
}

std::vector<toolbar_button> CChildFrame::addedButtons()
{
    std::vector<toolbar_button> buttons;
    if (auto* const view = dynamic_cast<CDCView*>(GetActiveView())) view->OnResetToolbar(buttons);
    return buttons;
}

void CChildFrame::OnSubimageSelChange(int tab)
{
    CImageView* view = nullptr;
    CStorageDoc* document = nullptr;
    if (!GetImageViewAndDoc(view, document)) return;
    const unsigned count = document->getSubImagesNumber(view->getImageNumber());
    if (tab < 0 || count == 0) return;
    changingTab = true; // the strip is not rebuilt under the user's hand
    if (!has_overlay(*view, *document)) {
        view->setActiveSubimage(static_cast<unsigned>(tab) % count);
    } else if ((tab == 0) == view->isOptionOn("ShowOverlay")) {
        if (tab > 0) view->setActiveSubimage(static_cast<unsigned>(tab - 1) % count);
    } else {
        SPMVar changed = view->options["ShowOverlay"];
        changed = tab > 0 ? 0.0 : 1.0;
        changed.update_timestamp();
        view->options.set_var(changed);
    }
    changingTab = false;
    bar.selected = tab;
    OnUpdateFrameTitle(true);
}

std::wstring CChildFrame::OnSubimageGetTooltip(int tab) const
{
    return tab >= 0 && static_cast<std::size_t>(tab) < bar.names.size() ? bar.names[static_cast<std::size_t>(tab)]
                                                                        : std::wstring();
}

void CChildFrame::OnClose()
{
    auto* const results = dynamic_cast<CTextView*>(GetActiveView());
    if (!results || results->mayClose()) CFrameWnd::OnClose();
}

void CChildFrame::OnUpdateFrameTitle(bool addNumber)
{
    CView* const active = GetActiveView();
    const CDocument* const shown = active ? active->GetDocument() : nullptr;
    view::frame_title parts;
    parts.document = shown ? shown->GetTitle() : GetWindowText();
    parts.isChanged = shown && shown->isChanged();
    CImageView* view = nullptr;
    CStorageDoc* document = nullptr;
    if (GetImageViewAndDoc(view, document)) {
        const SPMDataStream& image = document->getImage(view->getImageNumber());
        parts.isImage = true;
        parts.description = image.get_description();
        parts.imageIndex = view->getImageNumber();
        parts.imageCount = document->getImagesNumber();
        parts.subImage = view->getSubImageNumber();
        parts.subImageCount = document->getSubImagesNumber(view->getImageNumber());
        for (const smart_string& name : image.subimage_names()) parts.subImageNames.emplace_back(name.c_str());
    }
    if (auto* const sized = dynamic_cast<CDCView*>(active)) {
        parts.hasZoom = true;
        sized->GetAspectRatio(parts.zoomX, parts.zoomY);
    }
    if (addNumber) parts.windowNumber = windowNumber();
    SetWindowText(view::title_text(parts));
}

CRect CChildFrame::viewRect() const
{
    CRect rect = GetClientRect();
    if (const int strips = stripsHeight()) rect.top = std::min(rect.top + strips, rect.bottom);
    return rect;
}

/// What lies around the picture: the view's margins, the tabs, the frame itself.
CSize CChildFrame::insets() const
{
    const auto* const view = dynamic_cast<CDCView*>(GetActiveView());
    CSize around{0, stripsHeight()};
    if (view) {
        around.cx += view->intOption("LeftMargin") + view->intOption("RightMargin");
        around.cy += view->intOption("TopMargin") + view->intOption("BottomMargin");
    }
    return getPeer() ? getPeer()->outerSize(around) : around;
}

CSize CChildFrame::OnGetMinMaxInfo() const
{
    const CSize around = insets();
    return {around.cx + view::smallestPicture, around.cy + view::smallestPicture};
}

CRect CChildFrame::OnSizing(int edge, const CRect& wanted) const
{
    const auto* const view = dynamic_cast<CDCView*>(GetActiveView());
    const CSize picture = view ? view->displayRect.Size() : CSize{};
    const double aspect = picture.cx > 0 && picture.cy > 0 ? static_cast<double>(picture.cx) / picture.cy : 0.0;
    return view::sized_frame(wanted, edge, insets(), OnGetMinMaxInfo(), aspect);
}

void CChildFrame::OnNcLButtonDown()
{
    sizing = true;
    if (!sizeLine.getPeer()) sizeLine.Create(this, window_kind::overlay);
    sizeLine.MoveWindow(viewRect());
    sizeLine.ShowWindow(true);
}

void CChildFrame::RecalcLayout()
{
    CFrameWnd::RecalcLayout();
    if (sizing) sizeLine.MoveWindow(viewRect());
}

void CChildFrame::OnCaptureChanged()
{
    if (!sizing) return;
    sizing = false;
    sizeLine.ShowWindow(false);
    Invalidate(true);
    if (GetActiveView()) GetActiveView()->Invalidate(true);
}

void CChildFrame::OnNcLButtonDblClk()
{
    if (auto* const view = dynamic_cast<CDCView*>(GetActiveView())) view->SwitchFullScreen();
}
