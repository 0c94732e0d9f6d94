#include "entry/save_documents.h"

#include "base/text.h"
#include "document/StorageDoc.h"
#include "platform/DocTemplate.h"
#include "platform/VarListDlg.h"
#include "platform/WinApp.h"
#include "platform/interface_directory.h"
#include "vldv.h"

#include <fstream>

namespace {

std::vector<CDocument*> modified_documents(const CWinApp& app)
{
    std::vector<CDocument*> found;
    for (const CDocTemplate* maker : app.docTemplates())
        for (const std::unique_ptr<CDocument>& document : maker->documents())
            if (document->IsModified()) found.push_back(document.get());
    return found;
}

/// Under its own path; one that has none, as a copy, asks for it.
bool save(CDocument& document)
{
    if (auto* const storage = dynamic_cast<CStorageDoc*>(&document); storage && document.GetPathName().empty())
        return storage->DoSave(nullptr, true);
    return document.OnSaveDocument(document.GetPathName().c_str());
}

/// Sets all variables of the dialog for its two buttons.
class choose_all : public CVarListDlgHandler {
public:
    void OnCommandMessage(const char* id, CVarListDlg* dialog) override
    {
        const std::string_view command(id);
        if (command != "select_all" && command != "deselect_all") return;
        for (unsigned i = 0; i < dialog->list().get_size(); ++i)
            dialog->list().set_var(dialog->list().get_var(i).get_name(), command == "select_all" ? "true" : "false");
    }
};

} // namespace

namespace entry {

save_outcome save_documents(CWnd* parent)
{
    CWinApp* const app = AfxGetApp();
    if (!app) return save_outcome::done;
    const std::vector<CDocument*> modified = modified_documents(*app);
    if (modified.empty()) return save_outcome::done;
    std::vector<SPMVar> rows;
    for (const CDocument* document : modified) {
        SPMVar& row = rows.emplace_back();
        row.Init(base::formatted("%p", static_cast<const void*>(document)).c_str(),
                 base::narrow(document->GetTitle()).c_str(), SPM_VAR_BOOLEAN);
        row = 1.0;
    }
    SPMVarList list;
    list.set_variables(rows.data(), static_cast<unsigned>(rows.size()));
    std::ifstream layout(platform::find_interface_file("save_docs.xml"), std::ios::binary);
    choose_all handler;
    CVarListDlg dialog;
    dialog.setHandler(&handler);
    dialog.CreateModalDlg(&list, layout ? &layout : nullptr, platform::saveFilesLayout, parent);
    if (dialog.DoModal() != CVarListDlg::resultOk) return save_outcome::cancelled;
    bool isDone = true;
    for (std::size_t i = 0; i < modified.size(); ++i)
        if (list.get_var(static_cast<unsigned>(i))) isDone &= save(*modified[i]);
    return isDone ? save_outcome::done : save_outcome::failed;
}

} // namespace entry

bool VldvSaveAllDocuments(CWnd* parent) { return entry::save_documents(parent) != entry::save_outcome::cancelled; }
