#pragma once

class QFileDialog;

namespace vldv {
struct open_prompt;
}

namespace vldv::host {

/// Shows beside the list of files what the chosen one holds, with a box to switch it off.
void add_preview(QFileDialog& dialog, const open_prompt& prompt);

} // namespace vldv::host
