#include "platform/VarListDlg.h"

#include "base/option_display.h"
#include "platform/WinApp.h"

CVarListDlg::~CVarListDlg()
{
    if (variables) variables->RemoveFireVariableChangeHandler(this);
}

void CVarListDlg::setUp(SPMVarList* list, std::istream* layoutXml, unsigned fallback, CWnd* parent)
{
    if (variables) variables->RemoveFireVariableChangeHandler(this);
    variables = list;
    variables->AddFireVariableChangeHandler(this);
    owner = parent;
    closedBy = 0;
    auto own = layoutXml ? platform::parse_variable_layout(*layoutXml) : std::nullopt;
    dialogLayout = own ? std::move(*own) : platform::built_in_layout(fallback);
}

bool CVarListDlg::CreateModalDlg(SPMVarList* list, std::istream* layoutXml, unsigned fallback, CWnd* parent)
{
    setUp(list, layoutXml, fallback, parent);
    return true;
}

int CVarListDlg::DoModal()
{
    CWinApp* const app = AfxGetApp();
    if (!app || !variables) return resultCancel;
    app->host().runVariableDialog(*this);
    if (closedBy == 0) closedBy = resultCancel; // the window went away by itself
    return closedBy;
}

bool CVarListDlg::CreateModelessDlg(SPMVarList* list, std::istream* layoutXml, unsigned fallback, CWnd* parent)
{
    setUp(list, layoutXml, fallback, parent);
    CWinApp* const app = AfxGetApp();
    return app && app->host().showVariableDialog(*this);
}

void CVarListDlg::EndDialog(int result)
{
    closedBy = result;
    peer.reset();
}

unsigned CVarListDlg::rowCount() const
{
    unsigned count = 0;
    for (const SPMVar& variable : variables->all())
        if (*variable.get_description()) ++count;
    return count;
}

const SPMVar& CVarListDlg::row(unsigned index) const
{
    for (const SPMVar& variable : variables->all())
        if (*variable.get_description() && index-- == 0) return variable;
    return variables->get_var(unsigned(-1));
}

std::string CVarListDlg::rowText(unsigned index) const { return base::shown_text(*variables, row(index)); }

bool CVarListDlg::edit(unsigned index, const char* text)
{
    SPMVar changed = row(index);
    if (!base::take_shown_text(*variables, changed, text)) return false;
    changed.update_timestamp();
    variables->set_var(changed);
    return true;
}

void CVarListDlg::press(const platform::layout_button& button)
{
    switch (button.what) {
    case platform::layout_button::kind::ok:
        return EndDialog(resultOk);
    case platform::layout_button::kind::cancel:
        return EndDialog(resultCancel);
    case platform::layout_button::kind::user:
        if (handler) handler->OnCommandMessage(button.id.c_str(), this);
        break;
    }
}

void CVarListDlg::OnFireVariableChange(int, const SPMVarList*)
{
    if (peer) peer->refresh();
}
