#include "base/text.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

std::string zeros(std::size_t count) { return std::string(count, '0'); }

TEST(LeadingNumber, ReadsWhatStandsInFront)
{
    struct reading {
        std::string text;
        double value;
        std::size_t used;
    };
    const reading cases[] = {
        {"12.5 nm", 12.5, 4},
        {" \t-3e2;", -300, 6},
        {"+.5", 0.5, 3},
        {"1,5", 1, 1},
        {"2E+x", 2, 1},               // an exponent without digits is not one
        {"0x0064c800)", 6604800, 10}, // 0x64c8 * 256 = 25800 * 256
        {"-0XfF", -255, 5},
        {"0xg", 0, 1},
        {"0x1" + zeros(16), 18446744073709551616.0, 19}, // 2^64
        {"0x1.8", 1, 3},
        {"-Infinity;", -infinity, 9},
        {"-1e400", -infinity, 6},
        {"1e99999999999999999999", infinity, 22},
        {"1e-99999999999999999999", 0, 23},
        {"2.5e-310", 2.5e-310, 8},
        {"0." + zeros(400) + "1", 0, 403},
        {"0." + zeros(400) + "1e405", 1e4, 407},
        {"1" + zeros(400) + "e-400", 1, 406},
        {"1" + zeros(400) + "e-9", infinity, 404},
    };
    for (const reading& each : cases) {
        std::size_t used = 99999;
        const auto value = base::leading_number(each.text, &used);
        ASSERT_TRUE(value) << each.text;
        EXPECT_EQ(*value, each.value) << each.text;
        EXPECT_EQ(used, each.used) << each.text;
    }
    EXPECT_TRUE(std::signbit(*base::leading_number("-0")));
    EXPECT_TRUE(std::isnan(*base::leading_number("NaN,")));
}

TEST(LeadingNumber, IsNotFoundInWords)
{
    for (const char* text : {"", " ", "-", "+-1", "--1", "- 1", ".", "e5", ",5", "nano", "information", "x10", "\xb5"})
        EXPECT_FALSE(base::leading_number(text)) << text;
    EXPECT_FALSE(base::leading_number(std::string_view()));
}

TEST(WholeNumber, TakesTheWholeText)
{
    EXPECT_EQ(base::whole_number(" 1.25\r\n"), 1.25);
    EXPECT_EQ(base::whole_number("0x10"), 16.0);
    for (const char* text : {"1 2", "1.2.3", "1e", "5nm", "", "0x"}) EXPECT_FALSE(base::whole_number(text)) << text;
}

TEST(WholeInteger, FitsSixtyFourBitsOrIsNone)
{
    EXPECT_EQ(base::whole_integer(" 9223372036854775807 "), std::numeric_limits<long long>::max());
    EXPECT_EQ(base::whole_integer("-9223372036854775808"), std::numeric_limits<long long>::min());
    EXPECT_EQ(base::whole_integer("+7"), 7);
    EXPECT_EQ(base::whole_integer("-0x1F"), -31);
    for (const char* text : {"9223372036854775808", "-9223372036854775809", "0x8000000000000000", "1.0", "1e3", "+-1",
                             "-", "", "0x", "12a"})
        EXPECT_FALSE(base::whole_integer(text)) << text;
}

TEST(Shortest, ReadsBackEqual)
{
    EXPECT_EQ(base::shortest(0.1), "0.1");
    EXPECT_EQ(base::shortest(-2.5e-9), "-2.5e-09");
    EXPECT_EQ(base::shortest(infinity), "inf");
    std::mt19937_64 random(1);
    for (int round = 0; round < 20000; ++round) {
        const std::uint64_t bits = random();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isnan(value)) continue;
        ASSERT_EQ(base::whole_number(base::shortest(value)), value) << bits;
    }
}

TEST(General, PrintsAsPrintfDoes)
{
    // This program's locale is "C" here, so that the library's own printf is the witness.
    for (const double value : {0.0, 1.0, -0.5, 123456.7, 1234567.0, 1e-5, 0.0001234567, 1e100, -1e-300})
        for (const int digits : {1, 3, 6, 17, 40}) {
            char expected[128];
            std::snprintf(expected, sizeof expected, "%.*g", digits, value);
            EXPECT_EQ(base::general(value, digits), expected);
        }
    EXPECT_EQ(base::general(1.5, 0), "2");
    EXPECT_EQ(base::general(1.0, 100000), "1");
}

TEST(Text, IsCutAndCompared)
{
    EXPECT_EQ(base::trimmed(" \t a b \r\n"), "a b");
    EXPECT_EQ(base::trimmed(" \n"), "");
    EXPECT_EQ(base::lower_ascii("AbZ\xc3\x84"), "abz\xc3\x84");
    EXPECT_TRUE(base::equal_ignoring_case("Scan Size", "scan size"));
    EXPECT_FALSE(base::equal_ignoring_case("a", "ab"));
    EXPECT_EQ(base::split("a,,b,", ','), (std::vector<std::string_view>{"a", "", "b", ""}));
    EXPECT_EQ(base::split("", ','), (std::vector<std::string_view>{""}));
}

TEST(UntokenizedFind, SkipsQuotedText)
{
    struct search {
        const char* text;
        int start, found;
    };
    const search cases[] = {
        {"value ; comment", 0, 6},
        {"; all", 0, 0},
        {"\"a;b\" ; c", 0, 6},
        {"'a;\"' ;", 0, 6}, // a quote of the other kind is text
        {"\"it's\" ;", 0, 7},
        {"a;b;c", 2, 3},
        {"\"a;b\";", 2, 5}, // quotes count from the front, wherever the search begins
        {"none", 0, -1},
        {"", 0, -1},
        {"a;", 9, -1},
        {nullptr, 0, -1},
    };
    for (const search& each : cases)
        EXPECT_EQ(untokenized_find(each.text, ';', each.start), each.found) << (each.text ? each.text : "null");
}

} // namespace
