#include "platform/app/Clipboard.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "resources/commands.h"
#include "view/DCView.h"

using namespace vldv;

namespace {

/// A view prints for its lifetime, and may throw meanwhile.
class printing_state {
public:
    explicit printing_state(bool& flag_) : flag(flag_) { flag = true; }
    printing_state(const printing_state&) = delete;
    printing_state& operator=(const printing_state&) = delete;
    ~printing_state() { flag = false; }

private:
    bool& flag;
};

} // namespace

bool CDCView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    static constexpr command_row<CDCView> rows[] = {
        {commands::showLegend, &CDCView::OnShowLegend, &CDCView::OnUpdateShowLegend},
        {commands::copy, &CDCView::OnEditCopy},
        {commands::copyText, &CDCView::OnEditCopytext},
        {commands::addText, &CDCView::OnEditAddtext},
        {commands::preferences, &CDCView::OnViewPreferences},
        {commands::fullScreen, &CDCView::OnFullScreen},
        {commands::print, &CDCView::OnFilePrint},
        {commands::printDirect, &CDCView::OnFilePrintDirect},
        {commands::printPreview, &CDCView::OnFilePrintPreview},
        {commands::actualPixels, &CDCView::OnViewActualpixels, &CDCView::OnUpdateViewActualpixels},
    };
    return dispatch_command<CDCView>(*this, rows, id, ui) || CView::OnCmdMsg(id, ui);
}

void CDCView::OnEditCopy()
{
    flushTimers(); // what waits to be rendered belongs to the picture
    const open_clipboard clipboard;
    if (!clipboard || !getPeer()) return;
    const CRect client = GetClientRect();
    const std::unique_ptr<CDC> reference = getPeer()->clientDC();
    VLDIBImage picture;
    picture.Init(reference.get());
    if (!picture.Create(client.Width(), client.Height(), false)) return;
    CDC& dc = *picture.dc();
    dc.FillSolidRect(client, colorOption("background"));
    OnDraw(dc);
    clipboard->empty();
    clipboard->setBitmap(*dc.selectedBitmap());
}

print_job CDCView::printJob(bool asks)
{
    flushTimers(); // what waits to be rendered belongs on the sheet
    const CFrameWnd* const frame = GetParentFrame();
    const auto paint = [this](CDC& dc, int) {
        const printing_state state(printing);
        OnPrepareDC(dc, true);
        OnDraw(dc);
        return false;
    };
    return {frame ? frame->GetWindowText() : std::wstring(), paint, asks};
}

void CDCView::OnFilePrint()
{
    if (CWinApp* const app = AfxGetApp()) app->host().print(printJob(true));
}

void CDCView::OnFilePrintDirect()
{
    if (CWinApp* const app = AfxGetApp()) app->host().print(printJob(false));
}

void CDCView::OnFilePrintPreview()
{
    if (CWinApp* const app = AfxGetApp()) app->host().previewPrint(printJob(false));
}

void CDCView::OnEditCopytext()
{
    flushTimers(); // what waits to be worked out belongs in the text
    const open_clipboard clipboard;
    if (!clipboard) return;
    clipboard->empty();
    clipboard->setText(GetClipboardText(true));
}

void CDCView::OnEditAddtext()
{
    flushTimers(); // what waits to be worked out belongs in the text
    const open_clipboard clipboard;
    if (!clipboard) return;
    std::wstring joined = clipboard->text().value_or(std::wstring());
    if (!joined.empty() && joined.back() != L'\n') joined += L"\r\n"; // each text has rows of its own
    joined += GetClipboardText(false);
    clipboard->empty();
    clipboard->setText(joined);
}
