#include "primitives/map/color_map.h"

#include "primitives/kernel_forms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <random>

namespace {

using primitives::byte_window;

TEST(MappedByte, FollowsTheWindow)
{
    // Steps of 2 in a window of 510: halves go to the even neighbour.
    const byte_window window{-10.0f, 500.0f};
    EXPECT_EQ(primitives::mapped_byte(-10.0f, window), 0);
    EXPECT_EQ(primitives::mapped_byte(-9.0f, window), 0);    // 0.5
    EXPECT_EQ(primitives::mapped_byte(-8.0f, window), 1);    // 1
    EXPECT_EQ(primitives::mapped_byte(-7.0f, window), 2);    // 1.5
    EXPECT_EQ(primitives::mapped_byte(-5.0f, window), 2);    // 2.5
    EXPECT_EQ(primitives::mapped_byte(499.0f, window), 254); // 254.5
    EXPECT_EQ(primitives::mapped_byte(500.0f, window), 255);
    EXPECT_EQ(primitives::mapped_byte(-32768.0f, window), 0);
    EXPECT_EQ(primitives::mapped_byte(32767.0f, window), 255);
}

/// The byte in exact integers: 255 * (v - low) / (high - low), to nearest, ties to even.
int exact_byte(long long v, long long low, long long high)
{
    if (v <= low) return 0;
    if (v >= high) return 255;
    const long long numerator = 255 * (v - low), denominator = high - low;
    const long long below = numerator / denominator, rest = 2 * (numerator % denominator);
    return static_cast<int>(below + (rest > denominator || (rest == denominator && below % 2 == 1) ? 1 : 0));
}

std::vector<std::int16_t> every_height()
{
    std::vector<std::int16_t> heights;
    for (int v = -32768; v <= 32767; ++v) heights.push_back(static_cast<std::int16_t>(v));
    return heights;
}

TEST(MapHeights, EqualsExactArithmeticWithinSixteenBits)
{
    const auto heights = every_height();
    std::vector<std::uint8_t> bytes(heights.size());
    const std::pair<int, int> windows[] = {
        {-32768, 32767}, {-32768, 32766}, {0, 1},           {-1, 1},        {-255, 255},     {-10, 500},   {100, 355},
        {-3000, 41},     {17, 30011},     {-32768, -32767}, {32766, 32767}, {-20000, 20480}, {-32767, -5}, {0, 32640}};
    for (const auto& form : forms_of(&primitives::kernel_table::mapHeights))
        for (const auto& [low, high] : windows) {
            form.run(heights.data(), heights.size(), {static_cast<float>(low), static_cast<float>(high)}, bytes.data());
            for (std::size_t i = 0; i < heights.size(); ++i)
                ASSERT_EQ(bytes[i], exact_byte(heights[i], low, high))
                    << form.name << ' ' << heights[i] << " in " << low << ' ' << high;
        }
}

TEST(MapHeights, EqualsTheDefinitionInWindowsFarOffAndWide)
{
    const auto heights = every_height();
    std::vector<std::uint8_t> bytes(heights.size());
    const byte_window windows[] = {
        {-2147483648.0f, 2147483648.0f}, {-8388608.0f, 100.0f}, {-40000.0f, 40001.0f},       {32768.0f, 90000.0f},
        {-90000.0f, -32768.0f},          {0.0f, 16777215.0f},   {-12345678.0f, 12345679.0f}, {-100.0f, 2147483648.0f}};
    for (const auto& form : forms_of(&primitives::kernel_table::mapHeights))
        for (const byte_window window : windows) {
            form.run(heights.data(), heights.size(), window, bytes.data());
            for (std::size_t i = 0; i < heights.size(); ++i)
                ASSERT_EQ(bytes[i], primitives::mapped_byte(heights[i], window))
                    << form.name << ' ' << heights[i] << " in " << window.low << ' ' << window.high;
        }
}

TEST(MapHeights, WritesNothingPastItsEnd)
{
    const auto heights = every_height();
    const byte_window window{-30000.0f, 30000.0f};
    for (const auto& form : forms_of(&primitives::kernel_table::mapHeights))
        for (std::size_t offset = 0; offset < 3; ++offset)
            for (std::size_t length = 0; length <= 140; ++length) {
                std::vector<std::uint8_t> bytes(length + 1, 77);
                const std::span<const std::int16_t> part(heights.data() + 32700 + offset, length);
                form.run(part.data(), part.size(), window, bytes.data());
                for (std::size_t i = 0; i < length; ++i)
                    ASSERT_EQ(bytes[i], primitives::mapped_byte(part[i], window)) << form.name << " length " << length;
                ASSERT_EQ(bytes[length], 77) << form.name << " length " << length;
            }
}

TEST(MapFloats, EqualsTheDefinition)
{
    std::mt19937 random(3);
    std::normal_distribution<float> spread(0.0f, 900.0f);
    std::vector<float> values(1003);
    for (float& v : values) v = spread(random);
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    const byte_window whole{*low, *high};
    constexpr float endless = std::numeric_limits<float>::infinity();
    std::ranges::copy(std::array{endless, -endless, std::nanf("")}, values.begin() + 7);
    std::ranges::copy(std::array{endless, -endless, std::nanf("")}, values.end() - 3);
    std::vector<std::uint8_t> bytes(values.size() + 1, 77);
    for (const byte_window window : {whole, byte_window{-0.5f, 0.5f}, byte_window{-1e-30f, 1e-30f}})
        for (const auto& form : forms_of(&primitives::kernel_table::mapFloats)) {
            form.run(values.data(), values.size(), window, bytes.data());
            for (std::size_t i = 0; i < values.size(); ++i)
                ASSERT_EQ(bytes[i], primitives::mapped_byte(values[i], window)) << form.name << ' ' << values[i];
            ASSERT_EQ(bytes.back(), 77);
            ASSERT_EQ(bytes[9], 0) << form.name << " of no number";
        }
}

TEST(MapHeights, ShowsNothingThroughAClosedWindow)
{
    const std::vector<std::int16_t> heights = {-32768, -5, 0, 5, 32767};
    for (const byte_window window : {byte_window{5.0f, 5.0f}, byte_window{10.0f, -10.0f}}) {
        std::vector<std::uint8_t> bytes(heights.size(), 9);
        primitives::map_heights(heights, window, bytes.data());
        EXPECT_THAT(bytes, testing::Each(0));
    }
}

class Paint : public testing::Test {
protected:
    Paint()
    {
        std::mt19937 random(11);
        for (int i = 0; i < 256; ++i) {
            colors.blue[i] = static_cast<std::uint8_t>(random());
            colors.green[i] = static_cast<std::uint8_t>(random());
            colors.red[i] = static_cast<std::uint8_t>(random());
        }
        join_channels(colors);
        for (std::size_t i = 0; i < 400; ++i) bytes.push_back(static_cast<std::uint8_t>(i * 37));
    }

