#pragma once
#include "platform/draw/drawing.h"
#include "vldv_api.h"

#include <QFont>
#include <string>

namespace vldv::paint {

/// How fonts are asked for on a surface.
struct font_scale {
    double pixelsAUnit = 1.0; ///< of the font's height
    int dpi = 96;             ///< pixels an inch, for a font of the usual height
    bool isPage = false;      ///< outlines are not fitted to pixels
    bool operator==(const font_scale&) const = default;
};

/// The toolkit's font for a font value. A negative height is that of the characters (the em square), a positive one
/// that of the line from ascent to descent, none is ten points whatever the units are.
QFont qt_font(const CFont& font, const font_scale& scale);

/// The font families of the system as a list value, in order.
std::string font_family_list();

/// Lets option declarations ask for them: "vldv:GetFontList*FreeSettingsString".
VLDV_INTERNAL_API void register_fonts();

} // namespace vldv::paint
