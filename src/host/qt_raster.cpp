#include "host/qt_raster.h"

#include <array>

namespace host {

QPainter::CompositionMode composition_of(int rop2) noexcept
{
    constexpr std::array<QPainter::CompositionMode, 16> modes = {
        QPainter::RasterOp_ClearDestination,           // R2_BLACK
        QPainter::RasterOp_NotSourceAndNotDestination, // R2_NOTMERGEPEN
        QPainter::RasterOp_NotSourceAndDestination,    // R2_MASKNOTPEN
        QPainter::RasterOp_NotSource,                  // R2_NOTCOPYPEN
        QPainter::RasterOp_SourceAndNotDestination,    // R2_MASKPENNOT
        QPainter::RasterOp_NotDestination,             // R2_NOT
        QPainter::RasterOp_SourceXorDestination,       // R2_XORPEN
        QPainter::RasterOp_NotSourceOrNotDestination,  // R2_NOTMASKPEN
        QPainter::RasterOp_SourceAndDestination,       // R2_MASKPEN
        QPainter::RasterOp_NotSourceXorDestination,    // R2_NOTXORPEN
        QPainter::CompositionMode_Destination,         // R2_NOP
        QPainter::RasterOp_NotSourceOrDestination,     // R2_MERGENOTPEN
        QPainter::CompositionMode_SourceOver,          // R2_COPYPEN
        QPainter::RasterOp_SourceOrNotDestination,     // R2_MERGEPENNOT
        QPainter::RasterOp_SourceOrDestination,        // R2_MERGEPEN
        QPainter::RasterOp_SetDestination,             // R2_WHITE
    };
    return rop2 >= R2_BLACK && rop2 <= R2_WHITE ? modes[static_cast<std::size_t>(rop2 - 1)]
                                                : QPainter::CompositionMode_SourceOver;
}

blit_composition composition_of(raster_op3 operation) noexcept
{
    switch (operation) {
    case BLACKNESS:
        return {QPainter::RasterOp_ClearDestination, false};
    case WHITENESS:
        return {QPainter::RasterOp_SetDestination, false};
    case DSTINVERT:
        return {QPainter::RasterOp_NotDestination, false};
    case NOTSRCCOPY:
        return {QPainter::RasterOp_NotSource, true};
    case SRCERASE:
        return {QPainter::RasterOp_SourceAndNotDestination, true};
    case SRCINVERT:
    case PATINVERT:
        return {QPainter::RasterOp_SourceXorDestination, true};
    case SRCAND:
        return {QPainter::RasterOp_SourceAndDestination, true};
    case SRCPAINT:
        return {QPainter::RasterOp_SourceOrDestination, true};
    default:
        return {QPainter::CompositionMode_SourceOver, true};
    }
}

} // namespace host
