#include "base/streams/axis_units.h"
#include "base/text/decimals.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

TEST(Decimals, RoundHalvesUp)
{
    const struct {
        double value;
        int decimals;
        const char* text;
    } cases[] = {{204.5, 0, "205"},
                 {0.1 * 2045, 0, "205"},
                 {-204.5, 0, "-204"},
                 {-0.4, 0, "0"},
                 {0.1 + 0.1 + 0.05, 1, "0.3"},
                 {999.96, 1, "1000.0"},
                 {12000123.0, 2, "12000123.00"},
                 {1e20, 0, "100000000000000000000"},
                 {0.7 * 756 + 12.3, 0, "542"}, // 541.4999999999999
                 {NAN, 2, "nan"}};
    for (const auto& each : cases) EXPECT_EQ(base::with_decimals(each.value, each.decimals), each.text) << each.text;
}

TEST(Decimals, AreAsManyAsTellNeighboursApart)
{
    EXPECT_EQ(base::telling_digits(1000.0, 200.0), 6) << "four would do";
    EXPECT_EQ(base::telling_digits(12000300.0, 50.0), 8) << "12000250 and one digit more";
    EXPECT_EQ(base::telling_digits(12.0, 0.0003, 4), 7) << "12.0003 and one digit more";
    EXPECT_EQ(base::telling_digits(12.0, 0.0, 4), 4);
    EXPECT_EQ(base::telling_digits(1.0, 1e-30), 15);
}

TEST(Decimals, OfTheRoundedNumberChooseTheUnit)
{
    EXPECT_STREQ(readable_units("nm", 999.9999), "µm") << "six digits make it 1000 nm";
    EXPECT_STREQ(readable_units("nm", -999.999), "nm");
    EXPECT_STREQ(readable_units("nm", -999.97, 4), "µm") << "of four digits";
    EXPECT_STREQ(readable_units("m", 9.999999e-7), "µm");
    EXPECT_STREQ(readable_units("nm", 0.0), "nm");
    EXPECT_STREQ(readable_units("px", 1e9), "px");
}

} // namespace
