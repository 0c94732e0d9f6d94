#include "primitives/fit/line_fit.h"

#include "primitives/numeric.h"
#include "primitives/simd/kernels.h"

#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <random>

namespace {

using testing::Each;
using testing::ElementsAre;

TEST(PlanefitLine, TakesALineOutExactly)
{
    std::vector<float> row(101);
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = 12.5f - 0.25f * static_cast<float>(i);
    planefit_line_32f(row.data(), 101);
    EXPECT_THAT(row, Each(0.0f));
}

TEST(PlanefitLine, LeavesTheResidualsOfTheLeastSquares)
{
    // 0 0 3: mean 1, slope 3/2; the line is -0.5, 1, 2.5.
    float three[] = {0, 0, 3};
    planefit_line_32f(three, 3);
    EXPECT_THAT(three, ElementsAre(0.5f, -1.0f, 0.5f));
    // 1 -1 -1 1 has no slope and no mean.
    float even[] = {1, -1, -1, 1};
    planefit_line_32f(even, 4);
    EXPECT_THAT(even, ElementsAre(1.0f, -1.0f, -1.0f, 1.0f));
}

TEST(PlanefitLine, HandlesRowsWithoutALine)
{
    float one[] = {7.0f, 9.0f};
    planefit_line_32f(one, 0);
    EXPECT_THAT(one, ElementsAre(7.0f, 9.0f));
    planefit_line_32f(one, 1);
    EXPECT_THAT(one, ElementsAre(0.0f, 9.0f));
    float two[] = {-3.0f, 8.0f}; // two points are always on a line
    planefit_line_32f(two, 2);
    EXPECT_THAT(two, ElementsAre(0.0f, 0.0f));
}

/// Rows of all shapes: noise over all of the 16 bits, the two ends alone, and a constant.
std::vector<std::vector<std::int16_t>> rows_of(std::size_t width)
{
    std::mt19937 random(static_cast<unsigned>(width));
    std::vector<std::vector<std::int16_t>> rows(4, std::vector<std::int16_t>(width));
    for (std::size_t i = 0; i < width; ++i) {
        rows[0][i] = static_cast<std::int16_t>(random());
        rows[1][i] = random() & 1 ? std::int16_t{32767} : std::int16_t{-32768};
        rows[2][i] = static_cast<std::int16_t>(-321);
        rows[3][i] =
            static_cast<std::int16_t>(3 * static_cast<int>(i % 10000) - 15000 + static_cast<int>(random() % 5));
    }
    return rows;
}

/// As `flatten_row` does it on a machine of this instruction set.
primitives::flattened_range flatten(const primitives::kernel_table& set, const std::vector<std::int16_t>& row,
                                    float* out)
{
    const primitives::row_sums sums = set.sumRow(row.data(), row.size());
    const auto line = primitives::fit_line(static_cast<double>(sums.sum), static_cast<double>(sums.moment),
                                           static_cast<int>(row.size()));
    return set.takeLine(row.data(), row.size(), line, out, row.data());
}

void expect_definition(std::size_t width)
{
    for (const auto& row : rows_of(width)) {
        std::vector<float> expected(row.begin(), row.end());
        planefit_line_32f(expected.data(), static_cast<int>(width));
        const auto [low, high] = std::minmax_element(expected.begin(), expected.end());
        const primitives::row_sums exact = primitives::sum_row_reference(row);
        for (const primitives::kernel_table& set : primitives::available_kernels()) {
            const primitives::row_sums sums = set.sumRow(row.data(), row.size());
            ASSERT_EQ(std::pair(sums.sum, sums.moment), std::pair(exact.sum, exact.moment)) << set.name << ' ' << width;
            std::vector<float> found(width + 1, 12345.0f);
            const primitives::flattened_range range = flatten(set, row, found.data());
            ASSERT_EQ(std::memcmp(found.data(), expected.data(), width * sizeof(float)), 0)
                << set.name << " width " << width;
            ASSERT_EQ(found[width], 12345.0f) << set.name << " writes past " << width;
            ASSERT_EQ(range.minimum, *low) << set.name << " width " << width;
            ASSERT_EQ(range.maximum, *high) << set.name << " width " << width;
        }
    }
}

TEST(FlattenRow, EqualsTheFitInEveryBit)
{
    for (std::size_t width = 1; width <= 70; ++width) expect_definition(width);
    // Around the pieces of 256 blocks in which the sums are collected, and the longest row that is summed so.
    for (const std::size_t width : {2047, 2048, 2049, 4095, 4096, 4097, 9001, 1 << 19}) expect_definition(width);
    const std::vector<std::int16_t> row = rows_of(777).front();
    std::vector<float> found(777), expected(777);
    (void)primitives::flatten_row(row, found.data());
    (void)primitives::flatten_row_reference(row, expected.data());
    EXPECT_EQ(found, expected);
}

TEST(FlattenRow, FollowsTheDefinitionWhereSumsAreNoLongerExact)
{
    std::vector<std::int16_t> row((1 << 19) + 40000, 32767);
    row.front() = -32768;
    std::vector<float> expected(row.begin(), row.end()), found(row.size());
    planefit_line_32f(expected.data(), static_cast<int>(row.size()));
    (void)primitives::flatten_row(row, found.data());
    EXPECT_EQ(std::memcmp(found.data(), expected.data(), row.size() * sizeof(float)), 0);
}

} // namespace
