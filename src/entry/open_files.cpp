#include "entry/open_files.h"

#include "base/text.h"
#include "document/recording_folder.h"
#include "platform/WinApp.h"
#include "platform/paths.h"

#include <filesystem>

namespace entry {

namespace {

constexpr std::size_t manyFiles = 20;

/// \return the recordings of the folder that are to be opened
std::vector<std::filesystem::path> chosen_of(CWinApp& app, const std::wstring& folder)
{
    std::vector<std::filesystem::path> files = document::recordings_in(platform::to_path(folder));
    if (files.empty())
        app.reportFailure(folder, base::narrow(folder) + ": the folder holds no file that opens");
    else if (files.size() > manyFiles &&
             !app.host().askYesNo(base::formatted("%s holds %zu recordings. Open all of them?",
                                                  base::narrow(folder).c_str(), files.size())))
        return {};
    return files;
}

void open_one(CWinApp& app, const std::wstring& name)
{
    const std::wstring path = platform::full_path(platform::expanded_home(name));
    std::error_code error;
    if (!std::filesystem::is_directory(platform::to_path(path), error))
        app.OpenDocumentFile(path.c_str());
    else
        for (const std::filesystem::path& file : chosen_of(app, path))
            app.OpenDocumentFile(platform::to_wide(file).c_str());
}

} // namespace

void open_files(CWinApp& app, std::span<const std::wstring> names)
{
    tell_failures_together(app, [&] {
        for (const std::wstring& name : names) open_one(app, name);
    });
}

} // namespace entry
