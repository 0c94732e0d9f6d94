#include "entry/kept_work.h"

#include "base/text.h"
#include "document/StorageDocTemplate.h"
#include "platform/app/WinApp.h"
#include "platform/dialogs/VarListDlg.h"
#include "platform/files/paths.h"
#include "recovery/restore_document.h"
#include "vldv.h"

#include <ctime>

namespace vldv::entry {

namespace {

/// "scan.top (/data/scan.top.spm, 2024-03-01 14:05)"
std::string label_of(const std::wstring& title, const std::wstring& path, std::int64_t microseconds)
{
    const std::time_t time = static_cast<std::time_t>(microseconds / 1'000'000);
    std::tm parts{};
    char when[32] = "";
    if (localtime_r(&time, &parts)) std::strftime(when, sizeof when, "%Y-%m-%d %H:%M", &parts);
    const std::string place = path.empty() ? "" : base::narrow(path) + ", ";
    return base::narrow(title) + " (" + place + when + ")";
}

std::vector<CStorageDoc*> open_documents(const CWinApp& app)
{
    std::vector<CStorageDoc*> found;
    for (const CDocTemplate* maker : app.docTemplates())
        for (const std::unique_ptr<CDocument>& each : maker->documents())
            if (auto* const document = dynamic_cast<CStorageDoc*>(each.get())) found.push_back(document);
    return found;
}

void warn(const std::string& text)
{
    if (CWinApp* const app = AfxGetApp()) app->host().messageBox(text, message_icon::warning);
}

/// Which of the copies the user wants to have open.
std::vector<std::filesystem::path> chosen_copies(const std::vector<std::filesystem::path>& found)
{
    std::vector<SPMVar> rows(found.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto kept = recovery::read_manifest(found[i]);
        const std::string label = kept ? label_of(kept->title, kept->path, kept->time) : found[i].native();
        rows[i].Init(("document" + std::to_string(i)).c_str(), label.c_str(), SPM_VAR_BOOLEAN);
        rows[i] = 1.0;
    }
    SPMVarList list;
    list.set_variables(rows.data(), static_cast<unsigned>(rows.size()));
    CVarListDlg dialog;
    dialog.CreateModalDlg(&list, nullptr, platform::recoveryLayout, nullptr);
    dialog.setAcceptTip("Opens the chosen documents as they were; the others stay in File, Reopen Closed");
    std::vector<std::filesystem::path> chosen;
    if (dialog.DoModal() != CVarListDlg::resultOk) return chosen;
    for (std::size_t i = 0; i < found.size(); ++i)
        if (list.get_var(static_cast<unsigned>(i))) chosen.push_back(found[i]);
    return chosen;
}

} // namespace

void kept_work::begin(const std::filesystem::path& state)
{
    if (state.empty()) return;
    sessions = state / "sessions";
    try {
        copies = std::make_unique<recovery::autosave>(state);
        closed = std::make_unique<recovery::closed_documents>(copies->closedFolder());
    } catch (const std::exception& failure) {
        copies.reset();
        AfxGetApp()->host().output(std::string("Unsaved work is not kept: ") + failure.what());
    }
}

void kept_work::step()
{
    CWinApp* const app = AfxGetApp();
    if (!copies || !app) return;
    copies->step(open_documents(*app));
    if (std::string failure = copies->takeError(); !failure.empty()) {
        if (failure != toldFailure) app->host().output("Unsaved work could not be kept: " + failure);
        toldFailure = std::move(failure);
    } else if (!toldFailure.empty() && !copies->hasFailed() && copies->isUpToDate()) {
        app->host().output("Unsaved work is kept again.");
        toldFailure.clear();
    }
}

void kept_work::documentCloses(CDocument& document)
{
    auto* const storage = dynamic_cast<CStorageDoc*>(&document);
    if (copies && storage) copies->documentCloses(*storage);
}

void kept_work::fileGoes(const std::wstring& path) noexcept
try {
    const std::error_code error = copies ? copies->fileGoes(platform::to_path(path)) : std::error_code();
    if (error)
        AfxGetApp()->host().output("Unsaved work that refers to " + base::narrow(path) +
                                   " could not be completed: " + error.message());
} catch (const std::exception&) {
    // no memory for an old copy; the new file is what the user asked for
}

void kept_work::offerRecovery()
{
    if (!copies) return;
    // Until the user has answered, and the chosen ones are open, all stays where the next start finds it.
    recovery::left_sessions left(sessions);
    if (!left.copies().good.empty())
        for (const std::filesystem::path& folder : chosen_copies(left.copies().good))
            if (!hasLeft) openCopy(folder);
    if (hasLeft) return; // the system answered, not the user
    const recovery::left_copies moved = left.moveTo(copies->closedFolder());
    std::string unreadable = "Unsaved work is damaged, or of another version of the program. It stays in";
    for (const std::filesystem::path& folder : moved.unreadable) unreadable += "\n" + folder.native();
    if (!moved.unreadable.empty()) warn(unreadable);
}

std::size_t kept_work::closedCount() { return closed ? closed->list().size() : 0; }

std::vector<std::string> kept_work::closedLabels()
{
    std::vector<std::string> labels;
    labelled.clear();
    if (!closed) return labels;
    for (const recovery::closed_document& document : closed->list()) {
        labels.push_back(label_of(document.title, document.path, document.time));
        labelled.push_back(document.folder);
    }
    return labels;
}

void kept_work::reopen(std::size_t index)
{
    if (index < labelled.size()) openCopy(std::filesystem::path(labelled[index]));
}

void kept_work::openCopy(const std::filesystem::path& folder)
{
    auto kept = recovery::read_manifest(folder);
    const source_choice from = kept ? choose_source(*kept, folder) : source_choice();
    if (!from.isWanted) return;
    const std::filesystem::path taken = kept ? copies->takeCopy(folder) : std::filesystem::path();
    if (taken.empty()) return warn("This document is not kept any more; another program may have opened it.");
    openTaken(*kept, from, taken, folder);
}

void kept_work::openTaken(const recovery::kept_document& kept, const source_choice& from,
                          const std::filesystem::path& taken, const std::filesystem::path& before)
{
    const CWaitCursor wait;
    auto* const document = dynamic_cast<CStorageDoc*>(vldvSurfaceTemplate.CreateNewDocument());
    std::error_code error;
    if (!document) return std::filesystem::rename(taken, before, error);
    auto restored = recovery::restore(*document, kept, taken, from.chosen ? from.chosen : find_source(kept, taken));
    std::string problem = base::narrow(kept.title) + " is not complete:";
    for (const std::string& reason : restored.missing) problem += "\n" + reason;
    if (!restored.missing.empty()) warn(problem);
    const bool hasImages = document->getImagesNumber() > 0;
    vldvSurfaceTemplate.setOpeningImage(0);
    if (!hasImages) {
        vldvSurfaceTemplate.deleteDocument(document);
        show_texts(kept);
    }
    const bool isShown = hasImages && vldvSurfaceTemplate.CreateFr(kept.path.c_str(), true, document);
    if (isShown && restored.missing.empty())
        return copies->adopt(*document, taken, std::move(restored.files), !from.chosen);
    std::filesystem::rename(taken, before, error); // another time the rest may be there again
}

void kept_work::leave()
{
    hasLeft = true;
    if (CWinApp* const app = AfxGetApp(); app && copies) copies->leave(open_documents(*app));
}

void kept_work::finish() noexcept
try {
    if (copies) copies->finish();
} catch (const std::exception&) {
    // no memory: it is tried once more when the copies go
}

} // namespace vldv::entry
