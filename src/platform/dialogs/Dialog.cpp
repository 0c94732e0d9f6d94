#include "platform/dialogs/Dialog.h"

#include "platform/app/WinApp.h"

int CDialog::DoModal()
{
    closedBy = 0;
    if (CWinApp* const app = AfxGetApp()) app->host().runDialog(*this);
    if (isOpen()) OnCancel(); // the host could not show it
    return closedBy;
}

void CDialog::OnCommand(unsigned id)
{
    if (id == resultOk) OnOK();
    if (id == resultCancel) OnCancel();
}
