#include "platform/app/Clipboard.h"

#include "platform/app/WinApp.h"

namespace vldv {

open_clipboard::open_clipboard()
{
    CWinApp* const app = AfxGetApp();
    IClipboard* const found = app ? app->host().clipboard() : nullptr;
    if (found && found->open()) clipboard = found;
}

open_clipboard::~open_clipboard()
{
    if (clipboard) clipboard->close();
}

} // namespace vldv
