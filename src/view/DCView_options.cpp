#include "base/text.h"
#include "base/variables/global_option.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/WinApp.h"
#include "platform/files/interface_directory.h"
#include "view/DCView.h"

#include <algorithm>
#include <cassert>
#include <fstream>
#include <regex>
#include <utility>

using namespace vldv;

namespace {

// What sizes drawing ends where no screen would show it: a file of options may hold any number. The margins are sums of
// what derived views declare.
constexpr view::option_row commonOptions[] = {
    {"ShowLegend(Show Legend),boolean", "true"},
    {"LeftMargin,int,0,4000", "0"},
    {"RightMargin,int,0,4000", "0"},
    {"TopMargin,int,0,4000", "0"},
    {"BottomMargin,int,0,4000", "0"},
    {"background(Background Color),int,0,(1<<25)-1,hex(##)", "0xffffff"},
    {"legend(Legend Color),int,0,(1<<25)-1,hex(##)", "0"},
    {"text_background(Text Background Color),int,0,(1<<25)-1,hex(##)", "0"},
    {"text(Text Color),int,0,(1<<25)-1,hex(##)", "0xffffff"},
    {"text_size(Text Size),int,0,200", "13"},
    {"text_weight(Bold),boolean", "false"},
    {"text_italic(Italic),boolean", "false"},
    {"text_face_list(Font),string,strlistval(##,0),font_list(##)", "\"Arial\""},
    {"text_face,string,,strlistval(#text_face_list,0)", "\"Arial\""},
    {"toolbar(Toolbar),boolean", "true"},
    {"toolbar.size(Size),enum,def(As main),Small,Large", "def"},
    {"axis_thickness(Axis thickness),int,0,100", "1"},
    {"grid.show(Show grid),enum,None,Horizontal,Vertical,Both", "None"},
    {"grid.line.style(Line style),enum,Solid,Dot,Dash,Dash-dot", "Dot"},
    {"grid.line.width(Line width),int,0,100", "0"},
    {"tics.x.number(X tics number),int,0,1000", "5"},
    {"tics.x.length(X tics length),int,0,500", "2"},
    {"tics.y.number(Y tics number),int,0,1000", "5"},
    {"tics.y.length(Y tics length),int,0,500", "2"},
};

/// Whether two options are declared alike and have one value.
bool is_equal(const SPMVar& a, const SPMVar& b)
{
    return a.type == b.type && a.as_string() == b.as_string() && a.description() == b.description();
}

/// Set while this lives.
class set_flag {
public:
    explicit set_flag(bool& flag_) : flag(flag_), before(std::exchange(flag_, true)) {}
    set_flag(const set_flag&) = delete;
    set_flag& operator=(const set_flag&) = delete;
    ~set_flag() { flag = before; }

private:
    bool& flag;
    bool before;
};

IProfile* profile()
{
    CWinApp* const app = AfxGetApp();
    return app ? &app->profile() : nullptr;
}

/// What a section of the profile holds for some options, to be put back.
class stored_options {
public:
    stored_options(IProfile* store_, std::string section_, std::span<const SPMVar> options)
        : store(store_), section(std::move(section_))
    {
        for (const SPMVar& option : options)
            if (store) texts.emplace_back(option.get_name(), store->readString(section, option.get_name()));
    }
    void putBack() const
    {
        if (!store) return;
        const CProfileBatch together(*store);
        for (const auto& [name, text] : texts)
            if (!text)
                store->deleteValue(section, name);
            else if (store->readString(section, name) != text)
                store->writeString(section, name, *text);
    }

private:
    IProfile* store;
    std::string section;
    std::vector<std::pair<std::string, std::optional<std::string>>> texts;
};

} // namespace

const SPMVar& CDCView::option(const char* name) const
{
    assert(options.get_var_i(name) != unsigned(-1));
    return options[name];
}

void CDCView::GetOptionsList(SPMVar* vars, unsigned* count) { view::list_options(commonOptions, 0, vars, count); }

std::vector<SPMVar> CDCView::declaredOptions()
{
    unsigned count = 0;
    GetOptionsList(nullptr, &count);
    std::vector<SPMVar> declared(count);
    GetOptionsList(declared.data(), &count);
    return declared;
}

void CDCView::LoadOptions(const char* pattern)
{
    const bool isFiltered = pattern && *pattern;
    const std::regex wanted(isFiltered ? pattern : "");
    IProfile* const store = profile();
    const std::string section = GetViewSection();
    std::vector<SPMVar> declared = declaredOptions();
    std::erase_if(declared, [&](const SPMVar& option) {
        return !*option.get_name() || (isFiltered && !std::regex_search(option.get_name(), wanted));
    });
    for (SPMVar& option : declared) {
        const std::string name = option.get_name();
        // A stored text goes before the present value, and that before the declared default. A text that the
        // declaration does not take, as one of an older version, leaves the value alone.
        if (options.get_var_i(name) != unsigned(-1)) option.from_string(options[name].as_string().c_str());
        const auto stored = store ? store->readString(section, name) : std::nullopt;
        if (stored) option.from_string(stored->c_str());
    }
    const set_flag loading(loadingOptions);
    // A part is asked for when what stands behind it is another, as the axes of an image are.
    storeOptions(declared, isFiltered);
    assert(isFiltered || std::ranges::all_of(optionHandlers, [this](const auto& handler) {
               return options.get_var_i(handler.first.c_str()) != unsigned(-1);
           }));
}

