// Saving: the container is put together in temporary files and streamed into the archive, the archive is a file beside
// the target, and the target's name changes hands only when all of it is stored.
#include "base/CZLib.h"
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/container/spmx_limits.h"
#include "document/container/spmx_verify.h"
#include "document/container/stream_source.h"
#include "document/update_hints.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"
#include "platform/files/temporary_file.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

using namespace vldv;

namespace {

constexpr std::size_t copyBlock = 0x400000;
constexpr const char* filterName = "Velmira files (*.spm)";
constexpr const char* filterExtension = ".spm";

[[noreturn]] void fail(const CArchive& archive, const std::string& reason)
{
    throw CArchiveException(CArchiveException::generic, archive.path(), reason);
}

/// Entries are named after ids: equal ones would overwrite each other, a slash would make a folder.
void check_ids(const CStorageDoc& document, const CArchive& archive)
{
    std::set<std::string> seen;
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) {
        const std::string id = document.getImage(i).get_name();
        if (id.empty()) fail(archive, base::formatted("image %u has no id", i));
        const bool hasControl = std::ranges::any_of(
            id, [](unsigned char c) { return (c < ' ' && c != '\t' && c != '\n' && c != '\r') || c == 0x7f; });
        if (hasControl) fail(archive, base::formatted("the id of image %u contains a control character", i));
        if (id.find('/') != std::string::npos) fail(archive, "the image id \"" + id + "\" contains a slash");
        if (!seen.insert(base::valid_utf8(id)).second) fail(archive, "two images have the id \"" + id + "\"");
    }
}

void add(CZLib& zip, const platform::temporary_file& file, const wchar_t* entry, const CArchive& archive)
{
    if (zip.AddFile(file.widePath().c_str(), entry) != 0)
        fail(archive, "the entry \"" + base::narrow(entry) + "\" could not be packed (is the disk full?)");
}

void add_description(CZLib& zip, const std::string& xml, const CArchive& archive)
{
    const platform::temporary_file file;
    char* utf8 = char2utf8(xml.c_str());
    try {
        file.store(utf8, std::char_traits<char>::length(utf8));
    } catch (...) {
        vlutl_free(utf8);
        throw;
    }
    vlutl_free(utf8);
    add(zip, file, L"main.xml", archive);
}

void add_stream(CZLib& zip, const SPMDataStream& stream, const smart_string& entry, const CArchive& archive)
{
    const platform::temporary_file file;
    file.store(stream.array_data(), stream.data_size());
    wchar_t* wide = utf82wchar(entry.c_str());
    const std::wstring name(wide);
    vlutl_free(wide);
    add(zip, file, name.c_str(), archive);
}

/// A file that no reader takes must not replace one that any takes.
void check_description_size(const std::string& xml, const document::spmx_content& content, const CArchive& archive)
{
    if (xml.size() <= document::spmx_limits::descriptionBytes) return;
    fail(archive,
         base::formatted("the texts take %zu MiB, of which a file can hold %llu; the longest is ", xml.size() >> 20,
                         static_cast<unsigned long long>(document::spmx_limits::descriptionBytes >> 20)) +
             document::longest_text(content));
}

void verify(const platform::temporary_file& packed, const document::spmx_content& content, const CArchive& archive)
{
    std::ifstream in(packed.path(), std::ios::binary);
    document::stream_source file(in, {});
    if (const std::string difference = document::spmx_difference(file, content); !difference.empty())
        fail(archive, difference);
}

void copy_into(CArchive& archive, const platform::temporary_file& packed)
{
    std::ifstream in(packed.path(), std::ios::binary);
    if (!in) fail(archive, "the packed file could not be opened again");
    std::vector<char> block(copyBlock);
    while (in) {
        in.read(block.data(), static_cast<std::streamsize>(block.size()));
        if (in.gcount() > 0) archive.Write(block.data(), static_cast<std::size_t>(in.gcount()));
    }
    if (in.bad() || !in.eof()) fail(archive, "the packed file could not be read again");
}

enum replace_answer : std::size_t { keepBoth, replaceFile };

question replace_question(const std::wstring& target, const std::wstring& beside, document::own_files::relation found,
                          bool isDamaged)
{
    using relation = document::own_files::relation;
    const std::string name = base::narrow(platform::file_name(target));
    const std::string why = isDamaged                     ? "is damaged, and what could not be read of it is not here."
                            : found == relation::replaced ? "has been changed since this document was opened or saved."
                            : found == relation::foreign  ? "exists already, and was not opened here."
                                                          : "exists already.";
    return {"\"" + name + "\" " + why + "\n\nKeep both by saving as \"" + base::narrow(platform::file_name(beside)) +
                "\"?",
            {"&Keep both", "&Replace", "Cancel"}};
}

