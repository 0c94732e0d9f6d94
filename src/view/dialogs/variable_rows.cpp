#include "view/dialogs/variable_rows.h"

#include "base/text.h"
#include "platform/dialogs/VarListDlg.h"

namespace vldv::view {

std::vector<SPMVar> declared(const std::vector<variable_row>& rows)
{
    std::vector<SPMVar> out;
    for (const variable_row& row : rows) {
        SPMVar& variable = out.emplace_back();
        variable.Init(row.declaration);
        if (!row.label.empty()) variable.set_description(row.label.c_str());
        variable.from_string(row.value.c_str());
    }
    return out;
}

std::string label_with_units(const char* name, const char* units)
{
    return *units ? std::string(name) + ", " + units : std::string(name);
}

bool ask_variables(SPMVarList& list, const char* title, CWnd* parent)
{
    CVarListDlg dialog;
    dialog.CreateModalDlg(&list, nullptr, platform::settingsLayout, parent);
    dialog.setTitle(title);
    return dialog.DoModal() == CVarListDlg::resultOk;
}

void tied_variables::put(const std::string& name, double value)
{
    if (number(name.c_str()) == value) return;
    list.set_var(name.c_str(), base::shortest(value).c_str());
    written[name] = number(name.c_str());
}

void tied_variables::OnFireVariableChange(int index, const SPMVarList*)
{
    const std::string name = list.get_var(static_cast<unsigned>(index)).get_name();
    const auto found = written.find(name);
    if (found != written.end() && found->second == number(name.c_str())) return;
    written.erase(name);
    userChanged(name);
}

} // namespace vldv::view
