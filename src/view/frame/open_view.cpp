#include "view/frame/open_view.h"

#include "document/StorageDoc.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/RuntimeClass.h"
#include "platform/app/WinApp.h"
#include "view/ImageView.h"

#include <algorithm>

namespace vldv::view {

namespace {

CDocTemplate* template_of(unsigned id)
{
    const CWinApp* const app = AfxGetApp();
    return app ? app->findTemplate(id) : nullptr;
}

} // namespace

bool can_open(unsigned templateId)
{
    const CDocTemplate* const maker = template_of(templateId);
    return maker && find_runtime_class(maker->viewClass());
}

CImageView* open_view_of(CImageView& from, unsigned image, unsigned templateId)
{
    if (!from.GetDocument() || !can_open(templateId)) return nullptr;
    CDocTemplate& maker = *template_of(templateId);
    CFrameWnd* const frame = maker.CreateNewFrame(from.GetDocument(), from.GetParentFrame());
    if (!frame) return nullptr;
    auto* const opened = dynamic_cast<CImageView*>(frame->GetActiveView());
    if (!opened) {
        frame->DestroyFrame();
        return nullptr;
    }
    // The image is chosen first: options list the axes of the image that is shown.
    opened->setImageNumber(image);
    opened->CDCView::LoadOptions(nullptr);
    return opened;
}

CImageView* open_view(CImageView& from, unsigned templateId)
{
    CImageView* const opened = open_view_of(from, from.getImageNumber(), templateId);
    if (!opened) return nullptr;
    opened->setSubImageNumber(from.getSubImageNumber());
    opened->SetParentView(&from);
    return opened;
}

void show_opened(CImageView& opened)
{
    CFrameWnd* const frame = opened.GetParentFrame();
    if (frame && frame->GetDocTemplate())
        frame->GetDocTemplate()->InitialUpdateFrame(frame, opened.GetDocument(), true);
}

void bring_inside(CFrameWnd& frame)
{
    CWinApp* const app = AfxGetApp();
    const CRect area = app ? app->host().frameArea() : CRect();
    if (area.IsRectEmpty()) return;
    const CRect now = frame.GetWindowRect();
    const CPoint corner{std::max(area.left, std::min(now.left, area.right - now.Width())),
                        std::max(area.top, std::min(now.top, area.bottom - now.Height()))};
    if (corner != now.TopLeft()) frame.MoveWindow(CRect(corner, now.Size()));
}

} // namespace vldv::view
