#pragma once
#include "platform/draw/bitmap.h"

#include <cstddef>
#include <memory>
#include <span>

// A bitmap in one block of the C heap: BITMAPINFOHEADER, biClrUsed RGBQUADs, pixels.
namespace vldv::document {

using packed_bitmap = std::shared_ptr<const BITMAPINFOHEADER>;

/// Packs a bitmap; its size fields are made true. The header must be convertible (see bitmap_heights.h), `palette` may
/// be null. \throws std::bad_alloc
packed_bitmap pack_bitmap(BITMAPINFOHEADER header, const void* bits, const RGBQUAD* palette);
/// One from its bytes. Null for bytes that are not exactly those of a convertible bitmap. \throws std::bad_alloc
packed_bitmap packed_bitmap_of(std::span<const std::byte> bytes);
/// All bytes of a packed bitmap, as long as it lives.
std::span<const std::byte> bytes_of(const BITMAPINFOHEADER& packed) noexcept;

} // namespace vldv::document
