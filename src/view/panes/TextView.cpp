#include "view/panes/TextView.h"

#include "platform/app/DocTemplate.h"
#include "platform/app/Document.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "resources/frame_templates.h"

using namespace vldv;

namespace {

constexpr std::wstring_view lineEnd = L"\r\n";

std::wstring with_line_ends(const std::wstring& source)
{
    std::wstring out;
    for (std::size_t i = 0; i < source.size(); ++i) {
        if (source[i] == L'\r' || source[i] == L'\n') {
            if (source[i] == L'\r' && i + 1 < source.size() && source[i + 1] == L'\n') ++i;
            out += lineEnd;
        } else {
            out += source[i];
        }
    }
    return out;
}

std::wstring_view first_line(std::wstring_view text) { return text.substr(0, text.find(lineEnd)); }

} // namespace

void CTextView::appendText(const std::wstring& more)
{
    std::wstring added = with_line_ends(more);
    if (!text.empty()) {
        if (!text.ends_with(lineEnd)) text += lineEnd;
        // A table with the same heading goes on in the one that is there: its heading is left out.
        if (first_line(added) == first_line(text))
            added.erase(0, std::min(first_line(added).size() + lineEnd.size(), added.size()));
    }
    text += added;
    isKept = false;
    if (getPeer()) getPeer()->setText(text);
}

void CTextView::Clear()
{
    text.clear();
    isKept = true;
    if (getPeer()) getPeer()->setText(text);
}

bool CTextView::mayClose()
{
    CWinApp* const app = AfxGetApp();
    if (isKept || !app) return true;
    constexpr std::size_t close = 1;
    const auto answer =
        app->host().ask({"The results in this window were neither saved nor copied, and are lost with it.",
                         {"&Keep the window", "&Close it"},
                         0});
    return answer == close;
}

std::wstring CTextView::selectedText() const { return getPeer() ? getPeer()->selectedText() : std::wstring(); }

void CTextView::OnInitialUpdate()
{
    if (getPeer()) getPeer()->setText(text);
}

CTextView* GetTextView(bool* created, CDocument* document)
{
    if (created) *created = false;
    if (!document) return nullptr;
    for (CView* view : document->views())
        if (auto* found = dynamic_cast<CTextView*>(view)) return found;
    CWinApp* const app = AfxGetApp();
    CDocTemplate* const maker = app ? app->findTemplate(textFrame) : nullptr;
    CFrameWnd* const frame = maker ? maker->CreateNewFrame(document, nullptr) : nullptr;
    if (!frame) return nullptr;
    maker->InitialUpdateFrame(frame, document, true);
    if (created) *created = true;
    return dynamic_cast<CTextView*>(frame->GetActiveView());
}
