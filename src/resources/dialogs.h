#pragma once
#include <cstdint>
#include <span>

namespace vldv {

enum class control_kind : std::uint8_t {
    button,
    defaultButton, ///< the one of the Return key
    radio,         ///< one of the choices of the dialog
    pane,          ///< drawn by the dialog
};

/// A control at its place in dialog units, which grow with the font.
struct dialog_control {
    control_kind kind;
    unsigned id;
    int left, top, width, height;
    const char* text = ""; ///< "&" in front of the access key
};

/// What a dialog shows.
struct dialog_layout {
    const char* title = "";
    std::span<const dialog_control> controls; ///< in the order of the Tab key
};

/// By number; without controls for an unknown one.
dialog_layout dialog_resource(unsigned id);

constexpr unsigned customPaletteDialog = 3006;

} // namespace vldv
