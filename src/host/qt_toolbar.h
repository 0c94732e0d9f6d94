#pragma once
#include "host/qt_menus.h"

#include <span>

class QAction;
class QToolBar;

namespace host {

/// Puts commands into a bar, those that someone handles now. 0 separates; `palettes` stands for the palette bar.
void fill_toolbar(QToolBar& bar, std::span<const unsigned> ids, const command_route& route, QAction* palettes);
/// Shows the state that the handlers give now.
void refresh_toolbar(QToolBar& bar, const command_route& route);
/// \param large  as large as texts elsewhere; otherwise smaller
void size_toolbar(QToolBar& bar, bool large);

} // namespace host
