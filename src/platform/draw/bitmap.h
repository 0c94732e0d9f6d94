#pragma once
#include <cstdint>

/// Header of a device-independent bitmap, as in .bmp files and overlays. A positive height means bottom-up rows.
struct BITMAPINFOHEADER {
    std::uint32_t biSize = 40;
    std::int32_t biWidth = 0;
    std::int32_t biHeight = 0;
    std::uint16_t biPlanes = 1;
    std::uint16_t biBitCount = 0;
    std::uint32_t biCompression = 0; ///< 0 plain, 3 bit fields
    std::uint32_t biSizeImage = 0;
    std::int32_t biXPelsPerMeter = 0;
    std::int32_t biYPelsPerMeter = 0;
    std::uint32_t biClrUsed = 0;
    std::uint32_t biClrImportant = 0;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);

/// Palette entry of a bitmap.
struct RGBQUAD {
    std::uint8_t rgbBlue = 0, rgbGreen = 0, rgbRed = 0, rgbReserved = 0;
};
static_assert(sizeof(RGBQUAD) == 4);
