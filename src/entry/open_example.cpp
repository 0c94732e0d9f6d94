#include "entry/open_example.h"

#include "document/StorageDoc.h"
#include "document/examples/examples.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"

#include <cstdlib>
#include <filesystem>

namespace vldv::entry {

namespace {

/// Where programs keep a user's files that are no settings.
std::filesystem::path data_folder()
{
    const char* const named = std::getenv("XDG_DATA_HOME");
    if (named && *named == '/') return named; // a relative one counts as none
    return platform::to_path(platform::expanded_home(L"~")) / ".local/share";
}

} // namespace

void open_example(CWinApp& app, const document::example_row& row)
{
    const std::filesystem::path file = data_folder() / "velmira/examples" / row.fileName;
    const std::wstring path = platform::to_wide(file);
    std::error_code error;
    if (!std::filesystem::exists(file, error)) {
        std::filesystem::create_directories(file.parent_path(), error);
        document::example made = row.make();
        CStorageDoc document;
        if (!document.addRecording(made.content) || !document.DoSave(path.c_str(), false)) return; // the user was told
    }
    app.OpenDocumentFile(path.c_str());
}

} // namespace vldv::entry
