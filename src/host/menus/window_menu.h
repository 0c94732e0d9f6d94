#pragma once
#include "platform/app/menu_item.h"

#include <cstddef>
#include <memory>
#include <vector>

class CFrameWnd;

namespace vldv::host {

/// The rows of the Window menu for the open windows: the first nine with their numbers as access keys, the active one
/// in the place of the ninth where it comes later. "Windows..." lists them all.
/// \param first  command of the first window; the others follow
std::vector<menu_item> window_rows(const std::vector<std::unique_ptr<CFrameWnd>>& frames, const CFrameWnd* active,
                                   unsigned first);

} // namespace vldv::host
