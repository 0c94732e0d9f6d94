#pragma once
#include "platform/CmdTarget.h"
#include "resources/menus.h"

#include <functional>
#include <vector>

class QMenu;
class QMenuBar;

namespace host {

using command_route = std::function<bool(unsigned id, CCmdUI* ui)>;

/// Puts rows into a menu; each shows the state that its handler gives when the menu opens. Rows that nothing handles
/// are left out, and with them separators and popups without content.
void fill_menu(QMenu& menu, const std::vector<menu_row>& rows, const command_route& route);
/// The same for a bar, whose popups are filled each time they open.
void fill_menu_bar(QMenuBar& bar, const std::vector<menu_row>& rows, const command_route& route);

} // namespace host
