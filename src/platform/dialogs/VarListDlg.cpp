#include "platform/dialogs/VarListDlg.h"

#include "platform/app/WinApp.h"

using namespace vldv;

CVarListDlg::~CVarListDlg()
{
    if (isOpen()) EndDialog(resultCancel);
}

void CVarListDlg::setUp(SPMVarList* list, std::istream* layoutXml, unsigned fallback, CWnd* parent)
{
    rows.SetVarList(list);
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

void CVarListDlg::setAcceptTip(const std::string& text)
{
    for (platform::layout_button& button : dialogLayout.buttons)
        if (button.what == platform::layout_button::kind::ok) button.tip = text;
}

int CVarListDlg::DoModal()
{
    CWinApp* const app = AfxGetApp();
    if (!app || !rows.GetVarList()) return resultCancel;
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
    rows.setPeer(nullptr);
    if (const auto ended = std::move(peer)) ended->close();
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
