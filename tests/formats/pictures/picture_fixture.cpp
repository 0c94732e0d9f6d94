#include "formats/pictures/picture_fixture.h"

#include <gtest/gtest.h>

namespace test_support {

std::ostream& operator<<(std::ostream& out, const colour& value)
{
    return out << value.red << ',' << value.green << ',' << value.blue;
}

colour pixel_of(const formats::picture& picture, int x, int fromTop)
{
    const BITMAPINFOHEADER& header = picture.header;
    const unsigned bits = header.biBitCount;
    const std::size_t stride = (static_cast<std::size_t>(header.biWidth) * bits + 31) / 32 * 4;
    const std::size_t row = static_cast<std::size_t>(header.biHeight - 1 - fromTop) * stride;
    const auto column = static_cast<std::size_t>(x);
    const auto byte = [&](std::size_t at) { return std::to_integer<int>(picture.bits.at(row + at)); };
    EXPECT_EQ(picture.bits.size(), stride * static_cast<std::size_t>(header.biHeight));
    EXPECT_EQ(header.biCompression, 0u);
    if (bits == 24) return {byte(3 * column + 2), byte(3 * column + 1), byte(3 * column)};
    if (bits == 32) return {byte(4 * column + 2), byte(4 * column + 1), byte(4 * column)};
    if (bits == 16) {
        const int pixel = byte(2 * column) | byte(2 * column + 1) << 8;
        return {(pixel >> 10 & 31) * 8, (pixel >> 5 & 31) * 8, (pixel & 31) * 8};
    }
    EXPECT_TRUE(bits == 1 || bits == 4 || bits == 8) << bits;
    EXPECT_EQ(header.biClrUsed, picture.palette.size());
    const std::size_t bit = column * bits;
    const int index = byte(bit / 8) >> (8 - bits - bit % 8) & ((1 << bits) - 1);
    const RGBQUAD entry = picture.palette.at(static_cast<std::size_t>(index));
    return {entry.rgbRed, entry.rgbGreen, entry.rgbBlue};
}

std::vector<colour> pixels_of(const formats::picture& picture)
{
    std::vector<colour> pixels;
    for (int y = 0; y < picture.header.biHeight; ++y)
        for (int x = 0; x < picture.header.biWidth; ++x) pixels.push_back(pixel_of(picture, x, y));
    return pixels;
}

void expect_pixels(const formats::picture& picture, int width, int height,
                   const std::function<colour(int, int)>& expected, int tolerance)
{
    ASSERT_EQ(picture.header.biWidth, width);
    ASSERT_EQ(picture.header.biHeight, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (const auto channel : {&colour::red, &colour::green, &colour::blue})
                ASSERT_NEAR(pixel_of(picture, x, y).*channel, expected(x, y).*channel, tolerance) << x << ", " << y;
}

formats::picture only_picture(const base::read_result<formats::recording>& result)
{
    if (!result) {
        ADD_FAILURE() << result.error().reason;
        return {};
    }
    EXPECT_EQ(result->items.size(), 1u);
    const auto* picture = result->items.empty() ? nullptr : std::get_if<formats::picture>(&result->items.front());
    EXPECT_NE(picture, nullptr);
    return picture ? *picture : formats::picture();
}

} // namespace test_support
