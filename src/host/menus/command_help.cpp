#include "host/menus/command_help.h"

#include "resources/strings.h"

#include <QAction>

namespace vldv::host {

void set_command_help(QAction& action, unsigned id, const char* shortcut)
{
    const command_prompt prompt = command_prompt_of(id);
    action.setStatusTip(QString::fromStdString(prompt.status));
    QString tip = prompt.tip.empty() ? action.text().remove('&').remove("...") : QString::fromStdString(prompt.tip);
    if (*shortcut) tip += " (" + QString::fromLatin1(shortcut) + ")";
    action.setToolTip(tip);
}

} // namespace vldv::host
