#pragma once
#include "platform/app/Clipboard.h"
#include "platform/app/Screen.h"

#include <memory>

namespace vldv::host {

std::unique_ptr<IClipboard> make_clipboard();
std::unique_ptr<IScreen> make_screen();

} // namespace vldv::host
