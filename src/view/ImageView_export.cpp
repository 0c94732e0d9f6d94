// Views write what they show to files of other programs.
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/container/recording_folder.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "view/ImageView.h"
#include "view/dialogs/FileExportDialog.h"
#include "view/image/picture_export.h"

#include <algorithm>
#include <cwchar>

using namespace vldv;

namespace {

constexpr const char* indexKey = "ExportIndex";

/// The parameters of all formats of a view.
struct export_parameters {
    std::vector<std::vector<SPMVar*>> lists;
    std::vector<SPMVar**> pointers;
    std::vector<int> counts;

    export_parameters(CImageView& view, int formats)
    {
        for (int format = 0; format < formats; ++format) {
            std::vector<SPMVar*>& list = lists.emplace_back();
            counts.push_back(view.GetExportParameters(format, nullptr, 0));
            list.resize(static_cast<std::size_t>(counts.back()));
            view.GetExportParameters(format, list.data(), counts.back());
        }
        for (std::vector<SPMVar*>& list : lists) pointers.push_back(list.data());
    }

    template <class Use>
    void each(Use use) const
    {
        for (const std::vector<SPMVar*>& list : lists)
            for (SPMVar* const variable : list) use(*variable);
    }
};

/// The title, with the number of the image where there are several.
std::wstring default_name(const CStorageDoc& document, unsigned image)
{
    std::wstring name = document.GetTitle();
    std::ranges::replace(name, L'/', L'_');
    if (document.getImagesNumber() > 1) name += base::widen(base::formatted(".%.3d", static_cast<int>(image) + 1));
    return name;
}

} // namespace

std::wstring CImageView::GetExportFilters() { return base::widen(string_resource(texts::exportFilters)); }

int CImageView::GetExportParameters(int format, SPMVar** vars, int count)
{
    const std::span<SPMVar* const> all = view::picture_parameters(format);
    if (vars) std::copy_n(all.begin(), std::clamp<std::ptrdiff_t>(count, 0, std::ssize(all)), vars);
    return static_cast<int>(all.size());
}

void CImageView::Export(int filter, const wchar_t* path)
{
    if (filter >= view::bitmapFilter && filter <= view::tiffFilter)
        view::export_picture(*this, filter, platform::to_path(path));
}

void CImageView::OnUpdateFileExport(CCmdUI& ui) { ui.Enable(storageDoc() && storageDoc()->isImageOk(imageNumber)); }

void CImageView::OnFileExport()
{
    CWinApp* const app = AfxGetApp();
    if (!app || !storageDoc()) return;
    const std::wstring filters = GetExportFilters();
    const int formats = CountExportFormats(filters.c_str());
    export_parameters parameters(*this, formats);
    IProfile& profile = app->profile();
    const std::string section = GetViewSection();
    parameters.each([&](SPMVar& variable) {
        if (const auto kept = profile.readString(section, variable.get_name())) variable.from_string(kept->c_str());
    });
    CFileExportDialog dialog(parameters.pointers.data(), parameters.counts.data(), filters.c_str(),
                             default_name(*storageDoc(), imageNumber).c_str(),
                             profile.readInt(section, indexKey).value_or(formats), this);
    if (!dialog.DoModal()) return;
    {
        const CProfileBatch batch(profile);
        profile.writeInt(section, indexKey, dialog.getIndex());
        parameters.each(
            [&](SPMVar& variable) { profile.writeString(section, variable.get_name(), variable.as_string().c_str()); });
    }
    const std::filesystem::path file = platform::to_path(dialog.getPath());
    const char* const why = document::is_recording(file)         ? "is a recording, which no export replaces."
                            : document::has_recording_name(file) ? "has an ending of recordings."
                                                                 : nullptr;
    if (why) return app->host().messageBox(file.string() + ": " + why, message_icon::warning);
    Export(dialog.getIndex(), dialog.getPath().c_str());
}
