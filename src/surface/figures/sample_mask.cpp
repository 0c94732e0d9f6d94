#include "surface/figures/sample_mask.h"

#include <algorithm>
#include <cmath>

namespace vldv::surface {

namespace {

constexpr std::uint32_t overlayMode = 5;

/// Which samples of an axis lie under each of `count` equal pieces from `from` to `to`: those whose middles do, or the
/// one that holds the middle of the piece. Within `length` samples; empty spans for pieces outside.
std::vector<sample_span> spans_under(const VLAxis& axis, double from, double to, int count, int length)
{
    std::vector<sample_span> spans;
    const double first = (from - axis.start) / axis.scale, step = (to - from) / axis.scale / count;
    for (int i = 0; i < count; ++i) {
        const auto [low, high] = std::minmax({first + i * step, first + (i + 1) * step});
        if (!(high > 0.0 && low < length)) {
            spans.push_back({});
            continue;
        }
        const double begin = std::max(std::ceil(low - 0.5), 0.0), end = std::min(std::ceil(high - 0.5), double(length));
        const int middle = std::clamp(static_cast<int>(std::floor((low + high) / 2)), 0, length - 1);
        if (begin < end)
            spans.push_back({static_cast<int>(begin), static_cast<int>(end)});
        else
            spans.push_back({middle, middle + 1});
    }
    return spans;
}

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

void sample_mask::add(const placed_bitmap& other, const drawing_axes& axes)
{
    const auto [width, height] = other.size;
    if (width <= 0 || height <= 0 ||
        other.bytes.size() < static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
        return;
    const std::vector<sample_span> columns = spans_under(axes.x, other.x0, other.x1, width, image.cx);
    const std::vector<sample_span> rows = spans_under(axes.y, other.y0, other.y1, height, image.cy);
    const unsigned char* at = other.bytes.data();
    for (const sample_span& row : rows)
        for (const sample_span& column : columns)
            if (*at++ != 0) fill(column, row);
}

void sample_mask::fill(const sample_span& columns, const sample_span& rows) noexcept
{
    for (int y = rows.first; y < rows.end; ++y)
        for (int x = columns.first; x < columns.end; ++x) set({x, y});
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
