#pragma once
#include "base/SPMVarList.h"

#include <QString>
#include <QWidget>
#include <functional>

class QLineEdit;

namespace vldv::host {

/// The widget that edits one variable, and how it is told of another value.
struct variable_editor {
    QWidget* widget = nullptr;
    /// Shows the value that the variable has now; what is being typed stays.
    std::function<void(const SPMVarList& list, const SPMVar& variable)> show;
};

/// Gets what the user made of a value. \return it was taken
using storing = std::function<bool(const QString&)>;
/// What is typed and not taken stays in its field, in red, until it is.
variable_editor make_variable_editor(const SPMVarList& list, const SPMVar& variable, const storing& store);
/// The field of an editor whose text was not taken, or null.
QLineEdit* refused_field(QWidget& editor);
/// The text of such a field is given up: the value is shown when it is shown next.
void forget_refused(QLineEdit& field);

} // namespace vldv::host
