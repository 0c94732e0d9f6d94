#include "platform/profile/profile_line.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using bytes = std::vector<std::byte>;

TEST(ProfileLine, WritesEntriesOnOneLineAndReadsThemBack)
{
    const std::tuple<std::string, platform::profile_value, std::string> cases[] = {
        {"size", -2147483647 - 1, "size=-2147483648"},
        {"title", "5 \"x\" \\ 5"s, R"(title="5 \"x\" \\ 5")"},
        {"lines", "a\nb\r\tc\0d\x7f"s, R"(lines="a\nb\r\tc\x00d\x7f")"},
        {"utf-8", "µm \xe2\x82\xac \xf0\x9f\x94\xac"s, "utf-8=\"µm \xe2\x82\xac \xf0\x9f\x94\xac\""},
        {"not utf-8", "\xb5m\xc3\xe2\x82z\xff"s, R"(not utf-8="\xb5m\xc3\xe2\x82z\xff")"},
        {"a=b]\"", "="s, R"(a\=b]"="=")"},
        {" ", ""s, R"(\x20="")"},
        {" \\ ", ""s, R"(\x20\\\x20="")"},
        {"", 0, "=0"},
        {"#no comment", 1, R"(\x23no comment=1)"},
        {";", 1, R"(\x3b=1)"},
        {"[x]", 1, R"(\x5bx]=1)"},
        {"table", bytes{std::byte{0}, std::byte{0xff}, std::byte{0x1a}}, "table=hex:00ff1a"},
        {"nothing", bytes{}, "nothing=hex:"},
    };
    for (const auto& [key, value, line] : cases) {
        EXPECT_EQ(platform::write_entry_line({key, value}), line);
        const auto read = platform::read_entry_line(line);
        ASSERT_TRUE(read) << line;
        EXPECT_EQ(read->key, key);
        EXPECT_EQ(read->value, value) << line;
    }
}

TEST(ProfileLine, ReadsWhatAPersonTypes)
{
    const std::tuple<std::string, std::string, platform::profile_value> cases[] = {
        {"  size = 12 \r", "size", 12},
        {"mask=0x1F", "mask", 31},
        {"a b = \" c \"", "a b", " c "s},
        {"raw=\"tab\t\xff\0\""s, "raw", "tab\t\xff\0"s},
        {"table=hex:AbcD", "table", bytes{std::byte{0xab}, std::byte{0xcd}}},
    };
    for (const auto& [line, key, value] : cases) {
        const auto read = platform::read_entry_line(line);
        ASSERT_TRUE(read) << line;
        EXPECT_EQ(read->key, key);
        EXPECT_EQ(read->value, value) << line;
    }
}

TEST(ProfileLine, LeavesAloneWhatIsNoEntry)
{
    for (const char* line : {"",
                             " ",
                             "# a=1",
                             ";a=1",
                             "[a]=1",
                             "no value",
                             "a=",
                             "a=word",
                             "a=1 2",
                             "a=1.5",
                             "a=2147483648",
                             "a=99999999999999999999",
                             "a=\"open",
                             "a=\"",
                             "a=\"shut\" more",
                             "a=\"\\\"",
                             R"(a="\q")",
                             R"(a="\x4")",
                             R"(a="\x+1")",
                             "a=hex:0",
                             "a=hex:0g",
                             "a=hex: 00",
                             "a=float:1",
                             "a\\=1",
                             "a\\",
                             R"(\q=1)"})
        EXPECT_FALSE(platform::read_entry_line(line)) << line;
}

TEST(ProfileLine, TellsSectionsFromBrokenOnes)
{
    const std::pair<std::string, std::string> names[] = {
        {"Plugins\\Median", R"([Plugins\\Median])"},
        {"", "[]"},
        {" a=[b] ", R"([ a=[b\] ])"},
        {"two\nlines\0"s, R"([two\nlines\x00])"},
        {"]", R"([\]])"},
        {"\\", R"([\\])"},
        {"\xff", R"([\xff])"},
        {"\"#;", R"(["#;])"},
    };
    for (const auto& [name, line] : names) {
        EXPECT_EQ(platform::write_section_line(name), line);
        EXPECT_EQ(platform::read_section_line("\t" + line + " \r"), name);
    }
    for (const char* line : {"[", "[a", "[a]b", "[a\\]", "[a]]", R"([\q])", R"([\x1])"}) {
        EXPECT_TRUE(platform::opens_section(line)) << line;
        EXPECT_FALSE(platform::read_section_line(line)) << line;
    }
    EXPECT_FALSE(platform::opens_section("a=[b]"));
}

} // namespace
