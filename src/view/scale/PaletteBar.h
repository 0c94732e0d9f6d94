#pragma once
#include "view/Scale.h"
#include "vldv_api.h"

#include <cstddef>
#include <span>
#include <vector>

/// The colour scale in a toolbar, which all views follow: once it stands in one it is the static scale.
class VLDV_API CPaletteBar {
public:
    static constexpr int length = 256, width = 27; ///< pixels

    CPaletteBar() { strip.SetDimensions(length, width); }

    CScale& scale() noexcept { return strip; }
    const CScale& scale() const noexcept { return strip; }
    /// Room in a bar that offers a button this size: its own length along the bar, the bar's width across.
    CSize OnCalculateSize(CSize offered, bool isHorizontal) const;
    /// The bar has another parent, which gave the strip its window.
    void OnChangeParentWnd(bool isToolbar);
    /// The bar lies along another side of the main window.
    void OnOrientationChanged(bool isHorizontal) { strip.SetDirection(isHorizontal ? tdHorizontal : tdVertical); }
    /// Where the strip has no window: in a list of commands, on a picture of the bar.
    void OnDraw(CDC& dc, const CRect& rect) const { strip.DrawScale(dc, rect); }
    CWnd* GetHwnd() noexcept { return strip.getPeer() ? &strip : nullptr; }
    bool NotifyCommand(unsigned id) { return strip.OnCmdMsg(id, nullptr); }
    /// Takes palette, direction, mode and window.
    void CopyFrom(const CPaletteBar& source);

    /// Size, palette, direction, mode, window and its units as little-endian bytes.
    std::vector<std::byte> Serialize() const;
    /// Takes what `Serialize` gave. \return false, with nothing changed, for bytes that are none of it
    bool Serialize(std::span<const std::byte> bytes);

private:
    CScale strip;
};
