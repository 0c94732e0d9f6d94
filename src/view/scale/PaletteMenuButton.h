#pragma once
#include "platform/draw/DC.h"
#include "vldv_api.h"

#include <string>

namespace vldv {

/// Sizes of a menu's items, pixels.
struct menu_metrics {
    int imageWidth = 16; ///< of an item's picture
    int imageMargin = 2; ///< around it
    int textMargin = 3;  ///< on both sides of a text
    int textHeight = 12;
    int widestText = 0; ///< of the palettes in this menu
};

} // namespace vldv

/// An item of the palette menu: the host draws the ordinary item with its name, this one a strip of the palette beside
/// it.
class VLDV_API CPaletteMenuButton {
public:
    /// \param image  not used
    CPaletteMenuButton(int paletteId_, unsigned commandId_, const wchar_t* text_, int image);

    unsigned commandId() const noexcept { return command; }
    const std::wstring& text() const noexcept { return name; }
    /// The smallest item.
    static CSize OnCalculateSize(const vldv::menu_metrics& metrics);
    /// Where the strip stands in an item, right of its text; in a vertical menu bar too.
    static CRect stripArea(const CRect& item, const vldv::menu_metrics& metrics);
    void OnDraw(CDC& dc, const CRect& item, const vldv::menu_metrics& metrics, bool isHorizontal) const;

private:
    int paletteId;
    unsigned command;
    std::wstring name;
};
