#include "base/SPMVar.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

SPMVar declared(const char* text)
{
    SPMVar var;
    var.Init(text);
    return var;
}

TEST(SPMVarNumber, TakesTheNearestAllowedValue)
{
    struct assignment {
        const char* declaration;
        double given, stored;
    };
    const assignment cases[] = {
        {"x,double,0,1,0.25", 0.4, 0.5},   // (0.4 - 0) / 0.25 = 1.6, rounds to 2 steps
        {"x,double,0,1,0.25", 0.375, 0.5}, // halves go up
        {"x,double,0,1,0.25", -3, 0},
        {"x,double,0,1,0.3", 1, 0.9}, // 3.33 steps
        {"x,double,0,0.95,0.3", 0.95, 0.9},
        {"x,double,-1,1,0.5", -0.25, 0}, // 1.5 steps above -1: halves go up below zero too
        {"x,double,,10,0.5", 3.3, 3.5},  // no lower limit: steps count from 0
        {"x,double", 1e300, 1e300},
        {"n,int,0,9", 2.5, 3},
        {"n,int", -2.5, -2},
        {"n,int,,5", 77, 5},
        {"n,int,0.5,2.5", 9, 2}, // limits between whole numbers leave the whole ones inside
        {"n,int,0.5,2.5", -9, 1},
        {"b,boolean", 5, 1},
        {"b,boolean", 0.2, 0},
    };
    for (const assignment& each : cases) {
        SPMVar var = declared(each.declaration);
        EXPECT_DOUBLE_EQ(var = each.given, each.stored) << each.declaration << " " << each.given;
        EXPECT_DOUBLE_EQ(double(var), each.stored);
    }
}

TEST(SPMVar, ReadsByItsType)
{
    SPMVar text = declared("s,string");
    EXPECT_EQ(double(text), 0.0);
    EXPECT_FALSE(bool(text));
    text.set_string("0");
    EXPECT_EQ(double(text), 0.0);
    EXPECT_TRUE(bool(text));
    text.set_string("12.75");
    EXPECT_EQ(double(text), 12.75);
    EXPECT_EQ(int(text), 12);
    EXPECT_EQ(text = 3.0, 0.0); // a number does not reach a text
    EXPECT_STREQ(text.value.string.text, "12.75");

    SPMVar choice = declared("e,enum,100,A,7(seven)");
    choice.set_enum_val(2);
    EXPECT_EQ(double(choice), 7.0);
    EXPECT_EQ(int(choice), 2);
    choice = 1;
    EXPECT_EQ(double(choice), 1.0); // no number: its position
    choice = 99;
    EXPECT_EQ(int(choice), 1); // out of range: no change
    EXPECT_EQ(double(declared("e,enum")), 0.0);

    const SPMVar array = declared("a,array,3,2");
    EXPECT_EQ(double(array), 0.0);
    EXPECT_FALSE(bool(array));
    EXPECT_EQ(double(SPMVar()), 0.0);
    EXPECT_FALSE(bool(SPMVar()));
}

TEST(SPMVar, IntegersAreTruncatedAndSaturate)
{
    SPMVar x = declared("x,double");
    x = -2.9;
    EXPECT_EQ(int(x), -2);
    x = 1e99;
    EXPECT_EQ(int(x), std::numeric_limits<int>::max());
    x = std::nan("");
    EXPECT_EQ(int(x), 0);
}

TEST(SPMVar, TextAndValueAreInverse)
{
    SPMVar x = declared("x,double");
    for (const double value : {0.1, 1.0 / 3.0, 1e-300, 123456789.125, -5e-324, 1.7976931348623157e308,
                               std::numeric_limits<double>::infinity()}) {
        x = value;
        const smart_string text = x.as_string();
        x = 0.0;
        ASSERT_TRUE(x.from_string(text.c_str()));
        EXPECT_EQ(double(x), value) << text.c_str();
    }
    SPMVar bytes = declared("a,array,0,2");
    ASSERT_TRUE(bytes.from_string("0100ff7F"));
    ASSERT_EQ(bytes.array_length(), 2u);
    EXPECT_STREQ(bytes.as_string().c_str(), "0100ff7f");
    EXPECT_FALSE(bytes.from_string("01")) << "half an element";
    EXPECT_EQ(bytes.array_length(), 2u);

    SPMVar flag = declared("b,boolean");
    EXPECT_TRUE(flag.from_string("true"));
    EXPECT_STREQ(flag.as_string().c_str(), "true");
    EXPECT_TRUE(flag.from_string("0"));
    EXPECT_STREQ(flag.as_string().c_str(), "false");
    EXPECT_FALSE(flag.from_string("maybe"));

    SPMVar choice = declared("e,enum,A(Left),Left(Right)");
    EXPECT_TRUE(choice.from_string("Left")) << "keys come before labels";
    EXPECT_EQ(int(choice), 1);
    EXPECT_TRUE(choice.from_string("Right"));
    EXPECT_EQ(int(choice), 1);
    EXPECT_STREQ(choice.as_string().c_str(), "Left");
    EXPECT_FALSE(choice.from_string("right"));

    SPMVar equal = declared("e,enum,a(x),a(y)");
    equal.set_enum_val(1);
    EXPECT_STREQ(equal.as_string().c_str(), "y") << "the key alone would name the first";

    SPMVar limited = declared("x,double,0,5"), whole = declared("n,int");
    EXPECT_FALSE(limited.from_string("nan")) << "it lies within no limits";
    EXPECT_FALSE(whole.from_string("-nan"));
    EXPECT_EQ(double(limited) + double(whole), 0.0);
    EXPECT_TRUE(x.from_string("nan")) << "a free number may be any";
    EXPECT_TRUE(std::isnan(double(x)));

    SPMVar colour = declared("c,int");
    EXPECT_TRUE(colour.from_string("0x0064c800)"));
    EXPECT_EQ(double(colour), 0x64c800);
    SPMVar text = declared("s,string");
    EXPECT_TRUE(text.from_string(L"µm"));
    EXPECT_STREQ(text.as_string().c_str(), "µm");
}

