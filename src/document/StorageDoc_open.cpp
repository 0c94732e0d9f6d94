#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/history/DocumentHold.h"
#include "document/update_hints.h"
#include "platform/app/WinApp.h"
#include "platform/files/file_kind.h"
#include "platform/files/paths.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <utility>

using namespace vldv;

namespace {

/// Why a stream could not be opened; a folder opens as a file but cannot be read.
int open_error(const std::filesystem::path& path)
{
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return EISDIR;
    return errno != 0 ? errno : ENOENT;
}

/// Tells the output pane what a reader has to say.
void tell_warnings(const std::wstring& path, const std::vector<std::string>& warnings)
{
    CWinApp* const app = AfxGetApp();
    for (const std::string& warning : warnings)
        if (app) app->host().output(base::narrow(platform::file_name(path)) + ": " + warning);
}

/// Sends the progress of a file to the host while it lives, where nobody else wants it.
class shown_progress {
public:
    explicit shown_progress(std::function<bool(double)>& progress)
    {
        CWinApp* app = AfxGetApp();
        if (progress || !app) return;
        progress = [app](double done) { return app->host().progress(done); };
        installed = &progress;
    }
    shown_progress(const shown_progress&) = delete;
    shown_progress& operator=(const shown_progress&) = delete;
    ~shown_progress()
    {
        if (installed) *installed = nullptr;
    }

private:
    std::function<bool(double)>* installed = nullptr;
};

/// Puts the path of a file in place while it is read; it goes back unless that was kept.
class read_from {
public:
    read_from(std::wstring& place_, const std::wstring& path, bool& reading_)
        : place(place_), before(std::exchange(place_, path)), reading(reading_)
    {
        reading = true;
    }
    read_from(const read_from&) = delete;
    read_from& operator=(const read_from&) = delete;
    ~read_from()
    {
        reading = false;
        if (!isKept) place.swap(before);
    }
    void keep() { isKept = true; }

private:
    std::wstring& place;
    std::wstring before;
    bool& reading;
    bool isKept = false;
};

} // namespace

bool CStorageDoc::OnNewDocument()
{
    if (!CDocument::OnNewDocument()) return false;
    incomplete = false;
    storedContent.reset();
    storedIn.reset();
    damagedFile.clear();
    knownFiles.clear();
    return true;
}

bool CStorageDoc::OnOpenDocument(const wchar_t* path)
{
    const std::wstring full = platform::full_path(path ? path : L"");
    const std::filesystem::path file = platform::to_path(full);
    if (const std::string kind = platform::special_kind(file); !kind.empty()) {
        ReportSaveLoadException(full.c_str(), CArchiveException(CArchiveException::generic, full, kind), false);
        return false;
    }
    std::error_code error;
    std::ifstream in;
    const auto opened = platform::open_stamped(in, full);
    const bool isFolder = std::filesystem::is_directory(file, error);
    if (!in || isFolder) {
        ReportSaveLoadException(full.c_str(), CFileException(open_error(file), full), false);
        return false;
    }
    // Sets of several files name each other relative to their folder.
    std::filesystem::current_path(file.parent_path(), error);
    // Work that is given up for what the file holds can be reopened like that of a document that closes.
    if (CWinApp* const app = AfxGetApp(); app && isChanged()) app->documentCloses(*this);
    DeleteContents();
    SetModifiedFlag(true);
    displayTitle.clear();
    // Stays so when the reading throws: what was not read completely is neither unsaved work nor saved over the file.
    incomplete = true;
    const CWaitCursor wait;
    const shown_progress shown(onReadProgress);
    in.seekg(0, std::ios::end);
    const auto end = in.tellg();
    in.seekg(0);
    const std::uint64_t size = end > 0 ? static_cast<std::uint64_t>(end) : 0;
    read_from source(sourcePath, full, reading);
    readOpened(in, size);
    source.keep();
    fullPath = full;
    fileName = platform::file_name(full);
    fileSizeLow = static_cast<std::uint32_t>(size);
    fileSizeHigh = static_cast<std::uint32_t>(size >> 32);
    incomplete = false;
    if (platform::stamp_of(full) != opened)
        readWarnings.push_back("another program changed the file while it was read; open it again to see it as it is");
    tell_warnings(fullPath, getReadWarnings());
    SetModifiedFlag(fileType != FILE_SPMX);
    damagedFile = isDamaged ? full : std::wstring();
    if (isDamaged) knownFiles.forget(full); // a save would end what may yet be rescued there
    wasStored(fullPath, isDamaged ? std::nullopt : opened);
    if (isOfSeveralFiles) storedIn.reset();
    return true;
}

/// Fills the document from `sourcePath`, or throws and leaves it empty.
void CStorageDoc::readOpened(std::istream& in, std::uint64_t size)
{
    std::string reason;
    auto cause = CArchiveException::badIndex;
    try {
        if (size == 0) {
            cause = CArchiveException::endOfFile;
            reason = base::formatted(string_resource(texts::fileIsEmpty), base::narrow(sourcePath).c_str());
        } else if (ReadFile(in)) {
            return;
        } else {
            reason = getReadError();
        }
    } catch (const std::bad_alloc&) {
        reason = "not enough memory for its content";
    } catch (const std::exception& failure) {
        reason = failure.what();
    }
    DeleteContents();
    throw CArchiveException(cause, sourcePath, reason);
}

bool CStorageDoc::doReadFile(std::istream& in) { return VLFileReader::doReadFile(in); }

bool CStorageDoc::Revert()
{
    const std::wstring path = document::file_to_revert(knownFiles, GetPathName());
    const unsigned before = getImagesNumber();
    const CDocumentHold kept(*this);
    // First of all what shows an image that is gone has to go; the others may still ask for images that are there.
    const auto tellViews = [&] {
        closeViewsOf(getImagesNumber(), unsigned(-1));
        for (unsigned i = 0; i < std::max(before, getImagesNumber()); ++i) {
            UpdateAllViews(nullptr, document::shape_hint(i));
            UpdateAllViews(nullptr, document::data_hint(i));
        }
    };
    try {
        if (!OnOpenDocument(path.c_str())) return false;
    } catch (...) {
        tellViews();
        throw;
    }
    tellViews();
    return true;
}
