#pragma once
#include "platform/app/keys.h"

#include <QKeyEvent>

namespace vldv::host {

/// The key as a `key_code`; 0 for one that the logic does not know.
unsigned key_of(const QKeyEvent& event);
unsigned mouse_flags_of(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);

} // namespace vldv::host
