#pragma once
#include "platform/draw/Region.h"
#include "platform/draw/drawing.h"
#include "vldv_api.h"

#include <optional>

namespace vldv::platform {

/// How logical units become device pixels: the world map first, then the window onto the viewport.
struct VLDV_INTERNAL_API dc_mapping {
    int mode = MM_TEXT;
    CPoint viewportOrigin;
    CSize windowExtent{1, 1}, viewportExtent{1, 1};
    XFORM world;
    bool operator==(const dc_mapping&) const = default;

    /// In `MM_TEXT` only the origin of the viewport counts; in `MM_ISOTROPIC` both axes take the smaller scale.
    XFORM toDevice() const noexcept;
};

/// All that a drawing surface is set to; saved and restored as a whole.
struct dc_state {
    CPen pen;
    CBrush brush;
    CFont font;
    colorEntry textColor = 0;
    colorEntry backColor = 0xFFFFFF;
    int backMode = OPAQUE;
    bool hasTextRim = false; ///< transparent text stands on a rim of one unit in the background colour
    std::uint32_t textAlign = TA_LEFT | TA_TOP;
    int rop2 = R2_COPYPEN;
    poly_fill_mode polyFill = ALTERNATE;
    int stretchMode = COLORONCOLOR;
    CPoint position;    ///< of `MoveTo` and `LineTo`, logical
    CPoint brushOrigin; ///< a hatch starts here, device pixels
    dc_mapping mapping;
    std::optional<CRgn> clip; ///< device pixels; nothing: no clip
};

} // namespace vldv::platform
