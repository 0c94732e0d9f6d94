#pragma once
#include "platform/app/dpi.h"
#include "platform/dialogs/DataExchange.h"
#include "platform/draw/DC.h"
#include "platform/files/interface_directory.h"
#include "platform/profile/profile_double.h"
#include "vldv_api.h"

#include <cstdint>

namespace vldv {

/// What `axis_line::flags` is made of.
enum axis_flags : std::uint32_t {
    AXIS_VERTICAL = 1,
    AXIS_OTHER_SIDE = 2, ///< ticks and labels above a horizontal axis, left of a vertical one; else below and right
    AXIS_LINE = 4,
    AXIS_TICKS = 8,
    AXIS_TEXT = 16,             ///< labels, and the unit at the far end
    AXIS_NO_ZERO_LINE = 32,     ///< of a grid: no line at value 0
    AXIS_NO_REPEATS = 64,       ///< no label that the next tick has as well
    AXIS_KEEP_LINE = 128,       ///< the line stays where it is; else it moves outward by half the pen's width
    AXIS_NO_TICK_AT_ZERO = 256, ///< its label stays
};

/// An axis to be drawn from (x0, y0), where the value is `start`, to (x1, y1), where it is `end`.
struct axis_line {
    CDC* dc = nullptr;             ///< null: nothing is drawn
    const CPen* axisPen = nullptr; ///< null: the pen that is selected
    const CPen* zeroPen = nullptr; ///< of a line as long as a tick at value 0 inside the axis; null: none
    std::uint32_t flags = 0;
    std::int32_t ticNumber = 0; ///< wanted steps, 0: 5
    std::int32_t reserved = 0;
    std::int32_t ticLength = 0; ///< pixels, to which the pen's width is added
    std::int32_t minGap = 0;    ///< smallest distance between two labels, pixels
    std::int32_t x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    double start = 0.0, end = 0.0;
    const char* units = nullptr;
    const char* format = nullptr; ///< printf format of a label with one number, UTF-8; null: digits by the step
};

} // namespace vldv

/// Draws line, ticks, labels and unit as the flags say. Pen and text alignment are as before afterwards; text colour,
/// font and background are the caller's.
VLDV_API void DrawAxisLine(const vldv::axis_line* axis);

/// Draws lines across `rect` at the ticks of axes that start in its lower left corner, with the selected pen.
/// \param mode  bit 0: lines of constant y, bit 1: of constant x
/// \param xTics, yTics  wanted steps, 0: 5
VLDV_API void DrawGrid(CDC* dc, const CRect& rect, int mode, double xStart, double xEnd, double yStart, double yEnd,
                       bool noZeroLine, int xTics, int yTics);
