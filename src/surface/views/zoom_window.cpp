#include "surface/views/zoom_window.h"

#include "document/StorageDocTemplate.h"
#include "document/samples/point_counts.h"
#include "document/update_hints.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "surface/figures/image_crop.h"
#include "view/ImageView.h"
#include "view/image/stream_outline.h"

namespace vldv::surface {

CStorageDoc* zoom_document(const CImageView& surface)
{
    for (const CImageView* const child : surface.getChildViews())
        if (CStorageDoc* const shown = child->storageDoc(); shown && shown->isDisplayOnly()) return shown;
    return nullptr;
}

void open_zoom_window(CImageView& surface, const CRect& bounds)
{
    CStorageDoc* const source = surface.storageDoc();
    auto* const maker = dynamic_cast<CStorageDocTemplate*>(source ? source->GetDocTemplate() : nullptr);
    if (!maker || !source->isImageOk(surface.getImageNumber())) return;
    SPMDataStream part;
    view::copy_outline(part, source->getImage(surface.getImageNumber()));
    write_crop(part, source->getImage(surface.getImageNumber()), bounds);
    if (part.array_length() == 0) return;
    auto* const zoom = dynamic_cast<CStorageDoc*>(maker->CreateNewDocument());
    if (!zoom) return;
    zoom->AddNewImages(&part, 1);
    source->Derive(surface.getImageNumber(), *zoom);
    document::keep_part_of_points(*zoom, 0, *source, surface.getImageNumber());
    zoom->setDisplayOnly(true);
    maker->setOpeningImage(0);
    CFrameWnd* const frame = maker->CreateNewFrame(zoom, surface.GetParentFrame());
    if (!frame) return maker->deleteDocument(zoom);
    if (auto* const shown = dynamic_cast<CImageView*>(frame->GetActiveView())) shown->SetParentView(&surface);
    maker->InitialUpdateFrame(frame, zoom, true);
    surface.PositionWindowNearby(frame, 0, legendRight);
    if (auto* const shown = dynamic_cast<CDCView*>(frame->GetActiveView())) shown->bringFrameInside();
}

void refresh_zoom_window(const CImageView& surface, const CRect& bounds)
{
    CStorageDoc* const zoom = zoom_document(surface);
    const CStorageDoc* const source = surface.storageDoc();
    if (!zoom || zoom->getImagesNumber() == 0 || !source->isImageOk(surface.getImageNumber())) return;
    const bool isReshaped = write_crop(zoom->getImage(0), source->getImage(surface.getImageNumber()), bounds);
    document::keep_part_of_points(*zoom, 0, *source, surface.getImageNumber());
    zoom->revalidateImage(0);
    if (isReshaped) zoom->UpdateAllViews(nullptr, document::shape_hint(0));
    zoom->UpdateAllViews(nullptr, document::data_hint(0));
}

} // namespace vldv::surface
