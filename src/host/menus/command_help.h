#pragma once

class QAction;

namespace vldv::host {

/// Gives an action what is said of its command: a sentence for the status bar, and a word or two with the key beside
/// the button. \param shortcut  "Ctrl+O", or empty
void set_command_help(QAction& action, unsigned id, const char* shortcut);

} // namespace vldv::host
