#include "base/streams/rounding.h"
#include "platform/draw/DC.h"

#include <cmath>
#include <utility>

using namespace vldv;

namespace vldv::platform {

XFORM dc_mapping::toDevice() const noexcept
{
    double scaleX = 1.0, scaleY = 1.0;
    if (mode != MM_TEXT) {
        scaleX = static_cast<double>(viewportExtent.cx) / windowExtent.cx;
        scaleY = static_cast<double>(viewportExtent.cy) / windowExtent.cy;
    }
    // One unit is equally long both ways: the smaller scale holds for both axes, so that the window fits into the
    // viewport. Each axis keeps its own sign, which says whether it is mirrored.
    if (mode == MM_ISOTROPIC) {
        const double scale = std::min(std::fabs(scaleX), std::fabs(scaleY));
        scaleX = std::copysign(scale, scaleX);
        scaleY = std::copysign(scale, scaleY);
    }
    const XFORM page{
        scaleX, 0.0, 0.0, scaleY, static_cast<double>(viewportOrigin.x), static_cast<double>(viewportOrigin.y)};
    return world.then(page);
}

} // namespace vldv::platform

namespace {

CPoint carried(const XFORM& map, CPoint point) noexcept
{
    return {base::nearest_int(point.x * map.m11 + point.y * map.m21 + map.dx),
            base::nearest_int(point.x * map.m12 + point.y * map.m22 + map.dy)};
}

/// The smallest rectangle around the carried corners.
CRect carried(const XFORM& map, const CRect& rect) noexcept
{
    const CPoint corners[] = {carried(map, rect.TopLeft()), carried(map, CPoint{rect.right, rect.top}),
                              carried(map, rect.BottomRight()), carried(map, CPoint{rect.left, rect.bottom})};
    CRect out(corners[0], corners[0]);
    for (const CPoint corner : corners) {
        out.left = std::min(out.left, corner.x), out.right = std::max(out.right, corner.x);
        out.top = std::min(out.top, corner.y), out.bottom = std::max(out.bottom, corner.y);
    }
    return out;
}

// An extent with a zero is refused: the mapping divides by the extents of the window, its inverse by the scales.
CSize replaced_extent(CSize& extent, CSize by) { return by.cx == 0 || by.cy == 0 ? extent : std::exchange(extent, by); }

} // namespace

int CDC::SetMapMode(int mode) { return std::exchange(now.mapping.mode, mode); }
CSize CDC::SetWindowExt(CSize extent) { return replaced_extent(now.mapping.windowExtent, extent); }
CPoint CDC::SetViewportOrg(CPoint origin) { return std::exchange(now.mapping.viewportOrigin, origin); }
CSize CDC::SetViewportExt(CSize extent) { return replaced_extent(now.mapping.viewportExtent, extent); }
XFORM CDC::SetWorldTransform(const XFORM& map) { return std::exchange(now.mapping.world, map); }

CPoint CDC::LPtoDP(CPoint point) const noexcept { return carried(toDevice(), point); }
CPoint CDC::DPtoLP(CPoint point) const noexcept { return carried(toDevice().inverse(), point); }
CRect CDC::LPtoDP(const CRect& rect) const noexcept { return carried(toDevice(), rect); }
CRect CDC::DPtoLP(const CRect& rect) const noexcept { return carried(toDevice().inverse(), rect); }

void CDC::SelectClipRgn(const CRgn* region, region_mode mode)
{
    if (!region) {
        now.clip.reset();
        return;
    }
    // The clip is kept in device pixels, so that a later change of the mapping does not move it. Without one, the other
    // modes combine with the whole device.
    CRgn device = region->transformed(toDevice());
    if (mode == RGN_COPY)
        now.clip = std::move(device);
    else
        now.clip = CRgn::combined(now.clip ? *now.clip : CRgn(CRect({}, deviceSize())), device, mode);
}

void CDC::IntersectClipRect(const CRect& rect)
{
    const CRgn region(rect);
    SelectClipRgn(&region, RGN_AND);
}

CRect CDC::GetClipBox() const
{
    const CRect whole({}, deviceSize());
    if (!now.clip) return DPtoLP(whole);
    CRect box;
    box.IntersectRect(whole, now.clip->GetRgnBox());
    return DPtoLP(box);
}
