#include "entry/global_options.h"

#include "base/text.h"
#include "platform/app/WinApp.h"
#include "platform/files/paths.h"
#include "view/Scale.h"
#include "view/scale/palette_folder.h"

#include <string_view>
#include <vector>

namespace vldv::entry {

namespace {

constexpr const char* section = "GlobalOptions";

struct option_row {
    const char* declaration;
    const char* defaultText;
};

constexpr const char* paletteFolder = "directory.palettes(Folder of palettes),string";

constexpr option_row rows[] = {
    {"open.merged(Merge opened files),boolean", "false"},
    {"open.filter(Images to open),enum,0(All images),1(Curves),2(Surfaces),3(Volumes)", "0"},
    {"fullscreen_mode(Full screen),enum,0(One monitor),1(Nearest monitor),2(All monitors)", "0"},
    {"fullscreen_monitor(Full screen monitor),int,0", "0"},
    {"local_toolbar(Toolbars in windows),enum,0(None),1(As main),2(Small),3(Large)", "0"},
    {"small_toolbar(Small toolbar buttons),boolean", "false"},
    {"language(Language),string", ""},
    {"default_plugin_options(Mathematics without dialog; Shift asks),boolean", "true"},
    {paletteFolder, ""},
};

/// What an option has that was never set.
std::string default_text(const option_row& row)
{
    if (row.declaration != paletteFolder) return row.defaultText;
    return base::narrow(platform::to_wide(view::bundled_palette_folder()));
}

IProfile* profile()
{
    CWinApp* const app = AfxGetApp();
    return app ? &app->profile() : nullptr;
}

} // namespace

global_options::global_options() : options(VLGlobalVarList::GetVarList("global_options"))
{
    IProfile* const store = profile();
    std::vector<SPMVar> declared;
    for (const option_row& row : rows) {
        SPMVar& variable = declared.emplace_back();
        variable.Init(row.declaration);
        variable.from_string(default_text(row).c_str());
        if (const auto kept = store ? store->readString(section, variable.get_name()) : std::nullopt)
            variable.from_string(kept->c_str());
    }
    options->set_variables(declared.data(), static_cast<unsigned>(declared.size()));
    options->AddFireVariableChangeHandler(this);
}

global_options::~global_options()
{
    options->RemoveFireVariableChangeHandler(this);
    options->ReleaseList();
}

void global_options::OnFireVariableChange(int index, const SPMVarList* list)
{
    const SPMVar& changed = list->get_var(static_cast<unsigned>(index));
    if (IProfile* const store = profile()) store->writeString(section, changed.get_name(), changed.as_string().c_str());
    if (std::string_view(changed.get_name()) == "directory.palettes") CScale::reloadFilePalettes();
}

} // namespace vldv::entry
