#include "spectra/figures/features/feature_overlay.h"

namespace vldv::spectra {

namespace {

constexpr std::uint32_t customColorIndex = 6, overlayMode = 6;

template <class Points>
void put_all(feature_overlay& overlay, const Points& points, unsigned char value)
{
    for (const CPoint& point : points) overlay.put(point, value);
}

} // namespace

void feature_overlay::put(CPoint point, unsigned char value) noexcept
{
    if (!working.PtInRect(point)) return;
    const CSize at = point - working.TopLeft();
    bits[static_cast<std::size_t>(at.cy) * static_cast<std::size_t>(working.Width()) +
         static_cast<std::size_t>(at.cx)] = value;
}

VLPluginDecoration feature_overlay::record(const VLAxis& x, const VLAxis& y, const char* key, std::uint32_t color)
{
    bitmap = {.x0 = x.at(working.left),
              .y0 = y.at(working.top),
              .x1 = x.at(working.right),
              .y1 = y.at(working.bottom),
              .width = static_cast<std::uint32_t>(working.Width()),
              .height = static_cast<std::uint32_t>(working.Height()),
              .mode = overlayMode,
              .bytes = bits.data()};
    return {.type = DECORATION_BITMAP,
            .count = 1,
            .colorIndex = customColorIndex,
            .customColor = color,
            .text = nullptr,
            .name = key,
            .data = &bitmap};
}

feature_overlays draw_features(std::span<const Feature> features, const std::function<bool(const Feature&)>& passes,
                               feature_mask_type type, const CRect& working)
{
    const bool isMask = type == feature_mask_type::mask;
    feature_overlays made{{working, static_cast<unsigned char>(isMask ? 1 : 0)}, {working, 0}};
    for (const Feature& feature : features) {
        const bool isPassing = passes(feature);
        feature_overlay& target = isPassing ? made.passing : made.others;
        if (isMask)
            put_all(target, feature.pixels, isPassing ? 0 : 1);
        else if (type == feature_mask_type::contour)
            put_all(target, feature.contour, 1);
        else if (type == feature_mask_type::skeleton)
            put_all(target, feature.skeleton, 1);
    }
    return made;
}

feature_overlay draw_mask(const primitives::bit_image& mask, const CRect& working)
{
    feature_overlay made(working, 1);
    redraw_mask(mask, CRect(0, 0, mask.width(), mask.height()), made.bytes());
    return made;
}

void redraw_mask(const primitives::bit_image& mask, const CRect& part, std::span<unsigned char> bytes)
{
    const auto width = static_cast<std::size_t>(mask.width());
    if (bytes.size() < width * static_cast<std::size_t>(mask.height())) return;
    for (int y = part.top; y < part.bottom; ++y) {
        const std::uint64_t* const bits = mask.row(y);
        unsigned char* const row = bytes.data() + static_cast<std::size_t>(y) * width;
        for (int x = part.left; x < part.right; ++x)
            row[x] = (bits[x / primitives::bitsOfWord] >> (x % primitives::bitsOfWord) & 1) == 0;
    }
}

} // namespace vldv::spectra
