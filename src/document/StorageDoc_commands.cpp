#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/StorageDocTemplate.h"
#include "document/history/DocumentHold.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "resources/commands.h"

using namespace vldv;

namespace {

void warn(const std::wstring& file, const char* what)
{
    if (CWinApp* const app = AfxGetApp()) app->host().messageBox(base::narrow(file) + what, message_icon::warning);
}

enum discard_answer : std::size_t { keepChanges, discardChanges };

question discard_question(const std::wstring& title)
{
    return {.text = "Discard the changes to \"" + base::narrow(title) + "\" since it was opened or saved?",
            .answers = {"&Keep them", "&Discard"},
            .escape = keepChanges};
}

} // namespace

bool CStorageDoc::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    static constexpr command_row<CStorageDoc> rows[] = {
        {commands::save, &CStorageDoc::OnFileSave, &CStorageDoc::OnUpdateSave},
        {commands::saveAs, &CStorageDoc::OnFileSaveAs},
        {commands::revert, &CStorageDoc::OnFileRevert, &CStorageDoc::OnUpdateRevert},
        {commands::deleteFile, &CStorageDoc::OnFileDelete},
        {commands::showAll, &CStorageDoc::OnShowAllImages},
    };
    return dispatch_command<CStorageDoc>(*this, rows, id, ui) || CDocument::OnCmdMsg(id, ui);
}

void CStorageDoc::OnUpdateRevert(CCmdUI& ui)
{
    // Behind a save, a step back that empties the history clears the flag of a document that differs from its file.
    ui.Enable((IsModified() || isChanged()) && !GetPathName().empty());
}

bool CStorageDoc::isUnfiled() const
{
    return !images.empty() && !incomplete && !displayOnly && !isOfDamagedFile() && !GetPathName().empty() &&
           !knownFiles.knows(GetPathName());
}

void CStorageDoc::OnUpdateSave(CCmdUI& ui)
{
    // A recording can be saved as it is, also behind changes that were taken back; a copy asks for its name.
    ui.Enable(isChanged() || isUnfiled() || (IsModified() && !GetPathName().empty()));
}

void CStorageDoc::OnFileSave() { Save(); }
/// What only shows another document goes on doing so: its file is a copy.
void CStorageDoc::OnFileSaveAs() { DoSave(nullptr, !displayOnly); }

void CStorageDoc::OnFileRevert()
{
    CWinApp* const app = AfxGetApp();
    if (app && isChanged() && app->host().ask(discard_question(GetTitle())) != discardChanges) return;
    const bool isShown = !views().empty();
    {
        const CDocumentHold kept(*this); // until the user knows why its windows went
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
    const std::wstring file = document::file_to_delete(knownFiles, GetPathName());
    const std::wstring changed = document::changed_file(knownFiles, GetPathName());
    if (file.empty() && !changed.empty())
        return warn(changed, " has been changed since this document was opened or saved, and is not deleted.");
    if (file.empty() && isOfDamagedFile() && GetPathName() == damagedFile)
        return warn(damagedFile,
                    " is damaged, and what could not be read of it may yet be rescued. It is not deleted.");
    SetModifiedFlag(false);
    // The last view takes the document with it, so nothing of it is touched afterwards.
    std::vector<CFrameWnd*> frames;
    for (CView* view : views())
        if (CFrameWnd* frame = view->GetParentFrame()) frames.push_back(frame);
    for (CFrameWnd* frame : frames) frame->DestroyFrame();
    CWinApp* const app = AfxGetApp();
    if (!app || file.empty()) return;
    app->fileGoes(file);
    if (!app->host().moveToTrash(file)) return warn(file, " could not be moved to the trash, and stays where it is.");
    app->RemoveFromRecentFileList(file);
    app->host().setStatusText(file + L" was moved to the trash");
}

void CStorageDoc::OnShowAllImages()
{
    if (auto* const maker = dynamic_cast<CStorageDocTemplate*>(GetDocTemplate())) maker->ShowAllViews(this, true);
}
