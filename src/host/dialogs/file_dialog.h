#pragma once
#include <string>

class QFileDialog;

namespace vldv::host {

/// What all file dialogs have in common. \param filter  "name|*.a;*.b|name|*.c||"
void prepare_file_dialog(QFileDialog& dialog, const std::string& filter);

} // namespace vldv::host
