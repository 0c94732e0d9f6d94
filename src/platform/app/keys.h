#pragma once

namespace vldv {

/// Keys by the numbers that stored shortcuts use; letters and digits are their upper-case characters.
enum key_code : unsigned {
    VK_BACK = 0x08,
    VK_TAB = 0x09,
    VK_RETURN = 0x0D,
    VK_SHIFT = 0x10,
    VK_CONTROL = 0x11,
    VK_MENU = 0x12, ///< Alt
    VK_ESCAPE = 0x1B,
    VK_SPACE = 0x20,
    VK_PRIOR = 0x21,
    VK_NEXT = 0x22,
    VK_END = 0x23,
    VK_HOME = 0x24,
    VK_LEFT = 0x25,
    VK_UP = 0x26,
    VK_RIGHT = 0x27,
    VK_DOWN = 0x28,
    VK_INSERT = 0x2D,
    VK_DELETE = 0x2E,
    VK_ADD = 0x6B,
    VK_SUBTRACT = 0x6D,
    VK_F1 = 0x70,
    VK_F11 = 0x7A,
};

/// Buttons and keys that are down during a mouse event.
enum mouse_flags : unsigned {
    MK_LBUTTON = 0x01,
    MK_RBUTTON = 0x02,
    MK_SHIFT = 0x04,
    MK_CONTROL = 0x08,
    MK_MBUTTON = 0x10,
};

/// Pointer shapes.
enum class cursor_shape {
    arrow,
    cross,
    hand,
    grab,
    move,
    sizeHorizontal,
    sizeVertical,
    sizeFalling,
    sizeRising,
    text,
    wait,
    forbidden,
    pen,
    eraser,
    rotate,
    zoom,
    crossPlus,
    crossMinus,
    // A cross with the sign of what a press draws.
    crossRectangle,
    crossEllipse,
    crossSection,
    crossDistance,
    crossAngle,
    crossMark,
    crossCurve,
    crossLine,
    crossColumn,
    crossLengthyObject,
    crossIsoline,
};

} // namespace vldv

using enum vldv::mouse_flags;
using enum vldv::key_code;
