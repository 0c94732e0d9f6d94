#pragma once
#include "platform/app/Clipboard.h"
#include "platform/app/Screen.h"

#include <memory>

namespace host {

std::unique_ptr<IClipboard> make_clipboard();
std::unique_ptr<IScreen> make_screen();

} // namespace host
