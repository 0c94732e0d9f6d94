#include "formats/nanoscope/nanoscope_header.h"

#include <gtest/gtest.h>

using formats::nanoscope_list;
using formats::parse_nanoscope_header;

namespace {

TEST(NanoscopeHeader, ListsStayInOrderAndKeysAreFoundInAnyCase)
{
    const auto header = parse_nanoscope_header("\\*File list\r\n\\Version: 0x09200000\r\n\\Data length: 8192\r\n"
                                               "\\*Scanner list\r\n\\Lines: 7\r\n\\@Sens. Zsens: V 5 nm/V\r\n"
                                               "\\*Ciao scan list\r\n\\SCAN size: 3 nm\r\n\\Lines: 512\r\n"
                                               "\\*Ciao image list\r\n\\Samps/line: 4\r\n\\@12:Z scale: V (1) 2 V\r\n"
                                               "\\*Ciao force image list\r\n\\*AFM image list\r\n\\Samps/line: 5\r\n"
                                               "\\*File list end\r\n\\Version: 1\r\n");
    ASSERT_EQ(header.sections.size(), 6u);
    EXPECT_EQ(header.version(), 0x09200000u);
    EXPECT_EQ(header.length(), 8192u);
    EXPECT_EQ(*header.setting("scan size"), "3 nm");
    EXPECT_EQ(*header.setting("lines"), "512") << "the scan list goes before the scanner's";
    EXPECT_EQ(*header.typedSetting("sens. zsens"), "V 5 nm/V");
    EXPECT_EQ(header.setting("samps/line"), nullptr) << "images do not speak for the file";
    EXPECT_EQ(header.sections[3].kind, nanoscope_list::image);
    EXPECT_EQ(*header.sections[3].findTyped("z scale"), "V (1) 2 V");
    EXPECT_EQ(header.sections[3].find("z scale"), nullptr);
    EXPECT_EQ(header.sections[4].kind, nanoscope_list::force_image);
    EXPECT_EQ(header.sections[5].number("samps/line"), 5.0);
}

TEST(NanoscopeHeader, DamagedLinesAreLeftOut)
{
    const auto header =
        parse_nanoscope_header("\\*File list\r\n\\Version 0x05\r\n: 7\r\n\\:\r\n\\Note: a: b \r\n\\@2\r\n"
                               "stray\r\n\\\r\n\\@\r\n\\Text: \xB5m \xC2\xB5m?\r\n\\Te");
    ASSERT_EQ(header.sections.size(), 1u);
    ASSERT_EQ(header.sections[0].lines.size(), 2u);
    EXPECT_EQ(*header.setting("note"), "a: b");
    EXPECT_EQ(*header.setting("text"), "\u00B5m \u00C2\u00B5m?") << "one byte that is no UTF-8 makes a line Latin-1";
    EXPECT_EQ(header.version(), 0u);
    EXPECT_FALSE(header.length());
}

TEST(NanoscopeHeader, ItsTextEndsAtTheListEndOrAtControlZAndCountsAreExact)
{
    const std::string withEnd = "\\*File list\r\n\\A: 1\r\n\\*File list end\r\n";
    EXPECT_EQ(parse_nanoscope_header(withEnd + "\x1A\x1A 12 13").textLength, withEnd.size());
    EXPECT_EQ(parse_nanoscope_header("\\*File list\r\n\\A: 1\r\n\x1A\\B: 2").textLength, 20u);
    EXPECT_EQ(formats::leading_count("40960 bytes"), 40960u);
    for (const char* text : {"", "x", "-1", "1.5", "1e300", "nan", "inf", "9007199254740994"})
        EXPECT_FALSE(formats::leading_count(text)) << text;
}

} // namespace