    using painter = void(const std::uint8_t*, std::size_t, const primitives::color_lookup&, std::uint8_t*) noexcept;
    /// Every length and some alignments; what is no channel of a pixel must stay as it was.
    void expect_pixels(const kernel_forms<painter>& forms, std::size_t pixelBytes) const
    {
        for (const auto& form : forms)
            for (std::size_t offset = 0; offset < 3; ++offset)
                for (std::size_t length = 0; length <= 200; ++length) {
                    const auto part = std::span<const std::uint8_t>(bytes).subspan(offset, length);
                    std::vector<std::uint8_t> found(offset + pixelBytes * length + 5);
                    for (std::size_t i = 0; i < found.size(); ++i) found[i] = static_cast<std::uint8_t>(i * 3 + 1);
                    std::vector<std::uint8_t> expected = found;
                    for (std::size_t i = 0; i < length; ++i) {
                        std::uint8_t* pixel = expected.data() + offset + pixelBytes * i;
                        pixel[0] = colors.blue[part[i]];
                        pixel[1] = colors.green[part[i]];
                        pixel[2] = colors.red[part[i]];
                    }
                    form.run(part.data(), part.size(), colors, found.data() + offset);
                    ASSERT_EQ(found, expected) << form.name << " length " << length;
                }
    }

    primitives::color_lookup colors{};
    std::vector<std::uint8_t> bytes;
};

TEST_F(Paint, WritesThreeOfFourBytes)
{
    painter* reference = [](const std::uint8_t* from, std::size_t count, const primitives::color_lookup& of,
                            std::uint8_t* out) noexcept { primitives::paint_32_reference({from, count}, of, out); };
    expect_pixels(forms_of(&primitives::kernel_table::paint32, reference), 4);
}

TEST_F(Paint, WritesThreeBytesAndNotOneMore)
{
    painter* reference = [](const std::uint8_t* from, std::size_t count, const primitives::color_lookup& of,
                            std::uint8_t* out) noexcept { primitives::paint_24_reference({from, count}, of, out); };
    expect_pixels(forms_of(&primitives::kernel_table::paint24, reference), 3);
}

} // namespace
