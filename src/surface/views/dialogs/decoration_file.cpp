#include "surface/views/dialogs/decoration_file.h"

#include "base/text.h"
#include "platform/app/WinApp.h"
#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "platform/files/text_file.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace vldv::surface {

namespace {

constexpr const char* filter = "Decorations Files (*.dec)|*.dec||";
constexpr std::size_t maxBytes = std::size_t{64} << 20; // millions of points

void tell(unsigned message, const std::wstring& path, const CFileException& failure)
{
    const std::string named = base::formatted(string_resource(message), base::narrow(path).c_str());
    AfxGetApp()->host().messageBox(named + "\n" + failure.what(), message_icon::error);
}

} // namespace

bool save_decorations(const std::wstring& documentPath, const decoration_lists& lists)
{
    CWinApp* const app = AfxGetApp();
    if (!app) return false;
    save_prompt prompt;
    prompt.filter = filter;
    prompt.extension = "dec";
    if (!documentPath.empty())
        prompt.suggestedPath = platform::to_wide(platform::to_path(documentPath).replace_extension(".dec"));
    const std::optional<std::wstring> path = app->host().askSavePath(prompt);
    if (!path) return false;
    try {
        platform::write_text_file(platform::to_path(*path), decoration_text(lists));
        return true;
    } catch (const CFileException& failure) {
        tell(texts::decorationsNotSaved, *path, failure);
        return false;
    }
}

std::optional<decoration_lists> load_decorations()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return {};
    open_prompt prompt;
    prompt.filter = filter;
    const std::vector<std::wstring> paths = app->host().askOpenPaths(prompt);
    if (paths.empty()) return {};
    try {
        return read_decoration_text(platform::read_text_file(platform::to_path(paths.front()), maxBytes));
    } catch (const CFileException& failure) {
        tell(texts::decorationsNotLoaded, paths.front(), failure);
        return {};
    }
}

} // namespace vldv::surface
