#include "host/menus/window_menu.h"

#include "entry/window_titles.h"
#include "platform/app/FrameWnd.h"

#include <algorithm>
#include <string>

namespace vldv::host {

namespace {

constexpr std::size_t mostRows = 9; // a digit each

} // namespace

std::vector<menu_item> window_rows(const std::vector<std::unique_ptr<CFrameWnd>>& frames, const CFrameWnd* active,
                                   unsigned first)
{
    const std::vector<std::string> titles = entry::window_titles(frames);
    const auto found = std::ranges::find(frames, active, &std::unique_ptr<CFrameWnd>::get);
    const auto current = static_cast<std::size_t>(found - frames.begin());
    std::vector<menu_item> rows;
    for (std::size_t i = 0; i < std::min(titles.size(), mostRows); ++i) {
        const bool takesActive = i + 1 == mostRows && current < titles.size();
        const std::size_t index = takesActive ? std::max(i, current) : i;
        rows.push_back({.id = first + static_cast<unsigned>(index),
                        .text = "&" + std::to_string(i + 1) + " " + menu_text(titles[index])});
    }
    return rows;
}

} // namespace vldv::host
