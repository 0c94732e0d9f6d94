#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/StorageDocTemplate.h"
#include "document/kept_document.h"
#include "platform/FrameWnd.h"
#include "platform/paths.h"

#include <filesystem>

namespace {

enum command : unsigned {
    cmdRevert = 10025,
    cmdDelete = 10026,
    cmdShowAll = 10060,
    cmdSave = 57603,
    cmdSaveAs = 57604,
};

} // namespace

bool CStorageDoc::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    static constexpr command_row<CStorageDoc> rows[] = {
        {cmdSave, &CStorageDoc::OnFileSave, &CStorageDoc::OnUpdateRevert},
        {cmdSaveAs, &CStorageDoc::OnFileSaveAs},
        {cmdRevert, &CStorageDoc::OnFileRevert, &CStorageDoc::OnUpdateRevert},
        {cmdDelete, &CStorageDoc::OnFileDelete},
        {cmdShowAll, &CStorageDoc::OnShowAllImages},
    };
    return dispatch_command<CStorageDoc>(*this, rows, id, ui) || CDocument::OnCmdMsg(id, ui);
}

void CStorageDoc::OnUpdateRevert(CCmdUI& ui) { ui.Enable(IsModified() && !GetPathName().empty()); }
void CStorageDoc::OnFileSave() { DoSave(GetPathName().c_str(), true); }
void CStorageDoc::OnFileSaveAs() { DoSave(nullptr, true); }

void CStorageDoc::OnFileRevert()
{
    const bool isShown = !views().empty();
    {
        const kept_document kept(*this); // until the user knows why its windows went
        try {
            Revert();
        } catch (const CException& failure) {
            ReportSaveLoadException(GetPathName().c_str(), failure, false);
        }
    }
    if (isShown && views().empty() && autoDelete) OnCloseDocument();
}

void CStorageDoc::OnFileDelete()
{
    const std::filesystem::path file = platform::to_path(GetPathName());
    SetModifiedFlag(false);
    // The last view takes the document with it, so nothing of it is touched afterwards.
    std::vector<CFrameWnd*> frames;
    for (CView* view : views())
        if (CFrameWnd* frame = view->GetParentFrame()) frames.push_back(frame);
    for (CFrameWnd* frame : frames) frame->DestroyFrame();
    std::error_code error;
    std::filesystem::remove(file, error);
}

void CStorageDoc::OnShowAllImages()
{
    if (auto* const maker = dynamic_cast<CStorageDocTemplate*>(GetDocTemplate())) maker->ShowAllViews(this, true);
}