/// A title as the name of a file.
std::wstring name_of(std::wstring title)
{
    for (wchar_t& c : title)
        if (c == L'/' || c == L'\\' || c < L' ') c = L'_';
    return title;
}

} // namespace

void CStorageDoc::Serialize(CArchive& archive)
{
    if (archive.IsLoading())
        throw CArchiveException(CArchiveException::badIndex, archive.path(), "a document is loaded by opening it");
    const unsigned count = getImagesNumber();
    if (count == 0) return;
    check_ids(*this, archive);
    const platform::temporary_file packed;
    CZLib zip;
    if (zip.Open(packed.widePath().c_str(), CZLib::createNew) != 0) fail(archive, "no archive could be created");
    const std::unique_ptr<smart_string[]> rawNames(new smart_string[count]);
    std::ostringstream xml;
    const int stored = generateXML(xml, rawNames.get(), static_cast<int>(count), "UTF-8");
    check_description_size(xml.str(), content(), archive);
    add_description(zip, xml.str(), archive);
    for (int i = 0; i < stored; ++i) add_stream(zip, images[static_cast<unsigned>(i)], rawNames[i], archive);
    if (zip.Close() != 0) fail(archive, "the archive could not be completed (is the disk full?)");
    // What was packed is read again and compared before the archive gets a byte of it: a container that no reader takes
    // never replaces one that opens.
    verify(packed, content(), archive);
    copy_into(archive, packed);
}

bool CStorageDoc::OnSaveDocument(const wchar_t* path)
{
    const std::wstring target = platform::full_path(path ? path : L"");
    if (incomplete) {
        ReportSaveLoadException(target.c_str(),
                                CArchiveException(CArchiveException::generic, target,
                                                  "the document was not read completely and is not saved"),
                                true);
        return false;
    }
    if (!CDocument::OnSaveDocument(target.c_str())) return false;
    if (displayOnly) return true;
    damagedFile.clear();
    wasStored(target, platform::stamp_of(target));
    return true;
}

std::wstring CStorageDoc::suggestedPath(bool replace) const
{
    std::wstring path = GetPathName();
    if (path.empty()) {
        if (!replace) return {};
        // Titles of copies begin alike: theirs stay whole.
        const std::wstring& whole = GetTitle();
        const std::wstring name = baseTitle.empty() ? whole.substr(0, whole.find_first_of(L" #%;/\\")) : name_of(whole);
        path = platform::full_path(name + base::widen(filterExtension));
    }
    using relation = document::own_files::relation;
    const relation found = knownFiles.of(path);
    return found == relation::foreign || found == relation::replaced ? document::free_path(path) : path;
}

std::wstring CStorageDoc::askSavePath(bool replace) const
{
    CWinApp* app = AfxGetApp();
    if (!app) return {};
    save_prompt prompt;
    prompt.suggestedPath = suggestedPath(replace);
    prompt.extension = "spm";
    prompt.filter = std::string(filterName) + "|*" + filterExtension + "|All Files (*.*)|*.*||";
    prompt.asksToReplace = false; // asked here, with a way to keep both
    return app->host().askSavePath(prompt).value_or(L"");
}

std::wstring CStorageDoc::confirmedTarget(const std::wstring& target) const
{
    using relation = document::own_files::relation;
    const relation found = knownFiles.of(target);
    CWinApp* const app = AfxGetApp();
    if (!app || found == relation::missing || (found == relation::own && target == GetPathName())) return target;
    const std::wstring beside = document::free_path(target);
    const std::optional<std::size_t> answer =
        app->host().ask(replace_question(target, beside, found, target == damagedFile));
    if (answer == keepBoth) return beside;
    return answer == replaceFile ? target : std::wstring();
}

bool CStorageDoc::DoSave(const wchar_t* path, int replace)
{
    // Absolute from here on: a dialog or a reader may change the current folder.
    if (path && *path) return saveTo(platform::full_path(path), replace != 0);
    const std::wstring chosen = platform::full_path(askSavePath(replace != 0));
    std::error_code error; // the next copy is offered beside it
    if (!chosen.empty()) std::filesystem::current_path(platform::to_path(chosen).parent_path(), error);
    return !chosen.empty() && saveTo(confirmedTarget(chosen), replace != 0);
}

bool CStorageDoc::Save()
{
    if (GetPathName().empty()) return DoSave(nullptr, true);
    return saveTo(confirmedTarget(GetPathName()), true);
}

bool CStorageDoc::saveTo(const std::wstring& target, bool replace)
{
    if (target.empty()) return false;
    const CWaitCursor wait;
    // Nothing is left to delete after a failure: the partly written file is not the target but one beside it.
    if (!OnSaveDocument(target.c_str())) return false;
    if (replace) {
        SetPathName(target.c_str(), true);
        updateFrameTitles();
        UpdateAllViews(nullptr, document::hint{document::hintRedraw}.packed()); // legends name the file
    }
    return true;
}
