#include "base/text.h"
#include "document/ImageBoundView.h"
#include "document/ProcessParser.h"
#include "document/StorageDocTemplate.h"
#include "document/history/merge_documents.h"
#include "entry/window_titles.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "view/DCView.h"
#include "view/image/FilePreview.h"
#include "vldv.h"

#include <filesystem>

using namespace vldv;

namespace {

constexpr const char* folderSection = "MRU";
constexpr const char* folderKey = "Open";
constexpr std::size_t maxNamesLength = 32'767'000; // characters that the open dialog can return
constexpr int withPreview = 1;                     // bit of the dialog's options
constexpr int previewSide = 200;                   // pixels
constexpr const char* quickViewSection = "QuickView";

/// Files as the user chose them, the dialog starting where it was left.
std::vector<std::wstring> chosen_files(int options, std::vector<SPMVar>& variables)
{
    CWinApp& app = *AfxGetApp();
    open_prompt prompt;
    prompt.folder = base::widen(app.profile().readString(folderSection, folderKey).value_or(""));
    prompt.filter = string_resource(texts::openFilter);
    prompt.several = true;
    if (options & withPreview)
        prompt.preview = [](const std::wstring& path) { return view::preview_file(path, previewSide); };
    prompt.variables = &variables;
    std::error_code error;
    if (!prompt.folder.empty()) std::filesystem::current_path(platform::to_path(prompt.folder), error);
    std::vector<std::wstring> paths = app.host().askOpenPaths(prompt);
    std::size_t length = 0;
    for (const std::wstring& path : paths) length += path.size() + 1;
    if (length > maxNamesLength) {
        app.host().messageBox(string_resource(texts::tooManyFiles), message_icon::warning);
        return {};
    }
    document::sort_paths(paths);
    if (!paths.empty()) {
        const std::filesystem::path folder = platform::to_path(platform::full_path(paths.front())).parent_path();
        app.profile().writeString(folderSection, folderKey, folder.string());
    }
    return paths;
}

/// The two settings of opening, with the labels of the installation.
std::vector<SPMVar> open_variables(const SPMVarList& global)
{
    std::vector<SPMVar> variables = {global["open.merged"], global["open.filter"]};
    CProcessParser labels;
    if (labels.loadInterfaceFile("OpendocParam.xml"))
        for (SPMVar& variable : variables) labels.applyLabels(variable);
    return variables;
}

void store_values(SPMVarList& global, const std::vector<SPMVar>& variables)
{
    for (const SPMVar& variable : variables) {
        // The label is the dialog's alone.
        SPMVar changed = global[variable.get_name()];
        if (changed.type == SPM_VAR_NONE || changed.as_string() == variable.as_string()) continue;
        changed.from_string(variable.as_string().c_str());
        changed.update_timestamp();
        global.set_var(changed);
    }
}

void close_quick_views(CWinApp& app)
{
    std::vector<CFrameWnd*> quick;
    for (const std::unique_ptr<CFrameWnd>& frame : app.frames())
        if (const auto* bound = dynamic_cast<IImageBoundView*>(frame->GetActiveView()); bound && bound->isQuickView())
            quick.push_back(frame.get());
    for (CFrameWnd* frame : quick) frame->DestroyFrame();
}

} // namespace

void VldvOpenDocument(int options)
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    VLGlobalVarList* const global = VLGlobalVarList::GetVarList("global_options");
    std::vector<SPMVar> variables = open_variables(*global);
    const std::vector<std::wstring> paths = chosen_files(options, variables);
    if (!paths.empty()) {
        store_values(*global, variables);
        tell_failures_together(*app, [&] {
            vldvSurfaceTemplate.setFirstMerged();
            for (const std::wstring& path : paths) app->OpenDocumentFile(path.c_str());
            vldvSurfaceTemplate.setLastMerged();
        });
    }
    global->ReleaseList();
}

void VldvOpenQuickView()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    std::vector<SPMVar> asked(2);
    asked[0].Init("size(Size of pictures),int,32,2048");
    asked[0].from_string(app->profile().readString(quickViewSection, "default_width").value_or("192").c_str());
    asked[1].Init("close(Close earlier ones),boolean");
    asked[1].from_string(app->profile().readString(quickViewSection, "close").value_or("true").c_str());
    const std::vector<std::wstring> paths = chosen_files(withPreview, asked);
    if (paths.empty()) return;
    {
        const CProfileBatch together(app->profile());
        for (const char* side : {"default_width", "default_height"})
            app->profile().writeString(quickViewSection, side, asked[0].as_string().c_str());
        app->profile().writeString(quickViewSection, "close", asked[1].as_string().c_str());
    }
    if (static_cast<bool>(asked[1])) close_quick_views(*app);
    vldvSurfaceTemplate.ResetWndPos();
    tell_failures_together(*app, [&] {
        for (const std::wstring& path : paths) vldvSurfaceTemplate.QuickViewOpenDocumentFile(path.c_str(), true);
    });
}

void VldvPageSetup()
{
    if (CWinApp* const app = AfxGetApp()) app->host().runPageSetup(CDCView::rtMargin);
}

void VldvSelectView()
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    std::vector<CFrameWnd*> frames;
    std::vector<std::wstring> titles;
    for (const std::unique_ptr<CFrameWnd>& frame : app->frames()) frames.push_back(frame.get());
    for (const std::string& title : entry::window_titles(app->frames())) titles.push_back(base::widen(title));
    const window_choice choice = app->host().chooseWindows(titles);
    for (const std::size_t index : choice.closed)
        if (index < frames.size() && !frames[index]->isDestroyed()) frames[index]->DestroyFrame();
    if (choice.activated < frames.size() && !frames[choice.activated]->isDestroyed())
        frames[choice.activated]->ActivateFrame();
}
