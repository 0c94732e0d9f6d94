#pragma once

class QFileDialog;

namespace vldv {
struct open_prompt;
}

namespace vldv::host {

/// Shows beside the list of files what the chosen one holds, whether it was walked to or typed, with a box to switch it
/// off. \return the width that this takes
int add_preview(QFileDialog& dialog, const open_prompt& prompt);

} // namespace vldv::host
