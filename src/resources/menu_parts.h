#pragma once
#include "resources/menus.h"

namespace vldv {

// Pieces that menus are put together from.

constexpr menu_row popup(std::uint8_t depth, const char* text) { return {depth, menu_kind::popup, 0, 0, text, ""}; }
constexpr menu_row item(std::uint8_t depth, unsigned id, const char* text, const char* shortcut = "")
{
    return {depth, menu_kind::command, id, 0, text, shortcut};
}
constexpr menu_row separator(std::uint8_t depth) { return {depth, menu_kind::separator, 0, 0, "", ""}; }
constexpr menu_row dynamic(std::uint8_t depth, unsigned first, unsigned last)
{
    return {depth, menu_kind::dynamic, first, last, "", ""};
}

using menu_rows = std::span<const menu_row>;

menu_rows file_rows();      ///< the popup "File" of a frame with a document
menu_rows main_file_rows(); ///< the same without a document
menu_rows edit_rows();
menu_rows palette_rows(); ///< the popup "Palette" with the scale's modes
menu_rows options_rows();
menu_rows window_rows();
menu_rows help_rows();

menu_rows surface_rows(); ///< cursor modes, view, mathematics of a surface
menu_rows section_rows();
menu_rows parametric_curve_rows();
menu_rows line_rows();
menu_rows scene_rows(); ///< 3-D surface
menu_rows histogram_rows();
menu_rows fourier_rows();
menu_rows capture_rows();
menu_rows features_rows();
menu_rows features_table_rows();
menu_rows volume_rows();
menu_rows plain_view_rows(); ///< texts, tables, parameters, collages

menu_rows scale_popup_rows();
menu_rows cursor_popup_rows();
menu_rows file_popup_rows();
menu_rows preferences_popup_rows(); ///< tail of a surface's context menu
menu_rows filters_popup_rows();

} // namespace vldv
