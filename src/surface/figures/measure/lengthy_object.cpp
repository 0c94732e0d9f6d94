#include "surface/figures/measure/lengthy_object.h"

#include "surface/figures/mask_group.h"
#include "surface/figures/measure/ridge_path.h"

namespace vldv::surface {

namespace {

constexpr std::uint32_t maskColor = 0x00FF00, customColorIndex = 6;

} // namespace

lengthy_trace extended(const lengthy_trace& done, const sample_frame& frame, CPoint to)
{
    if (!frame.contains(to)) return {};
    if (done.path.empty()) return {{to}, {to}};
    lengthy_trace trace = done;
    const std::vector<CPoint> way = ridge_path(frame, done.path.back(), to);
    if (way.size() < 2) return trace;
    trace.path.insert(trace.path.end(), way.begin() + 1, way.end());
    trace.corners.push_back(to);
    return trace;
}

lengthy_trace finished(const lengthy_trace& trace, double radius)
{
    if (!(radius > 0.0)) return trace;
    lengthy_trace kept{simplified(trace.path, radius), {}};
    for (std::size_t i = 0; i < kept.corners.size(); ++i) {
        const std::vector<CPoint> line = straight_path(kept.corners[i ? i - 1 : 0], kept.corners[i]);
        kept.path.insert(kept.path.end(), line.begin() + (i ? 1 : 0), line.end());
    }
    return kept;
}

lengthy_mask::lengthy_mask(const document::decorations* kept, const drawing_axes& axes) : sample_mask(axes.image)
{
    const document::decoration* const mask = kept_mask(kept, lengthyMaskKey);
    if (!mask || mask->elements.empty() || mask->coordinates.size() < 4) return;
    const document::decoration::element& before = mask->elements.front();
    const CSize size{static_cast<int>(before.width), static_cast<int>(before.height)};
    const double* const corners = mask->coordinates.data();
    if (size == axes.image)
        sample_mask::add({size, axes.x.start, axes.y.start, axes.x.at(size.cx), axes.y.at(size.cy), before.bytes},
                         axes);
    else
        sample_mask::add({size, corners[0], corners[1], corners[2], corners[3], before.bytes}, axes);
}

void lengthy_mask::add(std::span<const CPoint> path) noexcept
{
    for (const CPoint& at : path) set(at);
}

VLPluginDecoration lengthy_mask::record(const VLAxis& x, const VLAxis& y)
{
    return sample_mask::record(x, y, lengthyMaskKey, customColorIndex, maskColor);
}

} // namespace vldv::surface
