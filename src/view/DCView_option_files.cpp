#include "base/text.h"
#include "platform/app/WinApp.h"
#include "platform/dialogs/options_file.h"
#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "view/DCView.h"

using namespace vldv;

namespace {

constexpr const char* optionFilter = "Options Files (*.opt)|*.opt||";

/// Runs work on a file of options and tells the user why it failed.
template <class Work>
void with_file(IHost& host, const std::wstring& path, Work&& work)
{
    try {
        work(platform::to_path(path));
    } catch (const CFileException& failure) {
        host.messageBox(failure.what(), message_icon::warning);
    }
}

} // namespace

void CDCView::loadOptionsFile()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    open_prompt prompt;
    prompt.filter = optionFilter;
    const std::vector<std::wstring> paths = app->host().askOpenPaths(prompt);
    if (paths.empty()) return;
    std::vector<platform::options_entry> entries;
    with_file(app->host(), paths.front(), [&](const std::filesystem::path& file) {
        entries = platform::read_options_file(file, GetViewSection());
    });
    if (entries.empty()) return;
    BeginEditOptions();
    options.batch([&] {
        for (const platform::options_entry& entry : entries) setOption(entry.key.c_str(), entry.value.c_str());
    });
    EndEditOptions();
}

void CDCView::saveOptionsFile()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    save_prompt prompt;
    prompt.filter = optionFilter;
    prompt.extension = "opt";
    prompt.suggestedPath = base::widen(GetViewSection()) + L".opt";
    const std::optional<std::wstring> path = app->host().askSavePath(prompt);
    if (!path) return;
    platform::options_section section{GetViewSection(), {}};
    for (const SPMVar& option : options.all())
        if (option.type != SPM_VAR_NONE && *option.get_description())
            section.entries.push_back({option.get_name(), option.as_string().c_str()});
    with_file(app->host(), *path,
              [&](const std::filesystem::path& file) { platform::write_options_file(file, section); });
}
