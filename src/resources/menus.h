#pragma once
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vldv {

enum class menu_kind : std::uint8_t {
    popup,     ///< a submenu: the rows one level deeper that follow are its content
    command,   ///< sends `id`
    separator, ///<
    dynamic,   ///< stands for the commands `id` … `lastId`, which the program fills in when the menu opens
};

/// One line of a menu.
struct menu_row {
    std::uint8_t depth; ///< 0: of the menu bar or a popup's own level
    menu_kind kind;
    unsigned id = 0;
    unsigned lastId = 0;       ///< of a dynamic row
    const char* text = "";     ///< "&" in front of the access key
    const char* shortcut = ""; ///< "Ctrl+D", or empty
};

/// The rows of a menu by number: the bar of a frame (101 to 125 as its template), of the main window without a
/// document (`mainMenu`), or a popup (104 the colour scale's, 111 cursor modes, 126 file operations). Empty for an
/// unknown number.
VLDV_INTERNAL_API std::vector<menu_row> menu_resource(unsigned id);

constexpr unsigned mainMenu = 100, scalePopup = 104, cursorModePopup = 111, fileOperationsPopup = 126;

/// The context menu of a surface, put together by its options "context_menu.cursor_mode", ".file_operations" and
/// ".filters". Empty when all are off: the preferences open in its place.
std::vector<menu_row> surface_context_menu(bool hasCursorModes, bool hasFileOperations, bool hasFilters);

/// The commands of a toolbar by the number of its frame's template, 0 for a separator; `mainMenu` is the main one.
VLDV_INTERNAL_API std::span<const unsigned> toolbar_resource(unsigned id);

/// Numbers of all menus.
VLDV_INTERNAL_API std::vector<unsigned> menu_resource_ids();

} // namespace vldv
