#include "document/samples/packed_bitmap.h"

#include "document/samples/bitmap_heights.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace vldv::document {

namespace {

std::size_t palette_bytes(const BITMAPINFOHEADER& header) noexcept
{
    return std::size_t{header.biClrUsed} * sizeof(RGBQUAD);
}

std::size_t pixel_bytes(const BITMAPINFOHEADER& header) noexcept
{
    return bitmap_row_bytes(header) * static_cast<std::size_t>(header.biHeight);
}

std::shared_ptr<BITMAPINFOHEADER> new_block(std::size_t bytes)
{
    void* const block = std::malloc(bytes);
    if (!block) throw std::bad_alloc();
    return {static_cast<BITMAPINFOHEADER*>(block), std::free};
}

/// As `pack_bitmap` makes them; the count of bytes tells the palette's.
bool is_true_header(const BITMAPINFOHEADER& header) noexcept
{
    return header.biSize == sizeof header && is_convertible_bitmap(header) && header.biSizeImage == pixel_bytes(header);
}

} // namespace

packed_bitmap pack_bitmap(BITMAPINFOHEADER header, const void* bits, const RGBQUAD* palette)
{
    header.biSize = sizeof header;
    header.biSizeImage = static_cast<std::uint32_t>(pixel_bytes(header));
    header.biClrUsed = palette ? bitmap_palette_entries(header) : 0;
    const auto packed = new_block(sizeof header + palette_bytes(header) + header.biSizeImage);
    auto* const block = reinterpret_cast<std::byte*>(packed.get());
    std::memcpy(block, &header, sizeof header);
    if (header.biClrUsed > 0) std::memcpy(block + sizeof header, palette, palette_bytes(header));
    std::memcpy(block + sizeof header + palette_bytes(header), bits, header.biSizeImage);
    return packed;
}

packed_bitmap packed_bitmap_of(std::span<const std::byte> bytes)
{
    BITMAPINFOHEADER header;
    if (bytes.size() < sizeof header) return nullptr;
    std::memcpy(&header, bytes.data(), sizeof header);
    if (!is_true_header(header) || bytes.size() != sizeof header + palette_bytes(header) + header.biSizeImage)
        return nullptr;
    const auto packed = new_block(bytes.size());
    std::memcpy(packed.get(), bytes.data(), bytes.size());
    return packed;
}

std::span<const std::byte> bytes_of(const BITMAPINFOHEADER& packed) noexcept
{
    return {reinterpret_cast<const std::byte*>(&packed), sizeof packed + palette_bytes(packed) + packed.biSizeImage};
}

} // namespace vldv::document
