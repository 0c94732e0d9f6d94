#include "resources/menu_parts.h"

namespace {

constexpr menu_row plainView[] = {
    popup(0, "&View"),
    item(1, 10020, "Sho&w Legend"),
    item(1, 10138, "Full Screen", "F11"),
};

constexpr menu_row surface[] = {
    popup(0, "&View"),
    item(1, 10020, "Sho&w Legend"),
    item(1, 10023, "File &Information"),
    item(1, 10082, "C&ompact Legend"),
    item(1, 10084, "&Z Scale"),
    item(1, 10191, "&Hilighted"),
    item(1, 10192, "&Inverted"),
    item(1, 10112, "Remember &Palette"),
    separator(1),
    item(1, 10121, "&Actual pixels"),
    item(1, 10017, "&Normalize"),
    item(1, 10138, "Full Screen", "F11"),
    item(1, 10145, "Show &Zoom window"),
    separator(1),
    item(1, 10016, "&Refresh", "F5"),
    item(1, 10014, "&Auto Refresh"),
    separator(1),
    item(1, 10151, "&Duplicate"),
    item(1, 10157, "Display Parameters"),
    popup(0, "&Cursor"),
    item(1, 6001, "&Rectangle"),
    item(1, 6002, "&Ellipse"),
    item(1, 6011, "&Isoline"),
    item(1, 6003, "&Section"),
    item(1, 6004, "&Distance"),
    item(1, 6005, "&Angle"),
    item(1, 6006, "&Marks"),
    item(1, 6007, "Cur&ve"),
    item(1, 6008, "&Line Profile"),
    item(1, 6009, "&Column Profile"),
    item(1, 6010, "&Lengthy Objects"),
    item(1, 6012, "Include features"),
    item(1, 6013, "Exclude features"),
    separator(1),
    popup(1, "Marks st&yle"),
    item(2, 6101, "&Arrows"),
    item(2, 6102, "&V"),
    separator(2),
    item(2, 10028, "&Numbered"),
    popup(1, "Cl&ear"),
    item(2, 10027, "&Marks"),
    item(2, 10029, "Cur&ve"),
    item(2, 10166, "Decorations"),
    separator(1),
    item(1, 10143, "&Inverse Selection", "Ctrl+Shift+I"),
    popup(1, "Re&gion of interest"),
    item(2, 10101, "&Select"),
    item(2, 10102, "&Clear"),
    popup(1, "Decora&tions"),
    item(2, 10094, "&Save..."),
    item(2, 10095, "&Load..."),
    item(1, 10088, "&Convert Curve to Section"),
    item(1, 10100, "Measure &Distance && Height", "Ctrl+D"),
    popup(0, "&Mathematics"),
    item(1, 10015, "&Build 3D View"),
    item(1, 10031, "&Histogram"),
    item(1, 10045, "&Fourier"),
    item(1, 10064, "&Enum Features"),
    item(1, 10130, "Find &Steps"),
    separator(1),
    item(1, 10080, "Resolution..."),
    item(1, 10097, "Resa&mple"),
    item(1, 10096, "C&reate Calibration Curve"),
    separator(1),
    item(1, 10033, "Macros..."),
    dynamic(1, 9193, 9999), // macros and functions of modules
};

constexpr menu_row cursorPopup[] = {
    popup(0, "&Cursor"),
    item(1, 6001, "&Rectangle"),
    item(1, 6002, "&Ellipse"),
    item(1, 6011, "&Isoline"),
    item(1, 6003, "&Section"),
    item(1, 6004, "&Distance"),
    item(1, 6005, "&Angle"),
    item(1, 6006, "&Marks"),
    item(1, 6007, "Cur&ve"),
    item(1, 6008, "&Line Profile"),
    item(1, 6009, "&Column Profile"),
    item(1, 6010, "&Lengthy Objects"),
    popup(0, "Cl&ear"),
    item(1, 10027, "&Marks"),
    item(1, 10029, "Cur&ve"),
    item(1, 10166, "Decorations"),
    popup(0, "Re&gion of interest"),
    item(1, 10101, "&Select"),
    item(1, 10102, "&Clear"),
};

constexpr menu_row section[] = {
    popup(0, "&View"),
    item(1, 10020, "Sho&w Legend"),
    item(1, 10138, "Full Screen", "F11"),
    separator(1),
    item(1, 10016, "&Refresh", "F5"),
    item(1, 10151, "&Duplicate"),
    item(1, 10157, "Display Parameters"),
    popup(0, "&Mathematics"),
    item(1, 10113, "&Differentiate"),
    popup(1, "&Autocorrelation"),
    item(2, 10132, "&Finite"),
    item(2, 10141, "&Cyclic"),
    popup(1, "&Structure function"),
    item(2, 10135, "&Finite"),
    item(2, 10142, "&Cyclic"),
    item(1, 10031, "&Histogram"),
    item(1, 10122, "&Select X curve..."),
    separator(1),
    item(1, 10116, "&Force curve analysis"),
    item(1, 10147, "Build &separation curve"),
    item(1, 10140, "Separation curve and &WLC fit"),
    item(1, 10150, "Build &normalized force curve"),
    separator(1),
    item(1, 10033, "Macros..."),
    dynamic(1, 9193, 9999),
};

constexpr menu_row line[] = {
    popup(0, "&View"),
    item(1, 10020, "Sho&w Legend"),
    item(1, 10138, "Full Screen", "F11"),
    item(1, 10016, "&Refresh", "F5"),
};

constexpr menu_row scene[] = {
    popup(0, "&View"),
    item(1, 10020, "Sho&w Legend"),
    item(1, 10139, "&Stereo", "S"),
    item(1, 10138, "Full Screen", "F11"),
    item(1, 10016, "&Refresh", "F5"),
};

constexpr menu_row volume[] = {
    popup(0, "&View"),
    item(1, 10020, "Sho&w Legend"),
    item(1, 10139, "&Stereo", "S"),
    item(1, 10138, "Full Screen", "F11"),
    popup(0, "&Volume"),
    item(1, 10119, "&Build Slice"),
    item(1, 10120, "&Align on Slice"),
    item(1, 10116, "&Force curve analysis"),
    separator(1),
    item(1, 10033, "Macros..."),
    dynamic(1, 9193, 9999),
};

constexpr menu_row histogram[] = {
    popup(0, "&View"),
    item(1, 10020, "Sho&w Legend"),
    item(1, 10138, "Full Screen", "F11"),
    item(1, 10016, "&Refresh", "F5"),
    popup(0, "&Histogram"),
    item(1, 10061, "Cutoff"),
    item(1, 10080, "Resolution..."),
};

constexpr menu_row fourier[] = {
    popup(0, "&View"),
    item(1, 10020, "Sho&w Legend"),
    item(1, 10017, "&Normalize"),
    item(1, 10138, "Full Screen", "F11"),
    item(1, 10016, "&Refresh", "F5"),
    popup(0, "F&ourier"),
    item(1, 6201, "&Select"),
    item(1, 6202, "&Marks"),
    separator(1),
    item(1, 10046, "Zero &Inner"),
    item(1, 10047, "Zero &Outer"),
    item(1, 10098, "Increase", "Ctrl+Up"),
    item(1, 10099, "Decrease", "Ctrl+Down"),
    popup(1, "&Contrast"),
    item(2, 10048, "&More...", "Ctrl+M"),
    item(2, 10049, "&Less...", "Ctrl+L"),
    item(2, 10050, "&Restore"),
    popup(1, "Cl&ear"),
    item(2, 10051, "&Selection"),
    item(2, 10052, "&Marks"),
};

constexpr menu_row features[] = {
    popup(0, "&View"),
    item(1, 10020, "Sho&w Legend"),
    item(1, 10138, "Full Screen", "F11"),
    item(1, 10016, "&Refresh", "F5"),
    popup(0, "Fe&atures"),
    popup(1, "&Remove"),
    item(2, 10067, "Filtered"),
    item(2, 10171, "Selected"),
    item(1, 10136, "Fill inner areas"),
    item(1, 10104, "E&xclude filtered from histogram"),
    item(1, 10068, "Profile average &height"),
};

constexpr menu_row capture[] = {
    popup(0, "&Video"),
    item(1, 10164, "&Record"),
    item(1, 10165, "&Stop"),
    separator(1),
    item(1, 10072, "&Capture frame"),
    item(1, 10078, "Capture &multiple frames"),
    separator(1),
    item(1, 10074, "Restore original size"),
    item(1, 10138, "Full Screen", "F11"),
};

} // namespace

menu_rows plain_view_rows() { return plainView; }
menu_rows surface_rows() { return surface; }
menu_rows cursor_popup_rows() { return cursorPopup; }
menu_rows section_rows() { return section; }
menu_rows line_rows() { return line; }
menu_rows scene_rows() { return scene; }
menu_rows volume_rows() { return volume; }
menu_rows histogram_rows() { return histogram; }
menu_rows fourier_rows() { return fourier; }
menu_rows features_rows() { return features; }
menu_rows capture_rows() { return capture; }
