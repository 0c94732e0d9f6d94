#include "formats/shared/stated_number.h"

#include "base/text.h"

#include <gtest/gtest.h>
#include <tuple>

using namespace formats;

namespace {

TEST(StatedNumber, IsFollowedByABlankOrAUnitAlone)
{
    const std::tuple<const char*, double, const char*> rows[] = {
        {" 24.1609 nm/V", 24.1609, "nm/V"},     {"5678.9nm", 5678.9, "nm"},
        {"-1.5e3V/LSB", -1500, "V/LSB"},        {"20\u00B5m 7", 20, "\u00B5m 7"},
        {"3\t5 arb. units", 3, "5 arb. units"}, {"7", 7, ""}};
    for (const auto& [text, number, unit] : rows) {
        std::string_view rest;
        EXPECT_EQ(stated_number(text, &rest), number) << text;
        EXPECT_EQ(base::trimmed(rest), unit) << text;
        EXPECT_EQ(lone_number(text).has_value(), *unit == '\0') << text;
    }
    for (const char* text :
         {"24x.1609 nm/V", "43417x", "1.5.2", "17,7404", "1.5D3", "0x0003750000 V/LSB", "1.#QNAN", "infx", "x5", ""})
        EXPECT_FALSE(stated_number(text) || lone_number(text)) << text;
}

TEST(StatedCount, IsWholeDecimalAndInItsRange)
{
    const std::pair<const char*, std::uint64_t> rows[] = {
        {"10", 10}, {" +512\t", 512}, {"010", 10}, {"0", 0}, {"1000", 1000}};
    for (const auto& [text, count] : rows) EXPECT_EQ(stated_count(text, 1000), count) << text;
    for (const char* text : {"1001", "0x10", "-1", "2.5", "1e3", "5 px", "", "18446744073709551616"})
        EXPECT_FALSE(stated_count(text, 1000)) << text;
}

} // namespace
