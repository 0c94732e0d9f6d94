#include "document/MinMaxInfo.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(MinMaxInfo, WidensReplacesAndClears)
{
    const short first[] = {5, -3, 4}, second[] = {7, 7};
    CMinMaxInfo info;
    EXPECT_EQ(info.range, 1);
    info.Adjust(first, 3);
    info.Adjust(second, 2);
    EXPECT_EQ(info.minimum, -3);
    EXPECT_EQ(info.maximum, 7);
    EXPECT_EQ(info.range, 10);
    info.Readjust(second, 2);
    EXPECT_EQ(info.minimum, 7);
    EXPECT_EQ(info.range, 1) << "equal limits";
    info.Readjust(second, 0);
    info.Adjust(nullptr, 0);
    EXPECT_EQ(info.maximum, 7) << "nothing to measure changes nothing";
    info.Clear();
    EXPECT_EQ(info.minimum, 32767);
}

TEST(MinMaxDoubleInfo, TakesUnorderedLimitsForEqualOnes)
{
    const double values[] = {1.5, -2.5, std::nan("")}, nothing[] = {std::nan("")};
    const short heights[] = {-4, 8};
    CMinMaxDoubleInfo info;
    EXPECT_EQ(info.minimum, std::numeric_limits<double>::max());
    info.Adjust(nothing, 1);
    EXPECT_EQ(info.range, 1.0);
    info.Adjust(values, 3);
    EXPECT_EQ(info.range, 4.0);
    info.Readjust_s(heights, 2);
    EXPECT_EQ(info.minimum, -4.0);
    EXPECT_EQ(info.range, 12.0);
    info.Readjust_d(values, 1);
    EXPECT_EQ(info.maximum, 1.5);
    EXPECT_EQ(info.range, 1.0);
    info.Readjust_d(values, 0);
    EXPECT_EQ(info.maximum, 1.5);
}

} // namespace
