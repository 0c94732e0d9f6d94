#pragma once
#include "platform/app/Host.h"

#include <QDialog>
#include <vector>

namespace vldv::host {

/// The files that could not be opened, each with its reason.
class CFailuresDialog : public QDialog {
public:
    CFailuresDialog(const std::vector<file_failure>& failures, QWidget* parent);
};

} // namespace vldv::host
