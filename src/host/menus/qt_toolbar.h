#pragma once
#include "host/menus/qt_menus.h"
#include "platform/app/menu_item.h"

#include <span>

class QAction;
class QToolBar;

namespace vldv::host {

/// What becomes of commands that nobody handles now.
enum class unhandled { leftOut, disabled };

/// Puts commands into a bar. 0 separates; `palettes` stands for the palette bar.
void fill_toolbar(QToolBar& bar, std::span<const unsigned> ids, const command_route& route, QAction* palettes,
                  unhandled others = unhandled::leftOut);
/// Puts buttons with pictures of their own behind them.
void add_buttons(QToolBar& bar, const std::vector<toolbar_button>& buttons, const command_route& route);
/// Takes everything out and gives back what `fill_toolbar` and `add_buttons` made.
void clear_toolbar(QToolBar& bar);
/// Shows the state that the handlers give now.
void refresh_toolbar(QToolBar& bar, const command_route& route);
/// \param large  pictures of 24 pixels and texts as elsewhere; otherwise 16 and smaller ones
void size_toolbar(QToolBar& bar, bool large);

} // namespace vldv::host