TEST(SPMVar, CopiesAreDeepAndMovesLeaveNothing)
{
    SPMVar source = declared("a(Label),array,2,2 int16,,#x");
    const short samples[] = {5, -6, 7};
    source.set_array(samples, 3, 0);
    SPMVar copy(source);
    static_cast<short*>(copy.array_data())[0] = 99;
    EXPECT_EQ(static_cast<short*>(source.array_data())[0], 5);
    EXPECT_STREQ(copy.description().c_str(), source.description().c_str());
    SPMVar moved(std::move(copy));
    EXPECT_EQ(copy.type, SPM_VAR_NONE);
    EXPECT_STREQ(moved.get_options(), ",#x");
    const SPMVar& itself = moved;
    moved = itself;
    EXPECT_EQ(moved.array_length(), 3u);
    SPMVar choice = declared("e,enum,A,B"), other;
    choice.set_enum_val(1);
    other = choice;
    choice.Destroy();
    EXPECT_STREQ(other.as_string().c_str(), "B");
}

TEST(SPMVarArray, GrowsOnlyWhenItMust)
{
    SPMVar a = declared("a,array,4,2 int16");
    const short samples[] = {1, 2, 3};
    a.set_array(samples, 3, 1);
    EXPECT_EQ(a.array_length(), 4u);
    a.set_array(samples, 3, 3);
    ASSERT_EQ(a.array_length(), 6u);
    const std::vector<short> expected = {0, 1, 2, 1, 2, 3};
    EXPECT_EQ(std::memcmp(a.array_data(), expected.data(), a.data_size()), 0);
    a.set_array(nullptr, 2, 8);
    EXPECT_EQ(a.array_length(), 10u);
    a.set_array_len(2);
    a.set_array_len(3);
    EXPECT_EQ(static_cast<short*>(a.array_data())[1], 1);
    EXPECT_EQ(static_cast<short*>(a.array_data())[2], 0);
    EXPECT_THROW(a.set_array(samples, 3, unsigned(-2)), std::length_error);
    EXPECT_EQ(a.array_length(), 3u);
}

TEST(SPMVarArray, ConvertsByMappingTheRange)
{
    SPMVar a = declared("a,array,5,8 float64");
    const double values[] = {-1.0, 0.0, 0.5, 3.0, std::nan("")};
    a.set_array(values, 5, 0);
    double lo = -1.0, hi = 1.0;
    a.convert_array(SPM_ARRAY_UINT8, &lo, &hi);
    // (v + 1) / 2 * 255: 0, 127.5 up to 128, 191.25, clamped, NaN the lowest
    const std::uint8_t expected[] = {0, 128, 191, 255, 0};
    ASSERT_EQ(a.array_element_size(), 1u);
    EXPECT_EQ(std::memcmp(a.array_data(), expected, 5), 0);
    EXPECT_EQ(lo, 0.0);
    EXPECT_EQ(hi, 255.0);
    lo = 3, hi = 4;
    a.convert_array(SPM_ARRAY_UINT8, &lo, &hi);
    EXPECT_EQ(lo, 3.0) << "to its own type nothing changes";
    a.convert_array(SPM_ARRAY_INT16, &lo, &hi);
    EXPECT_EQ(static_cast<short*>(a.array_data())[3], 255) << "a wider type keeps the numbers";
    EXPECT_EQ(lo, 3.0);
    lo = 7, hi = 7;
    a.convert_array(SPM_ARRAY_INT8, &lo, &hi);
    EXPECT_EQ(static_cast<std::int8_t*>(a.array_data())[3], 0) << "an empty range";
    EXPECT_EQ(hi, 0.0);
}

TEST(SPMVarArray, SixtyFourBitIntegersKeepTheirEnds)
{
    SPMVar a = declared("a,array,2,8 float64");
    const double values[] = {-1.0, 1.0};
    a.set_array(values, 2, 0);
    double lo = -1.0, hi = 1.0;
    a.convert_array(SPM_ARRAY_INT64, &lo, &hi);
    EXPECT_EQ(static_cast<std::int64_t*>(a.array_data())[0], std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(static_cast<std::int64_t*>(a.array_data())[1], std::numeric_limits<std::int64_t>::max());
}

TEST(SPMVar, ConvertedNumbersRoundHalvesUpAndStayWithinTheirType)
{
    const double numbers[] = {0.5, -0.5, -1.5, 1.4375, -2.5625, 40000.0, -40000.0, NAN, INFINITY, -INFINITY, 32766.5};
    const std::int16_t expected[] = {1, 0, -1, 1, -3, 32767, -32768, -32768, 32767, -32768, 32767};
    SPMVar array;
    array.Init("a", "a", SPM_VAR_ARRAY, static_cast<unsigned>(std::size(numbers)), 8u);
    array.set_array_type(SPM_ARRAY_FLOAT64);
    array.set_array(numbers, static_cast<unsigned>(std::size(numbers)), 0);
    double low = -32768.0, high = 32767.0; // one number a step
    array.convert_array(SPM_ARRAY_INT16, &low, &high);
    const auto* converted = static_cast<const std::int16_t*>(array.array_data());
    for (std::size_t i = 0; i < std::size(numbers); ++i) EXPECT_EQ(converted[i], expected[i]) << numbers[i];
}

} // namespace
