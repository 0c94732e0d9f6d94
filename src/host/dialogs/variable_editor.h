#pragma once
#include "base/SPMVarList.h"

#include <QString>
#include <QWidget>
#include <functional>

namespace vldv::host {

/// The widget that edits one variable, and how it is told of another value.
struct variable_editor {
    QWidget* widget = nullptr;
    /// Shows the value that the variable has now; what is being typed stays.
    std::function<void(const SPMVarList& list, const SPMVar& variable)> show;
};

/// \param store  gets what the user made of it
variable_editor make_variable_editor(const SPMVarList& list, const SPMVar& variable,
                                     const std::function<void(const QString&)>& store);

} // namespace vldv::host
