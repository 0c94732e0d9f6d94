#include "resources/commands.h"
#include "resources/menu_parts.h"

namespace vldv {

namespace {

constexpr menu_row mainFile[] = {
    popup(0, "&File"),
    item(1, commands::open, "&Open...", "Ctrl+O"),
    item(1, commands::quickView, "Open &Quick View..."),
    separator(1),
    item(1, commands::saveAll, "Save A&ll Documents..."),
    separator(1),
    item(1, commands::pageSetup, "Page Set&up..."),
    separator(1),
    dynamic(1, commands::firstRecent, commands::lastRecent), // recent files
    popup(1, "R&eopen Closed"),
    dynamic(2, commands::firstClosed, commands::lastClosed), // unsaved when they were closed
    separator(1),
    item(1, commands::exit, "Ex&it"),
};

constexpr menu_row file[] = {
    popup(0, "&File"),
    item(1, commands::open, "&Open...", "Ctrl+O"),
    item(1, commands::quickView, "Open &Quick View..."),
    item(1, commands::close, "&Close", "Ctrl+W"),
    separator(1),
    item(1, commands::save, "&Save", "Ctrl+S"),
    item(1, commands::saveAs, "Save &As...", "Ctrl+Shift+S"),
    item(1, commands::saveAll, "Save A&ll Documents..."),
    item(1, commands::revert, "&Revert"),
    item(1, commands::deleteFile, "&Delete"),
    separator(1),
    item(1, commands::exportView, "E&xport..."),
    item(1, commands::showAll, "&Show all images"),
    item(1, commands::parameters, "&Parameters..."),
    separator(1),
    item(1, commands::pageSetup, "Page Set&up..."),
    item(1, commands::printPreview, "Print Pre&view"),
    item(1, commands::print, "&Print...", "Ctrl+P"),
    separator(1),
    dynamic(1, commands::firstRecent, commands::lastRecent),
    popup(1, "R&eopen Closed"),
    dynamic(2, commands::firstClosed, commands::lastClosed), // unsaved when they were closed
    separator(1),
    item(1, commands::exit, "Ex&it"),
};

constexpr menu_row edit[] = {
    popup(0, "&Edit"),
    item(1, commands::undo, "&Undo", "Ctrl+Z"),
    item(1, commands::redo, "&Redo", "Ctrl+Y"),
    separator(1),
    item(1, commands::copy, "&Copy", "Ctrl+C"),
    item(1, commands::copyText, "Copy &Text", "Ctrl+T"),
    item(1, commands::addText, "&Add Text", "Ctrl+Shift+T"),
    separator(1),
    item(1, commands::selectAll, "Select A&ll", "Ctrl+A"),
};

constexpr menu_row palette[] = {
    popup(0, "&Palette"),
    dynamic(1, commands::firstPalette, commands::lastPalette), // with a strip of each palette
    separator(1),
    item(1, commands::fixedScale, "&Fixed scale"),
    item(1, commands::autoscaling, "&Autoscaling"),
    item(1, commands::perLine, "&Per-line Autoscaling"),
    item(1, commands::perLinePlanefit, "Per-line Autoscaling with Planefit"),
};

constexpr menu_row options[] = {
    popup(0, "&Options"),
    item(1, commands::preferences, "&Preferences..."),
    item(1, commands::settings, "&Settings..."),
};

constexpr menu_row window[] = {
    popup(0, "&Window"),
    item(1, commands::cascade, "&Cascade"),
    item(1, commands::tileHorizontally, "Tile &Horizontally"),
    item(1, commands::tileVertically, "Tile &Vertically"),
    item(1, commands::windows, "&Windows..."),
    separator(1),
    item(1, commands::output, "&Output"),
    item(1, commands::statusBar, "&Status Bar"),
    item(1, commands::toolbar, "&Toolbar"),
    separator(1),
    dynamic(1, commands::firstWindow, commands::lastWindow), // open windows
};

constexpr menu_row help[] = {
    popup(0, "&Help"),
    item(1, commands::help, "&Contents", "F1"),
    item(1, commands::about, "&About Velmira..."),
};

constexpr menu_row scalePopupRows[] = {
    popup(0, "Scale"),
    item(1, commands::firstPalette, "&Custom"),
    item(1, commands::gray, "&Gray"),
    item(1, commands::blue, "&Blue"),
    item(1, commands::brown, "B&rown"),
    item(1, commands::green, "Gr&een"),
    item(1, commands::zebra, "&Zebra"),
    item(1, commands::multicolor1, "Multicolor &1"),
    item(1, commands::multicolor2, "Multicolor &2"),
    dynamic(1, commands::firstFilePalette, commands::lastPalette), // palettes of files
    separator(1),
    item(1, commands::fixedScale, "&Fixed scale"),
    item(1, commands::autoscaling, "&Autoscaling"),
    item(1, commands::perLine, "&Per-line Autoscaling"),
    item(1, commands::perLinePlanefit, "Per-line Autoscaling with Planefit"),
};

constexpr menu_row filePopupRows[] = {
    popup(0, "&File"),
    item(1, commands::save, "&Save"),
    item(1, commands::saveAs, "Save &As..."),
    item(1, commands::revert, "&Revert"),
    item(1, commands::deleteFile, "&Delete"),
    item(1, commands::exportView, "E&xport..."),
    popup(0, "&Edit"),
    item(1, commands::undo, "&Undo"),
    item(1, commands::redo, "&Redo"),
    item(1, commands::copy, "&Copy"),
    item(1, commands::copyText, "Copy &Text"),
    item(1, commands::addText, "&Add Text"),
    item(1, commands::duplicate, "&Duplicate"),
};

constexpr menu_row preferencesPopup[] = {
    separator(0),
    item(0, commands::preferences, "&Preferences..."),
};

constexpr menu_row filtersPopup[] = {
    separator(0),
    item(0, commands::filters, "Filters"),
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

} // namespace vldv
