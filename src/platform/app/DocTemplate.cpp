#include "platform/app/DocTemplate.h"

#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "resources/strings.h"

#include <algorithm>

using namespace vldv;

namespace {

template <class T>
std::unique_ptr<T> made(const std::string& name)
{
    const CRuntimeClass* const found = find_runtime_class(name);
    std::unique_ptr<CCmdTarget> object = found ? found->create() : nullptr;
    T* const typed = dynamic_cast<T*>(object.get());
    if (!typed) return nullptr;
    object.release();
    return std::unique_ptr<T>(typed);
}

} // namespace

CDocTemplate::CDocTemplate(unsigned id_, std::string documentClass_, std::string frameClass_, std::string viewClass_)
    : id(id_),
      documentName(std::move(documentClass_)),
      frameName(std::move(frameClass_)),
      viewName(std::move(viewClass_))
{
}

CDocTemplate::~CDocTemplate() = default;

std::string CDocTemplate::GetDocString(document_string field) const
{
    // The resource holds all texts of a template, one a line, in the order of `document_string`.
    std::string_view rest = string_resource(id);
    for (int i = 0; i < field; ++i) rest.remove_prefix(std::min(rest.find('\n') + 1, rest.size()));
    return std::string(rest.substr(0, rest.find('\n')));
}

CDocument* CDocTemplate::CreateNewDocument()
{
    std::unique_ptr<CDocument> document = made<CDocument>(documentName);
    if (!document) return nullptr;
    document->setOwner(this);
    document->setTemplate(this);
    opened.push_back(std::move(document));
    return opened.back().get();
}

void CDocTemplate::deleteDocument(CDocument* document)
{
    std::erase_if(opened, [&](const std::unique_ptr<CDocument>& each) { return each.get() == document; });
}

void CDocTemplate::documentClosed(CDocument& document)
{
    const auto found = std::ranges::find(opened, &document, &std::unique_ptr<CDocument>::get);
    if (found == opened.end()) return;
    // The document may be in the middle of one of its own functions: it is only taken off the list here, and freed
    // between two events.
    std::unique_ptr<CDocument> closed = std::move(*found);
    opened.erase(found);
    if (CWinApp* const app = AfxGetApp()) app->disposeDocument(std::move(closed));
}

CFrameWnd* CDocTemplate::createFrame(CDocument* document, const std::string& view, unsigned menuId,
                                     const std::string& frameClass_)
{
    CWinApp* const app = AfxGetApp();
    std::unique_ptr<CFrameWnd> frame = made<CFrameWnd>(frameClass_.empty() ? frameName : frameClass_);
    std::unique_ptr<CView> pane = made<CView>(view);
    if (!app || !frame || !pane) return nullptr;
    CView* const attached = pane.get();
    CFrameWnd* const added = app->addFrame(std::move(frame));
    added->LoadFrame(this, menuId, std::move(pane));
    if (document) document->AddView(attached);
    return added;
}

CFrameWnd* CDocTemplate::CreateNewFrame(CDocument* document, CFrameWnd*) { return createFrame(document, viewName, id); }

void CDocTemplate::InitialUpdateFrame(CFrameWnd* frame, CDocument*, bool makeVisible)
{
    if (CView* const view = frame->GetActiveView()) view->OnInitialUpdate();
    frame->OnUpdateFrameTitle(true);
    // With a second frame the first one gets a number as well.
    if (const CDocument* const document = frame->GetActiveView() ? frame->GetActiveView()->GetDocument() : nullptr)
        CFrameWnd::numberFrames(*document);
    if (makeVisible) frame->ActivateFrame();
}

match_confidence CDocTemplate::MatchDocType(const wchar_t*, CDocument*& match)
{
    match = nullptr;
    return match_confidence::noAttempt;
}
