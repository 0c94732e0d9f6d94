#include "view/frame/ImgOpSelectViewDialog.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "platform/dialogs/PictureChooser.h"
#include "view/DIBImage.h"
#include "view/ImageView.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace vldv;

namespace {

constexpr int longestSide = 128; // pixels of a small picture

/// What the view keeps of its picture, no larger than that; without one, no pixels.
void draw_small(CPictureChooser::entry& entry, const CDCView& view)
{
    CDC* const from = view.GetMemDC();
    const CSize whole(view.GetBIH().biWidth, view.GetBIH().biHeight);
    if (!from || view.GetBits().empty() || whole.cx <= 0 || whole.cy <= 0) return;
    const double ratio = std::min(1.0, static_cast<double>(longestSide) / std::max(whole.cx, whole.cy));
    const auto scaled = [ratio](int length) { return std::max(1, static_cast<int>(std::lround(length * ratio))); };
    const CSize size(scaled(whole.cx), scaled(whole.cy));
    VLDIBImage small;
    small.Init(from);
    if (!small.Create(size.cx, size.cy, true) || !small.dc()) return;
    small.ReselectBitmap();
    small.dc()->SetStretchBltMode(HALFTONE);
    small.dc()->StretchBlt(CRect({0, 0}, size), *from, CRect({0, 0}, whole), SRCCOPY);
    entry.size = size;
    entry.pixels.resize(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
    for (int y = 0; y < size.cy; ++y) // rows from the lowest upwards
        std::memcpy(&entry.pixels[static_cast<std::size_t>(y * size.cx)],
                    small.bits().data() + static_cast<std::size_t>(size.cy - 1 - y) * small.stride(),
                    static_cast<std::size_t>(size.cx) * sizeof(std::uint32_t));
}

/// The image, the sub-image where there are several, and the document below.
std::string caption_of(const CImageView& view)
{
    const CStorageDoc& document = *view.storageDoc();
    const unsigned number = view.getImageNumber();
    const SPMDataStream& stream = document.getImage(number);
    std::string text = *stream.get_description() ? stream.get_description() : stream.get_name();
    if (document.getSubImagesNumber(number) > 1) text += base::formatted(":%u", view.getSubImageNumber() + 1);
    return text + "\n" + base::narrow(document.GetTitle());
}

bool has_samples(const CImageView& view)
{
    const CStorageDoc* const document = view.storageDoc();
    return document && view.getImageNumber() < document->getImagesNumber() &&
           document->isImageOk(view.getImageNumber());
}

bool shows_same(const CImageView& a, const CImageView& b)
{
    return a.storageDoc() == b.storageDoc() && a.getImageNumber() == b.getImageNumber() &&
           a.getSubImageNumber() == b.getSubImageNumber();
}

} // namespace

CImgOpSelectViewDialog::CImgOpSelectViewDialog(const CImageView& from_, std::string title_, bool takesSeveral_,
                                               std::function<bool(CImageView&)> offers_)
    : from(from_), title(std::move(title_)), takesSeveral(takesSeveral_), offers(std::move(offers_))
{
}

std::vector<CImageView*> CImgOpSelectViewDialog::offered() const
{
    std::vector<CImageView*> found;
    const CWinApp* const app = AfxGetApp();
    if (!app) return found;
    for (const auto& frame : app->frames()) {
        auto* const view = dynamic_cast<CImageView*>(frame->GetActiveView());
        if (!view || view == &from || view->isQuickView() || !has_samples(*view)) continue;
        if (offers && !offers(*view)) continue;
        if (std::ranges::none_of(found, [&](const CImageView* other) { return shows_same(*view, *other); }))
            found.push_back(view);
    }
    return found;
}

bool CImgOpSelectViewDialog::DoModal()
{
    views.clear();
    CWinApp* const app = AfxGetApp();
    const std::vector<CImageView*> choices = offered();
    if (!app || choices.empty()) return false;
    CPictureChooser chooser{title, takesSeveral, {}, {}};
    for (CImageView* const view : choices) {
        CPictureChooser::entry entry;
        entry.caption = caption_of(*view);
        draw_small(entry, *view);
        chooser.entries.push_back(std::move(entry));
    }
    if (!app->host().runPictureChooser(chooser)) return false;
    for (const std::size_t number : chooser.chosen)
        if (number < choices.size()) views.push_back(choices[number]);
    return !views.empty();
}
