#include "primitives/resample/resample.h"

#include "primitives/kernel_forms.h"
#include "primitives/numeric.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

using primitives::const_height_block;
using primitives::height_block;
using primitives::interpolation;
using samples = std::vector<std::int16_t>;

samples noise(int width, int height)
{
    samples out(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::uint32_t state = 11;
    for (std::int16_t& value : out) {
        state = state * 1664525u + 1013904223u;
        value = static_cast<std::int16_t>(state >> 16);
    }
    return out;
}

samples resized(const samples& image, int width, int height, int toWidth, int toHeight)
{
    samples out(static_cast<std::size_t>(toWidth) * static_cast<std::size_t>(toHeight), 99);
    resample(image.data(), width, height, 2 * width, out.data(), toWidth, toHeight, 2 * toWidth);
    return out;
}

/// Sample by sample; those outside of the block are noise, too.
primitives::height_range range_of(const_height_block block)
{
    primitives::height_range out;
    for (int y = 0; y < block.height; ++y)
        for (int x = 0; x < block.width; ++x) {
            out.minimum = std::min(out.minimum, block.row(y)[x]);
            out.maximum = std::max(out.maximum, block.row(y)[x]);
        }
    return out;
}

TEST(Resample, MatchesHandCounts)
{
    // Shrinking: (1 + 2 + 5 + 6) / 4 = 3.5 goes up, and so does -3.5.
    EXPECT_EQ(resized({1, 2, 3, 4, 5, 6, 7, 8}, 4, 2, 2, 1), (samples{4, 6}));
    EXPECT_EQ(resized({-1, -2, -3, -4, -5, -6, -7, -8}, 4, 2, 2, 1), (samples{-3, -5}));
    // 5 into 2: the first two, then three.
    EXPECT_EQ(resized({0, 10, 1, 2, 6}, 5, 1, 2, 1), (samples{5, 3}));
    // Growing 2 to 5: middles at 0.2, 0.6, 1.0, 1.4, 1.8.
    EXPECT_EQ(resized({7, 9}, 2, 1, 5, 1), (samples{7, 7, 9, 9, 9}));
    // One direction grows while the other shrinks.
    EXPECT_EQ(resized({1, 5, 3, 7}, 2, 2, 4, 1), (samples{2, 2, 6, 6}));
    EXPECT_EQ(resized({-32768, -32768, 32767, 32767}, 2, 2, 2, 1), (samples{0, 0}));
    EXPECT_EQ(resized({1, 2, 3, 4}, 2, 2, 2, 2), (samples{1, 2, 3, 4}));
}

TEST(Resample, EqualsItsDefinitionInEveryBit)
{
    const std::pair<int, int> sides[] = {{1, 1},   {1, 3},    {2, 1},    {3, 2},     {7, 3},    {64, 64},   {65, 16},
                                         {130, 7}, {131, 31}, {300, 41}, {257, 200}, {1000, 2}, {40, 1003}, {900, 130}};
    for (const auto& [width, toWidth] : sides)
        for (const auto& [height, toHeight] : {std::pair{1, 1}, {2, 5}, {9, 2}, {24, 5}, {17, 17}}) {
            const samples image = noise(width + 3, height);
            const const_height_block source{image.data() + 1, width, height, 2 * (width + 3)};
            const int row = toWidth + 2;
            samples fast(static_cast<std::size_t>(row) * static_cast<std::size_t>(toHeight), 5), defined = fast;
            const auto range = primitives::resample_and_range(source, {fast.data() + 1, toWidth, toHeight, 2 * row});
            primitives::resample_reference(source, {defined.data() + 1, toWidth, toHeight, 2 * row});
            ASSERT_EQ(fast, defined) << width << " x " << height << " to " << toWidth << " x " << toHeight;
            ASSERT_EQ(range, range_of(source)) << width << " x " << height << " to " << toWidth << " x " << toHeight;
        }
}

TEST(Resample, EveryFormOfItsStepsIsExact)
{
    for (const auto& form : forms_of(&primitives::kernel_table::addRows))
        for (int width = 1; width < 140; ++width)
            for (const int height : {1, 2, 3, 7, 64}) {
                const samples image = noise(width + 3, height);
                const const_height_block rows{image.data() + 1, width, height, 2 * (width + 3)};
                std::vector<std::int32_t> sums(static_cast<std::size_t>(width) + 1, 12345), expected = sums;
                for (int x = 0; x < width; ++x) {
                    expected[static_cast<std::size_t>(x)] = 0;
                    for (int y = 0; y < height; ++y) expected[static_cast<std::size_t>(x)] += rows.row(y)[x];
                }
                const primitives::height_range range = form.run(rows, sums.data());
                ASSERT_EQ(sums, expected) << form.name << ": " << width << " x " << height;
                ASSERT_EQ(range, range_of(rows)) << form.name << ": " << width << " x " << height;
            }
    for (const auto& form : forms_of(&primitives::kernel_table::writeMeans))
        for (const int count : {1, 2, 3, 25, 65535}) {
            // Means at, just below and just above every half, and at both ends.
            std::vector<std::int32_t> sums;
            for (const int mean : {-32768, -32767, -2, -1, 0, 1, 2, 32766})
                for (int part = 0; part <= 4; ++part)
                    for (const int off : {-1, 0, 1}) {
                        const std::int64_t sum = std::int64_t{mean} * count + std::int64_t{count} * part / 4 + off;
                        if (sum >= -32768ll * count && sum <= 32767ll * count) sums.push_back(static_cast<int>(sum));
                    }
            const std::vector<double> share(sums.size(), 1.0 / count), shift(sums.size(), 32768.5 + 0.25 / count);
            samples means(sums.size());
            const std::size_t written = form.run(sums.data(), sums.size(), share.data(), shift.data(), means.data());
            ASSERT_GT(written, sums.size() - 9) << "all but a part of a vector";
            for (std::size_t i = 0; i < written; ++i) {
                const auto rounded =
                    std::floor(static_cast<long double>(2 * std::int64_t{sums[i]} + count) / (2 * count));
                ASSERT_EQ(means[i], static_cast<std::int16_t>(rounded))
                    << form.name << ": " << sums[i] << " / " << count;
            }
        }
}

TEST(Resample, LargeImagesAreSharedBetweenThreadsWithTheSameResult)
{
    constexpr int width = 2200, height = 2000, toWidth = 301, toHeight = 211;
    const samples image = noise(width, height);
    samples defined(toWidth * toHeight);
    primitives::resample_reference({image.data(), width, height, 2 * width},
                                   {defined.data(), toWidth, toHeight, 2 * toWidth});
    samples shared(defined.size());
    const const_height_block source{image.data(), width, height, 2 * width};
    const auto range = primitives::resample_and_range(source, {shared.data(), toWidth, toHeight, 2 * toWidth});
    EXPECT_EQ(shared, defined);
    EXPECT_EQ(range, range_of(source));
    EXPECT_EQ(primitives::find_block_range(source), range);
    EXPECT_EQ(resized(image, width, height, 1, 1).size(), 1u) << "one row is not shared";
}

TEST(Resample, SumsOfMoreRowsThan32BitsHold)
{
    constexpr int rows = 70000; // times -32768 is beyond 2^31
    const samples image(rows, -32768);
    EXPECT_EQ(resized(image, 1, rows, 1, 1), (samples{-32768}));
}

TEST(Resample, EmptyImagesAreLeftAlone)
{
    std::int16_t value = 5;
    resample(&value, 0, 1, 0, &value, 1, 1, 2);
    resample(&value, 1, 1, 2, nullptr, 0, 0, 0);
    primitives::resample_smooth({&value, 1, 0, 2}, {&value, 1, 1, 2}, interpolation::linear);
    EXPECT_EQ(value, 5);
}

struct smooth_case {
    int from, to;
};
class ResampleSmooth : public testing::TestWithParam<smooth_case> {};

/// Far from the edges a parabola must come out as itself (cubic), a line with either kernel: the kernels reproduce
/// them.
TEST_P(ResampleSmooth, KeepsWhatItsKernelReproduces)
{
    const auto [from, to] = GetParam();
    const auto parabola = [](double x) { return 0.5 * x * x - 30.0 * x - 4000.0; };
    const auto line = [](double x) { return 20.0 * x - 4000.0; };
    for (const interpolation kind : {interpolation::linear, interpolation::cubic}) {
        // Wider kernels smooth a parabola by a constant; lines they keep.
        const bool isCurved = kind == interpolation::cubic && to >= from;
        samples image;
        for (int x = 0; x < from; ++x)
            image.push_back(static_cast<std::int16_t>(std::floor((isCurved ? parabola(x) : line(x)) + 0.5)));
        samples out(static_cast<std::size_t>(to));
        primitives::resample_smooth({image.data(), from, 1, 2 * from}, {out.data(), to, 1, 2 * to}, kind);
        const double ratio = static_cast<double>(from) / to, edge = 2.0 * std::max(ratio, 1.0);
        for (int i = 0; i < to; ++i) {
            const double at = (i + 0.5) * ratio - 0.5;
            if (at < edge || at > from - 1 - edge) continue;
            EXPECT_NEAR(out[static_cast<std::size_t>(i)], isCurved ? parabola(at) : line(at), 1.2) << i;
        }
    }
}
INSTANTIATE_TEST_SUITE_P(Sizes, ResampleSmooth,
                         testing::Values(smooth_case{100, 100}, smooth_case{100, 250}, smooth_case{100, 131},
                                         smooth_case{100, 40}, smooth_case{100, 33}));

TEST(ResampleSmoothKinds, HandCountsAndLimits)
{
    const samples step = {0, 0, 100, 100};
    samples out(8);
    primitives::resample_smooth({step.data(), 4, 1, 8}, {out.data(), 8, 1, 16}, interpolation::linear);
    // at -0.25, 0.25, 0.75, 1.25 …: a quarter and three quarters on the way up
    EXPECT_EQ(out, (samples{0, 0, 0, 25, 75, 100, 100, 100}));
    primitives::resample_smooth({step.data(), 4, 1, 8}, {out.data(), 8, 1, 16}, interpolation::cubic);
    // weights at the fraction 1/4: -0.0703125, 0.8671875, 0.2265625, -0.0234375
    EXPECT_EQ(out, (samples{0, -2, -7, 20, 80, 107, 102, 100}));
    const samples peak = {-32768, -32768, 32767, 32767, -32768, -32768};
    samples wide(60);
    primitives::resample_smooth({peak.data(), 6, 1, 12}, {wide.data(), 60, 1, 120}, interpolation::cubic);
    EXPECT_EQ(*std::max_element(wide.begin(), wide.end()), 32767) << "overshoot is cut, it does not wrap around";
    EXPECT_EQ(*std::min_element(wide.begin(), wide.end()), -32768);
    samples one(1);
    primitives::resample_smooth({step.data(), 4, 1, 8}, {one.data(), 1, 1, 2}, interpolation::linear);
    EXPECT_EQ(one[0], 50);
}

} // namespace
