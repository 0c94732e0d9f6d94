#pragma once
#include "platform/app/FrameWnd.h"
#include "vldv_api.h"

#include <memory>
#include <string>
#include <vector>

namespace vldv::entry {

/// A text for each window that no other has: its title, behind it what tells its document from others of that name.
VLDV_INTERNAL_API std::vector<std::string> window_titles(const std::vector<std::unique_ptr<CFrameWnd>>& frames);

} // namespace vldv::entry
