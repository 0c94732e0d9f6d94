#pragma once
#include "platform/app/keys.h"

#include <QCursor>

namespace vldv::host {

/// The pointer of the toolkit, or a drawn one where it has none.
QCursor qt_cursor(cursor_shape shape);

} // namespace vldv::host
