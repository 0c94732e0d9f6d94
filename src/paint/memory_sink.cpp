#include "paint/memory_sink.h"

#include <algorithm>
#include <cstring>

namespace vldv::paint {

namespace {

std::uint32_t load(const std::byte* from) noexcept
{
    std::uint32_t pixel;
    std::memcpy(&pixel, from, sizeof pixel);
    return pixel;
}

void store(std::byte* to, std::uint32_t pixel) noexcept { std::memcpy(to, &pixel, sizeof pixel); }

std::byte byte_of(std::uint32_t pixel, int which) noexcept
{
    return static_cast<std::byte>(pixel >> (8 * which) & 255);
}

/// One pixel a row, as upright lines have.
void change_column(std::byte* to, std::ptrdiff_t perRow, int count, raster_op::change by) noexcept
{
    for (int y = 0; y < count; ++y, to += perRow) store(to, (load(to) & by.keep) ^ by.flip);
}

void change_row(std::byte* to, int count, int bytes, raster_op::change by) noexcept
{
    if (bytes == 4) {
        for (int x = 0; x < count; ++x) store(to + 4 * x, (load(to + 4 * x) & by.keep) ^ by.flip);
        return;
    }
    for (int x = 0; x < count; ++x)
        for (int c = 0; c < 3; ++c) to[3 * x + c] = (to[3 * x + c] & byte_of(by.keep, c)) ^ byte_of(by.flip, c);
}

void put_row(std::byte* to, const std::uint32_t* from, int count, int bytes, raster_op op) noexcept
{
    for (int x = 0; x < count; ++x) {
        const raster_op::change by = op.with(from[x]);
        std::byte* const pixel = to + bytes * x;
        for (int c = 0; c < 3; ++c) pixel[c] = (pixel[c] & byte_of(by.keep, c)) ^ byte_of(by.flip, c);
    }
}

/// A plain copy, which the fourth byte does not follow.
void copy_row(std::byte* to, const std::uint32_t* from, int count, int bytes) noexcept
{
    if (bytes == 4) {
        for (int x = 0; x < count; ++x) store(to + 4 * x, (load(to + 4 * x) & 0xFF000000u) | (from[x] & 0x00FFFFFFu));
        return;
    }
    for (int x = 0; x < count; ++x)
        for (int c = 0; c < 3; ++c) to[3 * x + c] = byte_of(from[x], c);
}

void blend_row(std::byte* to, const std::uint32_t* from, int count, int bytes) noexcept
{
    for (int x = 0; x < count; ++x) {
        const std::uint32_t alpha = from[x] >> 24;
        if (alpha == 0) continue;
        for (int c = 0; c < 3; ++c) {
            std::byte& below = to[bytes * x + c];
            // Source over destination with colours that are multiplied by alpha already: D (255 - alpha) / 255 + S,
            // rounded.
            const std::uint32_t kept = (std::to_integer<std::uint32_t>(below) * (255 - alpha) + 127) / 255;
            below = static_cast<std::byte>(std::min(255u, kept + (from[x] >> (8 * c) & 255)));
        }
    }
}

} // namespace

bool memory_sink::isIn(const std::byte* bits) const
{
    const std::byte* const one = rows.row(0);
    const std::byte* const other = rows.row(rows.height - 1);
    return rows.height > 0 && bits >= std::min(one, other) && bits <= std::max(one, other);
}

void memory_sink::fill(std::span<const CRect> rects, colorEntry color, raster_op op)
{
    const raster_op::change by = op.with(pixel_of(color));
    constexpr int wholePixel = 4;
    for (const CRect& rect : rects) {
        if (rect.Width() == 1 && rows.bytes == wholePixel) {
            change_column(rows.row(rect.top) + std::ptrdiff_t{wholePixel} * rect.left, rows.stride, rect.Height(), by);
            continue;
        }
        for (int y = rect.top; y < rect.bottom; ++y)
            change_row(rows.row(y) + std::ptrdiff_t{rows.bytes} * rect.left, rect.Width(), rows.bytes, by);
    }
}

void memory_sink::put(const pixel_block& block, const CRect& part, raster_op op)
{
    for (int y = part.top; y < part.bottom; ++y) {
        std::byte* const to = rows.row(y) + std::ptrdiff_t{rows.bytes} * part.left;
        if (op == raster_op{})
            copy_row(to, block.at(part.left, y), part.Width(), rows.bytes);
        else
            put_row(to, block.at(part.left, y), part.Width(), rows.bytes, op);
    }
}

void memory_sink::blend(const pixel_block& block, const CRect& part)
{
    for (int y = part.top; y < part.bottom; ++y)
        blend_row(rows.row(y) + std::ptrdiff_t{rows.bytes} * part.left, block.at(part.left, y), part.Width(),
                  rows.bytes);
}

} // namespace vldv::paint
