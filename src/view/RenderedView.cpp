#include "view/RenderedView.h"

#include "document/StorageDoc.h"

namespace {

constexpr unsigned renderTimer = 5, renderDelay = 10; // milliseconds

} // namespace

unsigned CRenderedView::size(unsigned dimension) const
{
    const CStorageDoc* const shown = storageDoc();
    if (!shown || imageNumber >= shown->getImagesNumber()) return 0;
    const SPMDataStream& stream = shown->getImage(imageNumber);
    return dimension < stream.get_dimensions_number() ? stream.get_dimension(dimension).length : 0;
}

void CRenderedView::LoadData()
{
    CImageView::LoadData();
    RefreshDisplay();
}

/// A burst of changes is drawn once.
void CRenderedView::RefreshDisplay() { SetTimer(renderTimer, renderDelay); }

void CRenderedView::OnTimer(unsigned id)
{
    if (id != renderTimer) return;
    KillTimer(renderTimer);
    render();
    Invalidate(false);
}

void CRenderedView::render()
{
    const CStorageDoc* const shown = storageDoc();
    if (!shown || !shown->isImageOk(imageNumber) || shown->getImage(imageNumber).array_type() != SPM_ARRAY_INT16) {
        picture.Clear();
        return;
    }
    const int width = static_cast<int>(size(0)), height = static_cast<int>(size(1));
    if ((picture.width() != width || picture.height() != height) && !picture.Create(width, height, true)) return;
    const auto* samples = static_cast<const short*>(shown->getImageDataS(imageNumber, subImageNumber));
    const VLAxis& values = shown->getAxis(imageNumber, static_cast<unsigned>(int(options["AxisZ"])), unsigned(-1));
    scale.DrawImage(picture.bits().data(), samples, width * static_cast<int>(sizeof(short)), {width, height}, values,
                    false, false, nullptr, true, nullptr, nullptr);
}

void CRenderedView::OnDrawData(CDC& dc)
{
    if (!picture.Ok()) {
        dc.FillSolidRect(displayRect, static_cast<colorEntry>(int(options["background"])));
        return;
    }
    const CBitmap bitmap{.header = picture.header(), .bits = picture.bits().data()};
    // Rows of the bitmap count from the top, those of the source from the bottom.
    const CRect part(sourceRect.left, picture.height() - sourceRect.bottom, sourceRect.right,
                     picture.height() - sourceRect.top);
    const bool shrinks = displayRect.Width() < sourceRect.Width() || displayRect.Height() < sourceRect.Height();
    const int before = dc.SetStretchBltMode(shrinks ? HALFTONE : COLORONCOLOR);
    dc.StretchDIBits(displayRect, bitmap, part, SRCCOPY);
    dc.SetStretchBltMode(before);
}

void CQVSurfView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    static constexpr view::option_row own[] = {{"default_width,int,32", "192"}, {"default_height,int,32", "192"}};
    unsigned before = 0;
    CRenderedView::GetOptionsList(nullptr, &before);
    if (vars) CRenderedView::GetOptionsList(vars, count);
    view::list_options(own, before, vars, count);
}
