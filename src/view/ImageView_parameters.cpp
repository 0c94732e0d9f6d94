// The dialog of operations that are built in.
#include "platform/app/WinApp.h"
#include "platform/files/interface_directory.h"
#include "view/ImageView.h"

#include <fstream>
#include <string_view>

using namespace vldv;

namespace {

bool is_among(const char** names, std::string_view name)
{
    for (; names && *names; ++names)
        if (name == *names) return true;
    return false;
}

/// A list that tells a handler while this lives.
class told_list {
public:
    told_list(SPMVarList& list_, SPMVarListHandler* handler_) : list(list_), handler(handler_)
    {
        if (handler) list.AddFireVariableChangeHandler(handler);
    }
    told_list(const told_list&) = delete;
    told_list& operator=(const told_list&) = delete;
    ~told_list()
    {
        if (handler) list.RemoveFireVariableChangeHandler(handler);
    }

private:
    SPMVarList& list;
    SPMVarListHandler* handler;
};

bool ask(SPMVarList& list, const char* name, CVarListDlgHandler* commands, CWnd* parent)
{
    std::ifstream layout(platform::find_interface_file(std::string(name) + ".xml"), std::ios::binary);
    CVarListDlg dialog;
    dialog.setHandler(commands);
    dialog.CreateModalDlg(&list, layout ? &layout : nullptr, platform::optionsLayout, parent);
    return dialog.DoModal() == CVarListDlg::resultOk;
}

} // namespace

bool CImageView::CallParametersDialog(SPMVar* vars, unsigned count, const char* name, SPMVarListHandler* handler,
                                      CVarListDlgHandler* commands, bool asks, const char** exclude)
{
    CWinApp* const app = AfxGetApp();
    if (!app) return false;
    const std::string section = std::string("Plugins\\") + name;
    SPMVarList list;
    list.set_variables(vars, count);
    list.batch([&] {
        for (unsigned i = 0; i < count; ++i)
            if (const char* const each = vars[i].get_name(); *each && !is_among(exclude, each))
                if (const auto kept = app->profile().readString(section, each)) list.set_var(each, kept->c_str());
    });
    {
        const told_list told(list, handler);
        if (handler) handler->OnFireVariableChange(0, &list);
        if (asks && !ask(list, name, commands, this)) return false;
    }
    const CProfileBatch together(app->profile());
    for (const SPMVar& each : list.all())
        if (*each.get_name() && !is_among(exclude, each.get_name()))
            app->profile().writeString(section, each.get_name(), each.as_string().c_str());
    list.get_variables(vars, count);
    return true;
}
