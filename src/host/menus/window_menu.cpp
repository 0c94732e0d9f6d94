#include "host/menus/window_menu.h"

#include "base/text.h"
#include "entry/save_documents.h"
#include "platform/app/FrameWnd.h"
#include "view/DCView.h"

#include <algorithm>
#include <string>

namespace vldv::host {

namespace {

constexpr std::size_t mostRows = 9; // a digit each

/// Titles that tell all windows apart.
std::vector<std::string> titles_of(const std::vector<std::unique_ptr<CFrameWnd>>& frames)
{
    std::vector<std::string> titles;
    std::vector<CDocument*> documents;
    for (const std::unique_ptr<CFrameWnd>& frame : frames) {
        titles.push_back(base::narrow(frame->GetWindowText()));
        documents.push_back(frame->GetActiveView() ? frame->GetActiveView()->GetDocument() : nullptr);
    }
    return entry::telling_labels(std::move(titles), documents);
}

} // namespace

std::vector<menu_item> window_rows(const std::vector<std::unique_ptr<CFrameWnd>>& frames, const CFrameWnd* active,
                                   unsigned first)
{
    const std::vector<std::string> titles = titles_of(frames);
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
