#include "view/DIBImage.h"

#include <cstdint>
#include <limits>

using namespace vldv;

namespace {

std::uint64_t row_bytes(int width, int bitsPerPixel)
{
    // Rows are padded to whole 32-bit words.
    return (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(bitsPerPixel) + 31) / 32 * 4;
}

} // namespace

void VLDIBImage::Init(CDC* reference)
{
    UnselectBitmap();
    surface = reference ? reference->CreateCompatibleDC() : nullptr;
    initialized = true;
    ReselectBitmap();
}

bool VLDIBImage::Create(int width, int height, bool alpha)
{
    deleteBitmap();
    bitmap.header.biBitCount = alpha ? 32 : 24;
    if (width < 1 || height < 1) return false;
    const std::uint64_t row = row_bytes(width, bitmap.header.biBitCount);
    // The size stands in a field of 32 bits.
    if (row > std::numeric_limits<std::uint32_t>::max() / static_cast<std::uint64_t>(height)) return false;
    const std::uint64_t bytes = row * static_cast<std::uint64_t>(height);
    pixels = platform::allocate_pixels(bytes);
    if (!pixels) return false;
    bitmap.bits = pixels.get();
    bitmap.header.biWidth = width;
    bitmap.header.biHeight = height;
    bitmap.header.biSizeImage = static_cast<std::uint32_t>(bytes);
    ReselectBitmap();
    return true;
}

bool VLDIBImage::Resize(int width, int height)
{
    if (!initialized) return false;
    if (Ok() && width == bitmap.header.biWidth && height == bitmap.header.biHeight) return true;
    return Create(width, height, bitmap.header.biBitCount > 24);
}

void VLDIBImage::ReselectBitmap()
{
    if (!surface || !Ok() || selected) return;
    heldBefore = surface->SelectObject(&bitmap);
    selected = true;
}

void VLDIBImage::UnselectBitmap()
{
    if (!selected) return;
    surface->SelectObject(heldBefore);
    selected = false;
}

void VLDIBImage::Clear()
{
    deleteBitmap();
    surface.reset();
    initialized = false;
}

std::size_t VLDIBImage::stride() const noexcept
{
    return static_cast<std::size_t>(row_bytes(bitmap.header.biWidth, bitmap.header.biBitCount));
}

void VLDIBImage::deleteBitmap()
{
    UnselectBitmap();
    const std::uint16_t depth = bitmap.header.biBitCount;
    bitmap = {.header = {.biBitCount = depth}, .bits = nullptr};
    pixels.reset();
}
