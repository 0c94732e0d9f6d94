#pragma once
#include <QIcon>

namespace vldv::host {

/// The picture of a command in toolbars, in the colour of texts there, also after the theme has changed. Null for a
/// command that has none.
QIcon command_icon(unsigned id);

} // namespace vldv::host