/// As one change. \param tellsAll  also those that are as they were
void CDCView::storeOptions(std::vector<SPMVar>& changed, bool tellsAll)
{
    options.batch([&] {
        for (SPMVar& option : changed) {
            const SPMVar& before = options[option.get_name()];
            // A variable that keeps its time stamp counts as unchanged, so that its handler does not run.
            if (!tellsAll && is_equal(option, before))
                option.timestamp = before.timestamp;
            else
                option.update_timestamp();
            options.set_var(option);
        }
    });
}

void CDCView::SaveOptions()
{
    const std::vector<SPMVar> all(options.all().begin(), options.all().end());
    storeChanged(all);
}

void CDCView::storeChanged(const std::vector<SPMVar>& changed)
{
    IProfile* const store = profile();
    if (!store) return;
    const std::string section = GetViewSection();
    for (const SPMVar& variable : changed)
        if (variable.type != SPM_VAR_NONE && !unsavedOptions.contains(variable.get_name()))
            store->writeString(section, variable.get_name(), variable.as_string().c_str());
}

void CDCView::OnFireVariableChange(int index, const SPMVarList* list)
{
    // The first hint 0 makes everything as the options say; before it there is nothing that could follow them.
    if (loadingOptions && !hasOpened) return;
    const SPMVar changed = list->get_var(static_cast<unsigned>(index)); // handlers may change the list
    const std::string name = changed.get_name();
    if (instantSaveOptions.contains(name)) storeChanged({changed});
    if (const auto handler = optionHandlers.find(name); handler != optionHandlers.end()) handler->second(changed);
}

bool CDCView::setOption(const char* name, const char* text) { return options.set_var(name, text); }

void CDCView::toggle_option(const char* name)
{
    BeginEditOptions();
    SPMVar changed = options.get_var(name);
    if (changed.type != SPM_VAR_NONE) {
        changed = static_cast<bool>(changed) ? 0.0 : 1.0;
        changed.update_timestamp();
        options.set_var(changed);
    }
    EndEditOptions();
}

namespace {

/// What kind of window a view is in, as "Section"; empty where it is in none.
std::string kind_of(const CView& view)
{
    const CWinApp* const app = AfxGetApp();
    const CFrameWnd* const frame = view.GetParentFrame();
    const CDocTemplate* const maker = app && frame ? app->findTemplate(frame->menuId()) : nullptr;
    return maker ? maker->GetDocString(docName) : std::string();
}

} // namespace

void CDCView::OnViewPreferences() { ShowOptionsDlgWithInterface(GetViewSection().c_str()); }

bool CDCView::ShowOptionsDlgWithInterface(const char* name)
{
    std::ifstream layout(platform::find_interface_file(std::string(name) + ".xml"), std::ios::binary);
    CVarListDlg dialog;
    dialog.setHandler(this);
    dialog.grid().hideRows(idleOptions);
    dialog.CreateModalDlg(&options, layout ? &layout : nullptr, platform::optionsLayout, this);
    if (dialog.layout().title.empty()) dialog.setTitle(kind_of(*this));
    const std::vector<SPMVar> before(options.all().begin(), options.all().end());
    const stored_options kept(profile(), GetViewSection(), before);
    storedDefaults = false;
    SPMVar clock;
    // All stamps come from one counter: what the dialog changes has a later one than this.
    const std::uint64_t start = clock.update_timestamp();
    BeginEditOptions();
    const int result = dialog.DoModal();
    if (result == CVarListDlg::resultOk) {
        std::vector<SPMVar> changed;
        std::ranges::copy_if(options.all(), std::back_inserter(changed),
                             [&](const SPMVar& variable) { return variable.timestamp > start; });
        storeChanged(changed);
    } else {
        options.batch([&] {
            for (const SPMVar& variable : before) options.set_var(variable);
        });
        if (storedDefaults) kept.putBack();
    }
    EndEditOptions();
    return result == CVarListDlg::resultOk;
}

void CDCView::OnCommandMessage(const char* id, CVarListDlg*)
{
    const std::string_view command(id);
    if (command == "default") restoreDefaults();
    if (command == "load") loadOptionsFile();
    if (command == "save") saveOptionsFile();
}

void CDCView::restoreDefaults()
{
    std::vector<SPMVar> declared = declaredOptions();
    std::erase_if(declared, [](const SPMVar& option) { return !*option.get_description(); });
    BeginEditOptions();
    storeOptions(declared, false);
    EndEditOptions();
    SaveOptions();
    storedDefaults = true;
}

long CDCView::GetToolbarIDs(unsigned*, unsigned*, unsigned*)
{
    const SPMVar kind = base::global_option("local_toolbar");
    if (kind.type == SPM_VAR_NONE) return 0;
    switch (static_cast<int>(kind)) {
    case 0:
        return 0;
    case 1:
        return static_cast<bool>(base::global_option("small_toolbar")) - 2;
    case 2:
        return -1;
    default:
        return -2;
    }
}
