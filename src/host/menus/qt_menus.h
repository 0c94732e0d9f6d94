#pragma once
#include "platform/app/CmdTarget.h"
#include "platform/app/menu_item.h"
#include "resources/menus.h"

#include <functional>
#include <vector>

class QMenu;
class QMenuBar;

namespace vldv::host {

using command_route = std::function<bool(unsigned id, CCmdUI* ui)>;

/// Who answers for the rows of a menu.
struct menu_source {
    command_route route;
    /// As `CCmdTarget::AppendMenuItems`.
    std::function<bool(unsigned first, std::vector<menu_item>& items)> items;
};

/// Puts rows into a menu; each shows the state that its handler gives now. Rows that nothing handles are left out, and
/// with them separators and popups without content.
void fill_menu(QMenu& menu, const std::vector<menu_row>& rows, const menu_source& source);
/// Fills a menu bar, whose popups are filled each time they open. Popups that stood there before are given back.
void fill_menu_bar(QMenuBar& bar, const std::vector<menu_row>& rows, const menu_source& source);

} // namespace vldv::host
