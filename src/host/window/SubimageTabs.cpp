#include "host/window/SubimageTabs.h"

#include <algorithm>

namespace vldv::host {

QSize CSubimageTabs::tabSizeHint(int index) const
{
    const auto wanted = static_cast<std::size_t>(index);
    while (sizes.size() <= wanted) sizes.push_back(QTabBar::tabSizeHint(static_cast<int>(sizes.size())));
    return sizes[wanted];
}

void CSubimageTabs::tabRemoved(int index)
{
    sizes.resize(std::min(sizes.size(), static_cast<std::size_t>(index)));
    QTabBar::tabRemoved(index);
}

void CSubimageTabs::changeEvent(QEvent* event)
{
    sizes.clear();
    QTabBar::changeEvent(event);
}

} // namespace vldv::host
