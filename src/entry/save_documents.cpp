#include "entry/save_documents.h"

#include "base/text.h"
#include "document/ImageBoundView.h"
#include "document/StorageDoc.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/WinApp.h"
#include "platform/dialogs/VarListDlg.h"
#include "platform/files/interface_directory.h"
#include "vldv.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <utility>

using namespace vldv;

namespace {

/// A picture to find files by, or a magnifier: it is only looked at.
bool is_helper(const CDocument& document)
{
    const auto* const storage = dynamic_cast<const CStorageDoc*>(&document);
    if (storage && storage->isDisplayOnly()) return true;
    const auto isQuick = [](const CView* view) {
        const auto* const bound = dynamic_cast<const IImageBoundView*>(view);
        return bound && bound->isQuickView();
    };
    return !document.views().empty() && std::ranges::all_of(document.views(), isQuick);
}

/// Under its own path; one that has none, as a copy, asks for it.
bool save(CDocument& document)
{
    if (auto* const storage = dynamic_cast<CStorageDoc*>(&document)) return storage->Save();
    return document.OnSaveDocument(document.GetPathName().c_str());
}

/// Adds to each label that occurs more than once what `more` says of its document.
template <class More>
void tell_apart(std::vector<std::string>& labels, const std::vector<CDocument*>& documents, const More& more)
{
    const std::vector<std::string> before = labels;
    for (std::size_t i = 0; i < labels.size(); ++i)
        if (std::ranges::count(before, before[i]) > 1)
            if (const std::string added = documents[i] ? more(*documents[i]) : std::string(); !added.empty())
                labels[i] += " (" + added + ")";
}

/// Where nothing else does: "(1 of 2)", in the order in which they were opened.
void number_equal(std::vector<std::string>& labels)
{
    const std::vector<std::string> before = labels;
    std::map<std::string, std::ptrdiff_t> numbers;
    for (std::string& label : labels)
        if (const auto count = std::ranges::count(before, label); count > 1)
            label += base::formatted(" (%td of %td)", ++numbers[label], count);
}

std::string path_of(const CDocument& document) { return base::narrow(document.GetPathName()); }

std::string source_of(const CDocument& document)
{
    const auto* const storage = dynamic_cast<const CStorageDoc*>(&document);
    const auto* const file = storage ? storage->ownFiles().last() : nullptr; // of several the one that was opened
    return file ? "from " + base::narrow(file->path) : std::string();
}

std::vector<SPMVar> dialog_rows(const std::vector<CDocument*>& documents)
{
    const std::vector<std::string> labels = entry::telling_labels(documents);
    std::vector<SPMVar> rows(documents.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        // Titles may be equal, and of two variables with one name a list keeps one: the address tells the documents
        // apart.
        rows[i].Init(base::formatted("%p", static_cast<const void*>(documents[i])).c_str(), labels[i].c_str(),
                     SPM_VAR_BOOLEAN);
        rows[i] = documents[i]->isChanged() ? 1.0 : 0.0;
    }
    return rows;
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

namespace vldv::entry {

std::vector<CDocument*> unsaved_documents(const CWinApp& app)
{
    std::vector<CDocument*> found;
    for (const CDocTemplate* maker : app.docTemplates())
        for (const std::unique_ptr<CDocument>& document : maker->documents())
            if ((document->IsModified() || document->isChanged()) && !is_helper(*document))
                found.push_back(document.get());
    return found;
}

std::vector<std::string> telling_labels(const std::vector<CDocument*>& documents)
{
    std::vector<std::string> labels;
    for (const CDocument* document : documents) labels.push_back(base::narrow(document->GetTitle()));
    return telling_labels(std::move(labels), documents);
}

std::vector<std::string> telling_labels(std::vector<std::string> labels, const std::vector<CDocument*>& documents)
{
    tell_apart(labels, documents, path_of);
    tell_apart(labels, documents, source_of);
    number_equal(labels);
    return labels;
}

save_outcome save_documents(CWnd* parent, bool thenEnds)
{
    CWinApp* const app = AfxGetApp();
    if (!app) return save_outcome::done;
    const std::vector<CDocument*> offered = unsaved_documents(*app);
    if (offered.empty()) return save_outcome::done;
    const std::vector<SPMVar> rows = dialog_rows(offered);
    SPMVarList list;
    list.set_variables(rows.data(), static_cast<unsigned>(rows.size()));
    std::ifstream layout(platform::find_interface_file("save_docs.xml"), std::ios::binary);
    choose_all handler;
    CVarListDlg dialog;
    dialog.setHandler(&handler);
    dialog.CreateModalDlg(&list, layout ? &layout : nullptr, platform::saveFilesLayout, parent);
    dialog.setAcceptTip(thenEnds ? "Saves the chosen files and ends the program" : "Saves the chosen files");
    if (dialog.DoModal() != CVarListDlg::resultOk) return save_outcome::cancelled;
    bool isDone = true;
    for (std::size_t i = 0; i < offered.size(); ++i)
        if (list.get_var(static_cast<unsigned>(i))) isDone &= save(*offered[i]);
    return isDone ? save_outcome::done : save_outcome::failed;
}

} // namespace vldv::entry

bool VldvSaveAllDocuments(CWnd* parent) { return entry::save_documents(parent) != entry::save_outcome::cancelled; }
