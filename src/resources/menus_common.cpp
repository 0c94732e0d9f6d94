#include "resources/menu_parts.h"

namespace {

constexpr menu_row mainFile[] = {
    popup(0, "&File"),
    item(1, 57601, "&Open...", "Ctrl+O"),
    item(1, 10200, "Open &Quick View..."),
    separator(1),
    item(1, 10201, "Save A&ll Documents..."),
    separator(1),
    item(1, 57605, "Page Set&up..."),
    separator(1),
    dynamic(1, 57616, 57631), // recent files
    popup(1, "R&eopen Closed"),
    dynamic(2, 10220, 10239), // unsaved when they were closed
    separator(1),
    item(1, 57665, "E&xit"),
};

constexpr menu_row file[] = {
    popup(0, "&File"),
    item(1, 57601, "&Open...", "Ctrl+O"),
    item(1, 10200, "Open &Quick View..."),
    item(1, 57602, "&Close", "Ctrl+W"),
    separator(1),
    item(1, 57603, "&Save", "Ctrl+S"),
    item(1, 57604, "Save &As...", "Ctrl+Shift+S"),
    item(1, 10201, "Save A&ll Documents..."),
    item(1, 10025, "&Revert"),
    item(1, 10026, "&Delete"),
    separator(1),
    item(1, 10057, "E&xport..."),
    item(1, 10060, "&Show all images"),
    item(1, 10041, "&Parameters..."),
    separator(1),
    item(1, 57605, "Page Set&up..."),
    item(1, 57609, "Print Pre&view"),
    item(1, 57607, "&Print...", "Ctrl+P"),
    separator(1),
    dynamic(1, 57616, 57631),
    popup(1, "R&eopen Closed"),
    dynamic(2, 10220, 10239), // unsaved when they were closed
    separator(1),
    item(1, 57665, "E&xit"),
};

constexpr menu_row edit[] = {
    popup(0, "&Edit"),
    item(1, 57643, "&Undo", "Ctrl+Z"),
    item(1, 57644, "&Redo", "Ctrl+Y"),
    separator(1),
    item(1, 57634, "&Copy", "Ctrl+C"),
    item(1, 10021, "Copy &Text", "Ctrl+T"),
    item(1, 10022, "&Add Text", "Ctrl+Shift+T"),
    separator(1),
    item(1, 57642, "Select A&ll", "Ctrl+A"),
};

constexpr menu_row palette[] = {
    popup(0, "&Palette"),
    dynamic(1, 12001, 12100), // with a strip of each palette
    separator(1),
    item(1, 10152, "&Fixed scale"),
    item(1, 10011, "&Autoscaling"),
    item(1, 10154, "&Per-line Autoscaling"),
    item(1, 10156, "Per-line Autoscaling with Planefit"),
};

constexpr menu_row options[] = {
    popup(0, "&Options"),
    item(1, 10118, "&Preferences..."),
    item(1, 10202, "&Settings..."),
};

constexpr menu_row window[] = {
    popup(0, "&Window"),
    item(1, 57650, "&Cascade"),
    item(1, 57651, "Tile &Horizontally"),
    item(1, 57652, "Tile &Vertically"),
    item(1, 10204, "&Windows..."),
    separator(1),
    item(1, 10205, "&Output"),
    item(1, 59393, "&Status Bar"),
    item(1, 59392, "&Toolbar"),
    separator(1),
    dynamic(1, 65280, 65379), // open windows
};

constexpr menu_row help[] = {
    popup(0, "&Help"),
    item(1, 10206, "&Contents", "F1"),
    item(1, 57664, "&About Velmira..."),
};

constexpr menu_row scalePopupRows[] = {
    popup(0, "Scale"),
    item(1, 12001, "&Custom"),
    item(1, 12002, "&Gray"),
    item(1, 12003, "&Blue"),
    item(1, 12004, "B&rown"),
    item(1, 12005, "Gr&een"),
    item(1, 12006, "&Zebra"),
    item(1, 12007, "Multicolor &1"),
    item(1, 12008, "Multicolor &2"),
    dynamic(1, 12009, 12100), // palettes of files
    separator(1),
    item(1, 10152, "&Fixed scale"),
    item(1, 10011, "&Autoscaling"),
    item(1, 10154, "&Per-line Autoscaling"),
    item(1, 10156, "Per-line Autoscaling with Planefit"),
};

constexpr menu_row filePopupRows[] = {
    popup(0, "&File"),
    item(1, 57603, "&Save"),
    item(1, 57604, "Save &As..."),
    item(1, 10025, "&Revert"),
    item(1, 10026, "&Delete"),
    item(1, 10057, "E&xport..."),
    popup(0, "&Edit"),
    item(1, 57643, "&Undo"),
    item(1, 57644, "&Redo"),
    item(1, 57634, "&Copy"),
    item(1, 10021, "Copy &Text"),
    item(1, 10022, "&Add Text"),
    item(1, 10151, "&Duplicate"),
};

constexpr menu_row preferencesPopup[] = {
    separator(0),
    item(0, 10118, "&Preferences..."),
};

constexpr menu_row filtersPopup[] = {
    separator(0),
    item(0, 10183, "Filters"),
};

} // namespace

menu_rows file_rows() { return file; }
menu_rows main_file_rows() { return mainFile; }
menu_rows edit_rows() { return edit; }
menu_rows palette_rows() { return palette; }
menu_rows options_rows() { return options; }
menu_rows window_rows() { return window; }
menu_rows help_rows() { return help; }
menu_rows scale_popup_rows() { return scalePopupRows; }
menu_rows file_popup_rows() { return filePopupRows; }
menu_rows preferences_popup_rows() { return preferencesPopup; }
menu_rows filters_popup_rows() { return filtersPopup; }
