#pragma once
#include "platform/app/keys.h"

namespace vldv::surface {

/// The pointer over a surface: it tells what a press does.
struct tool_pointer {
    int number = 0; ///< of the resource
    cursor_shape shape = cursor_shape::cross;
};

/// Which keys are down.
struct modifier_keys {
    bool control = false, alt = false, shift = false;
};

} // namespace vldv::surface
