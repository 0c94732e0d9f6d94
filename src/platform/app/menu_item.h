#pragma once
#include "platform/draw/geometry.h"
#include "resources/menus.h"
#include "vldv_api.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vldv {

/// An entry that the program puts into a menu when it opens: a command, a separator, or a submenu.
struct menu_item {
    menu_kind kind = menu_kind::command;
    unsigned id = 0;           ///< of a command
    std::string text{};        ///< UTF-8, "&" in front of the access key
    std::string hint{};        ///< for the status line; empty: what the string table says of the command
    bool startsColumn = false; ///< first of a further column, where the host shows columns
    std::vector<menu_item> children{};
};

/// A picture made while the program runs.
struct button_picture {
    CSize size;
    std::vector<std::uint32_t> pixels; ///< rows from the top; from the low byte blue, green, red, opacity
};

/// A button of a toolbar beside those of its resource.
struct toolbar_button {
    unsigned id = 0;          ///< command; 0 separates
    std::string text{};       ///< UTF-8, shown when there is no picture, and in the tip
    std::string hint{};       ///< as of a `menu_item`
    button_picture picture{}; ///< empty: the text stands in its place
};

/// Text from outside for a menu: a "&" in it is shown.
VLDV_INTERNAL_API std::string menu_text(const std::string& shown);

} // namespace vldv
