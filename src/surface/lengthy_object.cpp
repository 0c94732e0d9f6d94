#include "surface/lengthy_object.h"

#include "surface/ridge_path.h"

namespace surface {

namespace {

constexpr std::uint32_t maskColor = 0x00FF00, customColorIndex = 6, overlayMode = 5;

const document::decoration* kept_mask(const document::decorations* kept)
{
    if (!kept) return nullptr;
    const auto group = kept->all().find(lengthyMaskKey);
    return group == kept->all().end() || group->second.members.empty() ? nullptr : &group->second.members.front();
}

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

lengthy_mask::lengthy_mask(const document::decorations* kept, CSize image_)
    : image(image_), bits(static_cast<std::size_t>(image_.cx) * static_cast<std::size_t>(image_.cy))
{
    const document::decoration* const mask = kept_mask(kept);
    if (!mask || mask->elements.empty()) return;
    const document::decoration::element& before = mask->elements.front();
    if (before.width == static_cast<unsigned>(image.cx) && before.height == static_cast<unsigned>(image.cy) &&
        before.bytes.size() == bits.size())
        bits = before.bytes;
}

void lengthy_mask::add(std::span<const CPoint> path) noexcept
{
    for (const CPoint& at : path)
        if (CRect({0, 0}, image).PtInRect(at))
            bits[static_cast<std::size_t>(at.y) * static_cast<std::size_t>(image.cx) + static_cast<std::size_t>(at.x)] =
                1;
}

VLPluginDecoration lengthy_mask::record(const VLAxis& x, const VLAxis& y)
{
    bitmap = {.x0 = x.start,
              .y0 = y.start,
              .x1 = x.at(image.cx),
              .y1 = y.at(image.cy),
              .width = static_cast<std::uint32_t>(image.cx),
              .height = static_cast<std::uint32_t>(image.cy),
              .mode = overlayMode,
              .bytes = bits.data()};
    return {.type = DECORATION_BITMAP,
            .count = 1,
            .colorIndex = customColorIndex,
            .customColor = maskColor,
            .text = nullptr,
            .name = lengthyMaskKey,
            .data = &bitmap};
}

} // namespace surface
