#pragma once
#include <string>

class QFileDialog;
class QSize;

namespace vldv::host {

/// What all file dialogs have in common. \param filter  "name|*.a;*.b|name|*.c||"
void prepare_file_dialog(QFileDialog& dialog, const std::string& filter);

/// Gives a dialog that is complete and not yet shown this size, or where the screen is smaller what fits there.
void size_file_dialog(QFileDialog& dialog, const QSize& wanted);

} // namespace vldv::host
