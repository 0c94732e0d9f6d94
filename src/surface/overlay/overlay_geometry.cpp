#include "surface/overlay/overlay_geometry.h"

namespace vldv::surface {

CPoint to_client(CPoint sample, const view::view_geometry& geometry) noexcept
{
    return {geometry.xToClient(sample.x), geometry.yToClient(sample.y)};
}

std::vector<CPoint> to_client(const std::vector<CPoint>& samples, const view::view_geometry& geometry)
{
    std::vector<CPoint> out;
    out.reserve(samples.size());
    for (const CPoint& sample : samples) out.push_back(to_client(sample, geometry));
    return out;
}

CRect scaled(const selection_rect& rect, const view::view_geometry& geometry) noexcept
{
    return {geometry.xToClient(rect.left), geometry.yToClient(rect.bottom), geometry.xToClient(rect.right),
            geometry.yToClient(rect.top)};
}

CRgn to_client(const CRgn& region, const view::view_geometry& geometry)
{
    if (geometry.source.IsRectEmpty()) return CRgn();
    // Rows of the image run upwards and those of the display downwards: x goes to display.left + (x - source.left) *
    // scale, y to display.top + (source.bottom - y) * scale.
    // Single precision, as regions are transformed by the records of drawing surfaces.
    const float scaleX = static_cast<float>(geometry.display.Width()) / static_cast<float>(geometry.source.Width());
    const float scaleY = static_cast<float>(-geometry.display.Height()) / static_cast<float>(geometry.source.Height());
    const float dx = static_cast<float>(geometry.display.left) - static_cast<float>(geometry.source.left) * scaleX;
    const float dy = static_cast<float>(geometry.display.top) - static_cast<float>(geometry.source.bottom) * scaleY;
    return region.transformed({.m11 = scaleX, .m22 = scaleY, .dx = dx, .dy = dy});
}

} // namespace vldv::surface
