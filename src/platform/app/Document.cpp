#include "platform/app/Document.h"

#include "platform/app/FrameWnd.h"
#include "platform/app/View.h"
#include "platform/app/WinApp.h"
#include "platform/files/atomic_file.h"
#include "platform/files/paths.h"

#include <algorithm>
#include <span>

using namespace vldv;

namespace {

class file_archive : public CArchive {
public:
    file_archive(const std::wstring& path_, platform::atomic_file& file_) : CArchive(path_, true), file(file_) {}
    void Write(const void* bytes, std::size_t count) override
    {
        file.write({static_cast<const std::byte*>(bytes), count});
    }

private:
    platform::atomic_file& file;
};

} // namespace

CView::~CView()
{
    if (attachedTo) attachedTo->RemoveView(this);
}

CDocument::~CDocument()
{
    for (CView* view : attached) view->attachedTo = nullptr;
}

bool CDocument::OnNewDocument()
{
    DeleteContents();
    pathName.clear();
    modified = false;
    return true;
}

bool CDocument::OnOpenDocument(const wchar_t*) { return false; }

bool CDocument::OnSaveDocument(const wchar_t* path)
{
    const std::wstring target = platform::full_path(path);
    try {
        // All is written to a file beside the target first. Those who still need what the target holds are told when
        // nothing but the exchange is left to do; a failure before that has touched nothing.
        platform::atomic_file file(platform::to_path(target));
        file_archive archive(target, file);
        Serialize(archive);
        if (CWinApp* const app = AfxGetApp()) app->fileGoes(target);
        file.commit();
    } catch (const CException& failure) {
        ReportSaveLoadException(target.c_str(), failure, true);
        return false;
    } catch (const std::exception& failure) {
        ReportSaveLoadException(target.c_str(), CArchiveException(CArchiveException::generic, target, failure.what()),
                                true);
        return false;
    }
    SetModifiedFlag(false);
    return true;
}

void CDocument::OnCloseDocument()
{
    if (CWinApp* const app = AfxGetApp()) app->documentCloses(*this);
    DeleteContents();
    if (owner) owner->documentClosed(*this);
}

void CDocument::SetPathName(const wchar_t* path, int addToMRU)
{
    pathName = platform::full_path(path);
    embedded = false;
    SetTitle(platform::file_stem(pathName).c_str());
    if (CWinApp* app = AfxGetApp(); app && addToMRU) app->AddToRecentFileList(pathName);
}

void CDocument::SetTitle(const wchar_t* text) { title = text; }

void CDocument::updateFrameTitles() const
{
    for (const CView* view : attached)
        if (CFrameWnd* const frame = view->GetParentFrame()) frame->OnUpdateFrameTitle(true);
}

void CDocument::AddView(CView* view)
{
    attached.push_back(view);
    view->attachedTo = this;
}

void CDocument::RemoveView(CView* view)
{
    if (std::erase(attached, view) == 0) return;
    view->attachedTo = nullptr;
    if (attached.empty() && autoDelete) OnCloseDocument();
}

void CDocument::UpdateAllViews(CView* sender, std::uint32_t hint, const hint_object& object)
{
    // A view that is told may close others or open new ones: the walk goes over those of the beginning, and skips what
    // is gone.
    const std::vector<CView*> told = attached;
    for (CView* view : told)
        if (view != sender && std::ranges::find(attached, view) != attached.end()) view->OnUpdate(sender, hint, object);
}

void CDocument::ReportSaveLoadException(const wchar_t* path, const CException& failure, bool saving)
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    if (saving)
        app->host().messageBox(failure.what(), message_icon::warning);
    else
        app->reportFailure(path ? path : L"", failure.what());
}

void CDocument::moveViewToFront(const CView* view)
{
    const auto found = std::ranges::find(attached, view);
    if (found != attached.end()) std::rotate(attached.begin(), found, found + 1);
}
