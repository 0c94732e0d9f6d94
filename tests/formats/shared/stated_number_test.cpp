#include "formats/shared/stated_number.h"

#include "base/text.h"

#include <gtest/gtest.h>

using namespace formats;

namespace {

TEST(StatedNumber, IsFollowedByABlankOrAUnitAlone)
{
    const struct {
        const char* text;
        std::optional<double> number;
        const char* rest;
    } rows[] = {
        {" 24.1609 nm/V", 24.1609, "nm/V"},
        {"5678.9nm", 5678.9, "nm"},
        {"-1.5e3V/LSB", -1500, "V/LSB"},
        {"20\u00B5m 7", 20, "\u00B5m 7"},
        {"3\t5 arb. units", 3, "5 arb. units"},
        {"7", 7, ""},
        {"24x.1609 nm/V", {}, ""},
        {"43417x", {}, ""},
        {"1.5.2", {}, ""},
        {"17,7404", {}, ""},
        {"1.5D3", {}, ""},
        {"0x0003750000 V/LSB", {}, ""},
        {"1.#QNAN", {}, ""},
        {"infx", {}, ""},
        {"x5", {}, ""},
        {"", {}, ""},
    };
    for (const auto& row : rows) {
        std::string_view rest;
        EXPECT_EQ(stated_number(row.text, &rest), row.number) << row.text;
        EXPECT_EQ(base::trimmed(rest), row.rest) << row.text;
        EXPECT_EQ(lone_number(row.text), *row.rest ? std::nullopt : row.number) << row.text;
    }
}

TEST(StatedCount, IsWholeDecimalAndInItsRange)
{
    const struct {
        const char* text;
        std::optional<std::uint64_t> count;
    } rows[] = {
        {"10", 10},
        {" +512\t", 512},
        {"010", 10},
        {"0", 0},
        {"1000", 1000},
        {"1001", {}},
        {"0x10", {}},
        {"-1", {}},
        {"2.5", {}},
        {"1e3", {}},
        {"5 px", {}},
        {"", {}},
        {"18446744073709551616", {}},
    };
    for (const auto& row : rows) EXPECT_EQ(stated_count(row.text, 1000), row.count) << row.text;
}

} // namespace
