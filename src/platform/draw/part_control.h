#pragma once
#include "platform/draw/geometry.h"
#include "platform/draw/shown_part.h"
#include "vldv_api.h"

#include <optional>

namespace vldv::platform {

/// The part of curves along X that the user chooses: the wheel zooms around the pointer, the numbers below the pane are
/// taken hold of and dragged. It goes with a window, not with its options. Places are client pixels.
class VLDV_INTERNAL_API part_control {
public:
    const shown_part& part() const noexcept { return shown; }
    /// \param delta  of the wheel, 120 a notch  \param samples  of a curve \return another part is to be shown
    bool turnWheel(int delta, CPoint at, const CRect& pane, std::uint32_t samples) noexcept;
    /// \param axis  where the numbers stand \return they are held now: all of a curve has nowhere to go
    bool takeHold(CPoint at, const CRect& axis) noexcept;
    bool isHeld() const noexcept { return grip.has_value(); }
    /// \return another part is to be shown
    bool drag(CPoint at, const CRect& pane) noexcept;
    void letGo() noexcept { grip.reset(); }
    /// Back to all. \return another part is to be shown
    bool reset() noexcept { return change({}); }

private:
    struct held_axis {
        int from; ///< of the pointer
        shown_part before;
    };
    bool change(const shown_part& wanted) noexcept;

    shown_part shown;
    std::optional<held_axis> grip;
};

/// The strip with the numbers below a pane, `height` pixels high.
inline CRect axis_strip(const CRect& pane, int height) noexcept
{
    return {pane.left, pane.bottom, pane.right, pane.bottom + height};
}

} // namespace vldv::platform
