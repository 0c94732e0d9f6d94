#include "document/StorageDocTemplate.h"

#include "base/text.h"
#include "base/variables/global_option.h"
#include "document/history/earlier_result.h"
#include "document/history/merge_documents.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "platform/files/file_kind.h"
#include "platform/files/paths.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

#include <filesystem>
#include <fstream>
#include <span>

using namespace vldv;

namespace {

void warn(const std::wstring& path, const std::string& text)
{
    if (CWinApp* const app = AfxGetApp()) app->reportFailure(path, text);
}

/// What did not open is no entry of the recent files, unless its drive is only away for now.
void forget(const wchar_t* path)
{
    const std::wstring full = platform::full_path(path);
    std::error_code error;
    const bool isFolderThere = std::filesystem::is_directory(platform::to_path(full).parent_path(), error);
    if (CWinApp* const app = AfxGetApp(); app && isFolderThere) app->RemoveFromRecentFileList(full);
}

/// Why a file counts as empty, also one that is not there; empty when it does not. Opening tells by itself what is no
/// file.
std::string emptiness(const wchar_t* path)
{
    if (!platform::special_kind(platform::to_path(path)).empty()) return {};
    std::error_code error;
    const auto size = std::filesystem::file_size(platform::to_path(path), error);
    if (!error && size > 0) return {};
    const std::string text = base::formatted(string_resource(texts::fileIsEmpty), base::narrow(path).c_str());
    return error ? text + "\n" + error.message() : text;
}

} // namespace

std::wstring CStorageDocTemplate::extension() const { return base::widen(GetDocString(filterExt)); }

bool CStorageDocTemplate::isMergingOn() const
{
    return static_cast<bool>(base::global_option("open.merged")) && (firstMerged || !mergeList.empty());
}

CDocument* CStorageDocTemplate::newDocument(int makeVisible)
{
    CDocument* const document = CreateNewDocument();
    if (!document) {
        warn({}, string_resource(texts::cannotCreate));
        return nullptr;
    }
    ++untitledCount;
    const std::string name = GetDocString(docName);
    document->SetTitle(base::widen((name.empty() ? "Untitled" : name) + std::to_string(untitledCount)).c_str());
    if (!document->OnNewDocument()) {
        deleteDocument(document);
        return nullptr;
    }
    openingImage = 0;
    return !makeVisible || CreateFr(L"", makeVisible, document) ? document : nullptr;
}

/// Reads a file; the user was told why when it is null.
CStorageDoc* CStorageDocTemplate::readDocument(const wchar_t* path)
{
    if (const std::string reason = emptiness(path); !reason.empty()) {
        warn(path, reason);
        forget(path);
        return nullptr;
    }
    auto* const document = dynamic_cast<CStorageDoc*>(CreateNewDocument());
    if (!document) {
        warn(path, string_resource(texts::cannotCreate));
        return nullptr;
    }
    const CWaitCursor wait;
    bool isRefused = true;
    try {
        if (document->OnOpenDocument(path)) return document;
    } catch (const CException& failure) {
        isRefused = !document->isReadCancelled(); // who cancelled knows
        if (isRefused) warn(path, failure.what());
    }
    if (isRefused) forget(path);
    deleteDocument(document);
    return nullptr;
}

void CStorageDocTemplate::adoptPath(CStorageDoc& document, const wchar_t* path, int addToMRU)
{
    const std::wstring full = platform::full_path(path);
    const std::wstring held = document::held_path(full, extension(), document.fileType == FILE_SPMX);
    if (held != full) document.SetModifiedFlag(true);
    CWinApp* const app = AfxGetApp();
    if (addToMRU && app) app->AddToRecentFileList(full);
    document.SetPathName(held.c_str(), false);
}

/// The file itself, or what was saved of it earlier when the user wants that; nothing when the user wants neither.
std::optional<std::wstring> CStorageDocTemplate::fileToOpen(const wchar_t* path)
{
    const std::wstring given = platform::full_path(path);
    const std::vector<std::wstring> results = document::earlier_results(given, extension());
    CWinApp* const app = AfxGetApp();
    if (results.empty() || !app) return given;
    if (severalAnswer) return *severalAnswer == wanted_file::recording ? given : results.front();
    const std::optional<std::size_t> chosen = app->host().ask(document::results_question(results));
    if (!chosen || *chosen > results.size()) return std::nullopt;
    const bool isResult = *chosen < results.size();
    if (opensSeveral) severalAnswer = isResult ? wanted_file::latestResult : wanted_file::recording;
    return isResult ? results[*chosen] : given;
}

