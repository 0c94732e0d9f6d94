#include "view/DIBImage.h"

#include "support/RecordingDC.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <tuple>
#include <utility>

namespace {

const CBitmap* selected_in(const VLDIBImage& image) { return image.dc()->selectedBitmap(); }

TEST(DIBImage, PadsRowsToFourBytes)
{
    VLDIBImage image;
    for (const auto& [width, alpha, stride] :
         {std::tuple{1, false, 4u}, {4, false, 12u}, {5, false, 16u}, {5, true, 20u}}) {
        ASSERT_TRUE(image.Create(width, 3, alpha));
        EXPECT_EQ(image.stride(), stride);
        EXPECT_EQ(image.bits().size(), 3 * stride);
        EXPECT_EQ(image.header().biBitCount, alpha ? 32 : 24);
    }
}

TEST(DIBImage, BeginsBlackOnACacheLine)
{
    VLDIBImage image;
    for (const int side : {3, 1024}) // the larger one has huge pages, where there are any
        for (int again = 0; again < 2; ++again) {
            ASSERT_TRUE(image.Create(side, side, true));
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image.bits().data()) % 64, 0u);
            EXPECT_TRUE(std::ranges::all_of(image.bits(), [](std::byte b) { return b == std::byte{0}; })) << side;
            std::ranges::fill(image.bits(), std::byte{42}); // memory that the next one may get
        }
}

TEST(DIBImage, ResizeKeepsTheDepth)
{
    VLDIBImage image;
    EXPECT_FALSE(image.Resize(3, 3)); // no surface was asked for yet
    image.Init(nullptr);
    ASSERT_TRUE(image.Resize(3, 3));
    EXPECT_EQ(image.header().biBitCount, 24);
    ASSERT_TRUE(image.Create(3, 3, true));
    ASSERT_TRUE(image.Resize(9, 4));
    EXPECT_EQ(image.header().biBitCount, 32);
    EXPECT_EQ(image.width(), 9);
}

TEST(DIBImage, RefusesSizesThatCannotBe)
{
    VLDIBImage image;
    image.Init(nullptr);
    for (const auto& [width, height] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {5, -1}, {2147483647, 2147483647}}) {
        ASSERT_TRUE(image.Create(2, 2, false));
        EXPECT_FALSE(image.Create(width, height, false)) << width << ' ' << height;
        EXPECT_FALSE(image.Ok());
        EXPECT_TRUE(image.bits().empty());
    }
}

TEST(DIBImage, DrawsThroughItsSurface)
{
    RecordingDC window;
    VLDIBImage image;
    image.Init(&window);
    ASSERT_NE(image.dc(), nullptr);
    const CBitmap* const ownBitmap = selected_in(image);
    ASSERT_TRUE(image.Create(4, 4, true));
    ASSERT_NE(selected_in(image), ownBitmap);
    EXPECT_EQ(selected_in(image)->bits, image.bits().data());
    EXPECT_EQ(selected_in(image)->header.biWidth, 4);

    image.UnselectBitmap();
    EXPECT_EQ(selected_in(image), ownBitmap);
    EXPECT_TRUE(image.Ok());
    image.ReselectBitmap();
    image.ReselectBitmap(); // once is enough
    image.UnselectBitmap();
    EXPECT_EQ(selected_in(image), ownBitmap);

    image.Init(&window); // the pixels move over to the new surface
    EXPECT_EQ(selected_in(image)->bits, image.bits().data());
    EXPECT_FALSE(image.Create(0, 0, false)); // a failure leaves no dead bitmap in the surface
    EXPECT_EQ(selected_in(image), nullptr);
    image.Clear();
    EXPECT_FALSE(image.Ok());
    EXPECT_EQ(image.dc(), nullptr);
    EXPECT_FALSE(image.Resize(4, 4));
}

} // namespace
