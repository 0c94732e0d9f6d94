#pragma once
#include "platform/Clipboard.h"
#include "platform/Screen.h"

#include <memory>

namespace host {

std::unique_ptr<IClipboard> make_clipboard();
std::unique_ptr<IScreen> make_screen();

} // namespace host