CDocument* CStorageDocTemplate::OpenDocumentFile(const wchar_t* given, int addToMRU, int makeVisible)
{
    if (!given) return newDocument(makeVisible);
    const bool merging = isMergingOn();
    const std::optional<std::wstring> chosen = fileToOpen(given);
    if (!chosen) return nullptr;
    if (CDocument* const open = merging ? nullptr : openDocumentOf(*chosen)) { // the earlier result
        CWinApp::showDocument(*open);
        return open;
    }
    const wchar_t* const path = chosen->c_str();
    CStorageDoc* const document = readDocument(path);
    if (!document) return nullptr;
    if (merging) {
        if (!document::takes_part(*document, static_cast<int>(base::global_option("open.filter")))) {
            deleteDocument(document);
            return nullptr;
        }
        mergeList.push_back(document);
        if (!firstMerged) return document; // joins the first one later
        firstMerged = false;
    }
    adoptPath(*document, path, addToMRU);
    if (!merging) {
        openingImage = 0;
        if (!CreateFr(path, makeVisible, document)) {
            forget(path);
            return nullptr;
        }
    }
    return document;
}

CDocument* CStorageDocTemplate::OpenDocumentFileNoMRU(const wchar_t* path, int makeVisible)
{
    if (!path) return newDocument(makeVisible);
    CStorageDoc* const document = readDocument(path);
    if (!document) return nullptr;
    adoptPath(*document, path, false);
    openingImage = 0;
    return !makeVisible || CreateFr(path, makeVisible, document) ? document : nullptr;
}

/// The open document of a file. One that would be saved there, yet neither read nor wrote the file, is another: who
/// asks for a saved result must not get the untouched recording in its place, nor the other way round.
CDocument* CStorageDocTemplate::openDocumentOf(const std::wstring& full) const
{
    const std::wstring suffix = extension();
    std::error_code ignored;
    const bool isThere = std::filesystem::exists(platform::to_path(full), ignored);
    for (const std::unique_ptr<CDocument>& each : documents()) {
        if (!document::is_held_path(each->GetPathName(), full, suffix)) continue;
        const auto* const stored = dynamic_cast<const CStorageDoc*>(each.get());
        if (!isThere || !stored || stored->ownFiles().knows(full)) return each.get();
    }
    return nullptr;
}

match_confidence CStorageDocTemplate::MatchDocType(const wchar_t* path, CDocument*& match)
{
    const std::wstring full = platform::full_path(path);
    match = openDocumentOf(full);
    if (match) return match_confidence::alreadyOpen;
    const std::wstring suffix = extension();
    if (suffix.empty()) return match_confidence::maybeForeign;
    if (!platform::special_kind(platform::to_path(full)).empty()) return match_confidence::yesForeign;
    std::ifstream in(platform::to_path(full), std::ios::binary);
    // Content decides; every file is taken, so that one that cannot be read is named.
    return VLFileReader::GetDocumentType(in) != FILE_UNKNOWN ? match_confidence::yesNative
                                                             : match_confidence::yesForeign;
}

void CStorageDocTemplate::setFirstMerged()
{
    firstMerged = opensSeveral = true;
    severalAnswer.reset();
    mergeList.clear();
}

/// Merges into `first`. \return the documents that memory did not allow to join it; the user was told
std::vector<CStorageDoc*> CStorageDocTemplate::mergeInto(CStorageDoc& first, std::span<CStorageDoc* const> others)
{
    std::vector<CStorageDoc*> apart;
    for (CStorageDoc* const other : others) {
        try {
            document::merge_documents(first, *other);
            deleteDocument(other);
        } catch (const std::exception& failure) {
            apart.push_back(other);
            warn(other->getFullPath(), base::formatted("%s is opened by itself; it could not be merged: %s",
                                                       base::narrow(other->getFullPath()).c_str(), failure.what()));
        }
    }
    return apart;
}

/// Names a merged document. A file of that name, say of another session, must not be written over.
void CStorageDocTemplate::nameMerged(CStorageDoc& merged)
{
    std::wstring path;
    std::error_code error;
    do {
        path = document::merged_path(merged.GetPathName(), ++untitledCount, extension());
    } while (std::filesystem::exists(platform::to_path(path), error));
    merged.SetPathName(path.c_str(), false);
    merged.SetModifiedFlag(true);
    merged.becomeUnfiled();
}

void CStorageDocTemplate::setLastMerged()
{
    firstMerged = opensSeveral = false;
    severalAnswer.reset();
    const std::vector<CStorageDoc*> merged = std::exchange(mergeList, {});
    if (merged.empty()) return;
    CStorageDoc* const first = merged.front();
    const std::vector<CStorageDoc*> apart = mergeInto(*first, std::span(merged).subspan(1));
    if (apart.size() + 1 < merged.size()) nameMerged(*first);
    openingImage = 0;
    CreateFr(first->GetPathName().c_str(), true, first);
    for (CStorageDoc* const each : apart) {
        adoptPath(*each, each->getFullPath().c_str(), false);
        openingImage = 0;
        CreateFr(each->GetPathName().c_str(), true, each);
    }
}
