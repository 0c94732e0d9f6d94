#include "surface/figures/sample_mask.h"

#include <algorithm>

namespace vldv::surface {

namespace {

constexpr std::uint32_t overlayMode = 5;

} // namespace

sample_mask::sample_mask(CSize image_)
    : image(image_), bits(static_cast<std::size_t>(image_.cx) * static_cast<std::size_t>(image_.cy))
{
}

void sample_mask::set(CPoint at) noexcept
{
    if (!CRect({0, 0}, image).PtInRect(at)) return;
    bits[static_cast<std::size_t>(at.y) * static_cast<std::size_t>(image.cx) + static_cast<std::size_t>(at.x)] = 1;
}

bool sample_mask::assign(CSize size, std::span<const unsigned char> other)
{
    if (size != image || other.size() != bits.size()) return false;
    std::ranges::copy(other, bits.begin());
    return true;
}

VLPluginDecoration sample_mask::record(const VLAxis& x, const VLAxis& y, const char* name, std::uint32_t colorIndex,
                                       std::uint32_t customColor)
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
            .colorIndex = colorIndex,
            .customColor = customColor,
            .text = nullptr,
            .name = name,
            .data = &bitmap};
}

} // namespace vldv::surface
