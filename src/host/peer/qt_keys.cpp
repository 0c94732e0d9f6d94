#include "host/peer/qt_keys.h"

#include <utility>

namespace vldv::host {

namespace {

constexpr std::pair<int, unsigned> keys[] = {
    {Qt::Key_Backspace, VK_BACK},  {Qt::Key_Tab, VK_TAB},       {Qt::Key_Backtab, VK_TAB},
    {Qt::Key_Return, VK_RETURN},   {Qt::Key_Enter, VK_RETURN},  {Qt::Key_Shift, VK_SHIFT},
    {Qt::Key_Control, VK_CONTROL}, {Qt::Key_Alt, VK_MENU},      {Qt::Key_Escape, VK_ESCAPE},
    {Qt::Key_Space, VK_SPACE},     {Qt::Key_PageUp, VK_PRIOR},  {Qt::Key_PageDown, VK_NEXT},
    {Qt::Key_End, VK_END},         {Qt::Key_Home, VK_HOME},     {Qt::Key_Left, VK_LEFT},
    {Qt::Key_Up, VK_UP},           {Qt::Key_Right, VK_RIGHT},   {Qt::Key_Down, VK_DOWN},
    {Qt::Key_Insert, VK_INSERT},   {Qt::Key_Delete, VK_DELETE}, {Qt::Key_Plus, VK_ADD},
    {Qt::Key_Minus, VK_SUBTRACT},
};

} // namespace

unsigned key_of(const QKeyEvent& event)
{
    const int key = event.key();
    for (const auto& [qt, code] : keys)
        if (qt == key) return code;
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9))
        return static_cast<unsigned>(key);
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return VK_F1 + static_cast<unsigned>(key - Qt::Key_F1);
    return 0;
}

unsigned mouse_flags_of(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    unsigned flags = 0;
    if (buttons & Qt::LeftButton) flags |= MK_LBUTTON;
    if (buttons & Qt::RightButton) flags |= MK_RBUTTON;
    if (buttons & Qt::MiddleButton) flags |= MK_MBUTTON;
    if (modifiers & Qt::ShiftModifier) flags |= MK_SHIFT;
    if (modifiers & Qt::ControlModifier) flags |= MK_CONTROL;
    return flags;
}

} // namespace vldv::host
