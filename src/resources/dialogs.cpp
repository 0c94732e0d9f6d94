#include "resources/dialogs.h"

namespace vldv {

namespace {

constexpr dialog_control customPalette[] = {
    {control_kind::pane, 5232, 7, 7, 256, 128, "Lines"},
    {control_kind::pane, 5233, 7, 141, 256, 18, "Sample palette"},
    {control_kind::radio, 5235, 271, 7, 50, 11, "Red"},
    {control_kind::radio, 5236, 271, 20, 50, 11, "Green"},
    {control_kind::radio, 5237, 271, 33, 50, 11, "Blue"},
    {control_kind::button, 5234, 271, 50, 50, 14, "S&mooth"},
    {control_kind::button, 5230, 271, 67, 50, 14, "&Load"},
    {control_kind::button, 5231, 271, 84, 50, 14, "&Save"},
    {control_kind::button, 5191, 271, 101, 50, 14, "Restore"},
    {control_kind::defaultButton, 1, 271, 128, 50, 14, "OK"},
    {control_kind::button, 2, 271, 145, 50, 14, "Cancel"},
};

} // namespace

dialog_layout dialog_resource(unsigned id)
{
    if (id == customPaletteDialog) return {"Custom Palette Editor", customPalette};
    return {};
}

} // namespace vldv
