#include "output/picture_decoders.h"
#include "output/picture_writer.h"

#include <gtest/gtest.h>

namespace {

using test_support::little_at;

/// The only value, or the offset of the values, of a tag; counts the entry's number in `count`.
std::uint32_t tag_value(std::span<const std::byte> file, std::uint32_t tag, std::uint32_t& count)
{
    const std::size_t entries = little_at(file, 8, 2);
    for (std::size_t i = 0; i < entries; ++i) {
        const std::size_t at = 10 + 12 * i;
        if (little_at(file, at, 2) != tag) continue;
        count = little_at(file, at + 4, 4);
        return little_at(file, at + 8, 4);
    }
    count = 0;
    return 0;
}

struct strip_case {
    int width, height;
    std::uint32_t rows, strips, lastRows;
};

// Rows a strip: 8192 / (3 * width), at least 1. 8192 / 600 = 13.65; 256 = 19 * 13 + 9; 2731 * 3 = 8193.
constexpr strip_case stripCases[] = {
    {200, 256, 13, 20, 9}, {2731, 4, 1, 4, 1}, {2730, 4, 1, 4, 1}, {10, 20, 273, 1, 20}};

TEST(TiffWriter, CutsThePictureIntoStripsOfAbout8Kilobytes)
{
    for (const strip_case& tried : stripCases) {
        const std::vector<std::byte> row(static_cast<std::size_t>(3 * tried.width));
        const auto file =
            output::encode_picture(output::picture_format::tiff, {row.data(), tried.width, tried.height, 0, 3});
        ASSERT_TRUE(file);
        std::uint32_t count = 0;
        EXPECT_EQ(tag_value(*file, 278, count), tried.rows);
        const std::uint32_t offsets = tag_value(*file, 273, count);
        EXPECT_EQ(count, tried.strips);
        const std::uint32_t sizes = tag_value(*file, 279, count);
        ASSERT_EQ(count, tried.strips);
        const std::uint32_t last = tried.strips - 1;
        const bool inEntry = tried.strips == 1;
        const std::uint32_t lastSize = inEntry ? sizes : little_at(*file, sizes + 4 * last, 4);
        const std::uint32_t lastOffset = inEntry ? offsets : little_at(*file, offsets + 4 * last, 4);
        EXPECT_EQ(lastSize, tried.lastRows * 3 * static_cast<std::uint32_t>(tried.width));
        EXPECT_EQ(lastOffset + lastSize, file->size());
    }
}

TEST(TiffWriter, ListsItsTagsInAscendingOrder)
{
    const std::byte pixel[3] = {};
    const auto file = output::encode_picture(output::picture_format::tiff, {pixel, 1, 1, 3, 3});
    const std::size_t entries = little_at(*file, 8, 2);
    ASSERT_GE(entries, 12u); // the baseline of a colour picture
    for (std::size_t i = 1; i < entries; ++i)
        EXPECT_LT(little_at(*file, 10 + 12 * (i - 1), 2), little_at(*file, 10 + 12 * i, 2));
    EXPECT_EQ(little_at(*file, 10 + 12 * entries, 4), 0u);
}

} // namespace
