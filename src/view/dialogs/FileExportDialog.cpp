#include "view/dialogs/FileExportDialog.h"

#include "base/text.h"
#include "document/ProcessParser.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"
#include "view/image/picture_export.h"

#include <algorithm>
#include <filesystem>
#include <utility>

using namespace vldv;

namespace {

constexpr const char *folderSection = "MRU", *folderKey = "Save";

/// The field of a filter list, which bars part.
std::wstring field(const std::wstring& list, std::size_t number)
{
    std::size_t begin = 0;
    for (; number > 0 && begin != std::wstring::npos; --number)
        if ((begin = list.find(L'|', begin)) != std::wstring::npos) ++begin;
    return begin == std::wstring::npos ? std::wstring() : list.substr(begin, list.find(L'|', begin) - begin);
}

} // namespace

CFileExportDialog::CFileExportDialog(SPMVar*** params_, const int* counts, const wchar_t* filters_,
                                     const wchar_t* defaultName_, int index_, CWnd*)
    : filters(filters_), defaultName(defaultName_), index(index_)
{
    for (int format = 0; format < CountExportFormats(filters_); ++format)
        params.emplace_back(params_[format], params_[format] + counts[format]);
}

std::wstring CFileExportDialog::GetDefaultFileName(const std::wstring& name, std::size_t format) const
{
    const std::wstring pattern = field(filters, 2 * format + 1);
    const std::size_t dot = pattern.find(L'.');
    if (dot == std::wstring::npos) return name;
    const std::wstring extension = pattern.substr(dot, pattern.find_first_of(L";*?", dot) - dot);
    if (extension.size() < 2) return name;
    // Only an extension of one of the formats gives way: a title may have dots of its own.
    std::filesystem::path file = platform::to_path(name);
    const std::wstring before = L"*" + platform::to_wide(file.extension());
    for (std::size_t each = 0; each < params.size(); ++each) {
        const std::wstring patterns = L";" + field(filters, 2 * each + 1) + L";";
        if (before.size() > 2 && patterns.find(L";" + before + L";") != std::wstring::npos)
            return platform::to_wide(file.replace_extension(platform::to_path(extension)));
    }
    return name + extension;
}

bool CFileExportDialog::DoModal()
{
    CWinApp* const app = AfxGetApp();
    if (!app || params.empty()) return false;
    CProcessParser labels;
    if (labels.loadInterfaceFile("ExportDocParam.xml"))
        for (const std::vector<SPMVar*>& format : params)
            for (SPMVar* const each : format) labels.applyLabels(*each);
    const auto first = static_cast<std::size_t>(std::clamp(index, 1, static_cast<int>(params.size()))) - 1;
    const std::filesystem::path folder(app->profile().readString(folderSection, folderKey).value_or(""));
    save_prompt prompt;
    prompt.title = "Export file";
    prompt.filter = base::narrow(filters) + "|";
    prompt.suggestedPath = platform::to_wide(folder / platform::to_path(GetDefaultFileName(defaultName, first)));
    const auto take = [this](std::size_t pair) { index = static_cast<int>(pair) + 1; };
    prompt.filters = {first, params,
                      [this](const std::wstring& name, std::size_t pair) { return GetDefaultFileName(name, pair); },
                      take};
    index = static_cast<int>(first) + 1;
    const std::optional<std::wstring> chosen = app->host().askSavePath(prompt);
    if (!chosen) return false;
    path = platform::full_path(*chosen);
    app->profile().writeString(folderSection, folderKey, platform::to_path(path).parent_path().string());
    return true;
}
