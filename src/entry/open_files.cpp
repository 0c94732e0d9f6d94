#include "entry/open_files.h"

#include "base/text.h"
#include "document/container/recording_folder.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"

#include <filesystem>

namespace vldv::entry {

namespace {

constexpr std::size_t manyFiles = 20;

/// \return the recordings of the folder that are to be opened; what could not be read is told
std::vector<document::folder_content::recording> chosen_of(CWinApp& app, const std::wstring& folder)
{
    document::folder_content found = document::recordings_in(platform::to_path(folder));
    for (const auto& [path, reason] : found.unreadables)
        app.reportFailure(platform::to_wide(path), path.native() + ": " + reason);
    if (found.recordings.empty() && found.unreadables.empty())
        app.reportFailure(folder, base::narrow(folder) + ": " + document::why_no_recordings(found));
    if (found.recordings.size() > manyFiles &&
        !app.host().askYesNo(base::formatted("%s holds %zu recordings. Open all of them?", base::narrow(folder).c_str(),
                                             found.recordings.size())))
        return {};
    return std::move(found.recordings);
}

void open_one(CWinApp& app, const std::wstring& name)
{
    const std::wstring path = platform::full_path(platform::expanded_home(name));
    std::error_code error;
    if (!std::filesystem::is_directory(platform::to_path(path), error))
        app.OpenDocumentFile(path.c_str());
    else
        for (const document::folder_content::recording& each : chosen_of(app, path))
            app.OpenDocumentFile(platform::to_wide(each.path).c_str());
}

} // namespace

void open_files(CWinApp& app, std::span<const std::wstring> names)
{
    tell_failures_together(app, [&] {
        for (const std::wstring& name : names) open_one(app, name);
    });
}

} // namespace vldv::entry
