#pragma once
#include "platform/draw/DC.h"
#include "platform/draw/pixel_memory.h"
#include "vldv_api.h"

#include <cstddef>
#include <memory>
#include <span>

/// The picture in memory that a view draws before anything reaches the window: 24 bits a pixel, or 32 with alpha, and a
/// drawing surface on top of it. Interface thread only.
class VLDV_API VLDIBImage {
public:
    VLDIBImage() = default;
    VLDIBImage(const VLDIBImage&) = delete;
    VLDIBImage& operator=(const VLDIBImage&) = delete;
    ~VLDIBImage() { Clear(); }

    /// Makes a surface like `reference`; one that exists is replaced, the pixels stay. Null: the pixels are worked on
    /// directly and there is no surface.
    void Init(CDC* reference);
    /// Replaces the bitmap by a black one. \return false, with no bitmap left, for a size that cannot be had
    bool Create(int width, int height, bool alpha);
    /// Keeps the depth, and the pixels when the size is already right. \return false before `Init` or as `Create`
    bool Resize(int width, int height);
    /// Puts the bitmap into the surface, takes it out again. What the surface held before returns then.
    void ReselectBitmap();
    void UnselectBitmap();
    /// Frees surface and bitmap. The depth is remembered for `Resize`.
    void Clear();
    /// There is a bitmap.
    bool Ok() const noexcept { return bitmap.bits != nullptr; }

    /// Null without a surface.
    CDC* dc() const noexcept { return surface.get(); }
    const BITMAPINFOHEADER& header() const noexcept { return bitmap.header; }
    int width() const noexcept { return bitmap.header.biWidth; }
    int height() const noexcept { return bitmap.header.biHeight; }
    /// Rows from the lowest upwards, each of `stride()` bytes.
    std::span<std::byte> bits() const noexcept { return {bitmap.bits, bitmap.header.biSizeImage}; }
    std::size_t stride() const noexcept;

private:
    void deleteBitmap();

    std::unique_ptr<CDC> surface;
    vldv::platform::pixel_memory pixels;
    CBitmap bitmap{.header = {.biBitCount = 24}, .bits = nullptr};
    CBitmap* heldBefore = nullptr; ///< by the surface
    bool initialized = false, selected = false;
};
