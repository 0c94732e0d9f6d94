#pragma once
#include "paint/QtDC.h"

#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

using picture_rows = std::vector<std::string>;

constexpr colorEntry black = 0x000000, white = 0xFFFFFF, red = 0x0000FF, green = 0x00FF00, blue = 0xFF0000;

/// A white bitmap with a surface that draws into it.
class canvas {
public:
    explicit canvas(int width, int height, int bits = 24)
        : memory((static_cast<std::size_t>(width) * static_cast<std::size_t>(bits / 8) + 3) / 4 * 4 *
                     static_cast<std::size_t>(height),
                 std::byte{0xFF}),
          bitmap{.header = {.biWidth = width, .biHeight = height, .biBitCount = static_cast<std::uint16_t>(bits)},
                 .bits = memory.data()},
          dc({96, 96})
    {
        dc.SelectObject(&bitmap);
    }

    colorEntry at(int x, int y) const
    {
        const CBitmap* const pixels = dc.selectedBitmap();
        const std::size_t bytes = pixels->header.biBitCount / 8u;
        const std::size_t stride = (static_cast<std::size_t>(pixels->header.biWidth) * bytes + 3) / 4 * 4;
        const std::byte* const pixel = memory.data() +
                                       static_cast<std::size_t>(pixels->header.biHeight - 1 - y) * stride +
                                       static_cast<std::size_t>(x) * bytes;
        return std::to_integer<colorEntry>(pixel[2]) | std::to_integer<colorEntry>(pixel[1]) << 8 |
               std::to_integer<colorEntry>(pixel[0]) << 16;
    }

    /// "." white, "#" black, "r", "g", "b" the plain colours, "?" any other.
    picture_rows rows() const
    {
        picture_rows out;
        for (int y = 0; y < bitmap.header.biHeight; ++y) {
            out.emplace_back();
            for (int x = 0; x < bitmap.header.biWidth; ++x) out.back() += letter(at(x, y));
        }
        return out;
    }
    /// The rows of pixels that are not white any more.
    CRgn touched() const
    {
        CRgn out;
        for (int y = 0; y < bitmap.header.biHeight; ++y)
            for (int x = 0; x < bitmap.header.biWidth; ++x)
                if (at(x, y) != white) out.CombineRgn(out, CRgn(CRect(x, y, x + 1, y + 1)), RGN_OR);
        return out;
    }
    static char letter(colorEntry color)
    {
        switch (color) {
        case white:
            return '.';
        case black:
            return '#';
        case red:
            return 'r';
        case green:
            return 'g';
        case blue:
            return 'b';
        default:
            return '?';
        }
    }

    std::vector<std::byte> memory;
    CBitmap bitmap;
    paint::CQtDC dc;
};
