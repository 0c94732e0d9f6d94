#include "base/text.h"

#include <gtest/gtest.h>
#include <random>

namespace {

/// Takes over and releases what a conversion returned.
template <class Character>
std::basic_string<Character> taken(Character* text)
{
    std::basic_string<Character> copy(text);
    vlutl_free(text);
    return copy;
}

const std::string wrong = "\xef\xbf\xbd"; // U+FFFD

struct byte_case {
    const char* name;
    std::string bytes;
    std::wstring wide; ///< of utf82wchar
    bool isValid;
};

const byte_case byteCases[] = {
    {"ASCII", "abc", L"abc", true},
    {"First and last of each length", "\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf",
     L"\x7f\x80\x7ff\x800\xffff\x10000\x10ffff", true},
    {"Beside the surrogates", "\xed\x9f\xbf\xee\x80\x80", L"\xd7ff\xe000", true},
    {"Overlong slash", "\xc0\xaf", L"\xfffd\xfffd", false},
    {"Overlong in three", "\xe0\x9f\xbf", L"\xfffd\xfffd\xfffd", false},
    {"Overlong in four", "\xf0\x8f\xbf\xbf", L"\xfffd\xfffd\xfffd\xfffd", false},
    {"Surrogate", "\xed\xa0\x80", L"\xfffd\xfffd\xfffd", false},
    {"Above the last", "\xf4\x90\x80\x80", L"\xfffd\xfffd\xfffd\xfffd", false},
    {"No lead", "\xf8\xff\x80", L"\xfffd\xfffd\xfffd", false},
    {"Cut in three", "\xe2\x82", L"\xfffd\xfffd", false},
    {"Cut by a letter", "\xe2\x82z", L"\xfffd\xfffdz", false},
    {"Latin-1 micro", "5 \xb5m", L"5 \xfffdm", false},
};

TEST(Encoding, DecodesStrictUtf8)
{
    for (const byte_case& each : byteCases) {
        EXPECT_EQ(base::is_utf8(each.bytes), each.isValid) << each.name;
        EXPECT_EQ(taken(utf82wchar(each.bytes.c_str())), each.wide) << each.name;
        const std::string valid = taken(char2utf8(each.bytes.c_str()));
        EXPECT_TRUE(base::is_utf8(valid)) << each.name;
        EXPECT_EQ(valid == each.bytes, each.isValid) << each.name;
        EXPECT_EQ(valid, taken(wchar2utf8(each.wide.c_str()))) << each.name;
        EXPECT_EQ(taken(wchar2char(taken(char2wchar(each.bytes.c_str())).c_str())), each.bytes) << each.name;
    }
    EXPECT_TRUE(base::is_utf8(std::string_view("a\0b", 3)));
}

TEST(Encoding, KeepsAnyBytesOfAFileName)
{
    std::mt19937 random(2);
    for (int round = 0; round < 20000; ++round) {
        std::string name(random() % 12, '\0');
        // Mostly lead and continuation bytes, so that valid and nearly valid sequences come up.
        for (char& c : name) c = static_cast<char>(random() % 3 ? 0x80 + random() % 128 : 1 + random() % 127);
        ASSERT_EQ(base::narrow(base::widen(name)), name);
    }
}

TEST(Encoding, ReplacesWideCharactersThatAreNone)
{
    const wchar_t wide[] = {L'a',
                            static_cast<wchar_t>(0xd800),
                            static_cast<wchar_t>(0xdfff),
                            static_cast<wchar_t>(0x110000),
                            static_cast<wchar_t>(0xdc80),
                            static_cast<wchar_t>(-1),
                            0};
    EXPECT_EQ(taken(wchar2utf8(wide)), "a" + wrong + wrong + wrong + wrong + wrong);
    EXPECT_EQ(taken(wchar2char(wide)), "a" + wrong + wrong + wrong + "\x80" + wrong); // U+DC80 stands for a byte
}

TEST(Encoding, ReadsTheEncodingsOfInstrumentFiles)
{
    EXPECT_EQ(base::latin1_to_utf8("5 \xb5m \xb0 \x80"), "5 µm ° \xc2\x80");
    EXPECT_EQ(base::cp1252_to_utf8("\x80 \x93q\x94 \x85 \xb5 \x9f \x81"), "€ “q” … µ Ÿ \xc2\x81");
    const std::string clef = "\xf0\x9d\x84\x9e"; // U+1D11E: the units D834 DD1E
    EXPECT_EQ(base::utf16_to_utf8(std::string_view("\xb5\0m\0\x34\xd8\x1e\xdd", 8), false), "µm" + clef);
    EXPECT_EQ(base::utf16_to_utf8(std::string_view("\0\xb5\0m\xd8\x34\xdd\x1e", 8), true), "µm" + clef);
    // A lead without its trail, a trail alone, a lead at the end, an odd byte.
    EXPECT_EQ(base::utf16_to_utf8(std::string_view("\x34\xd8z\0\x1e\xdd\x34\xd8q", 9), false),
              wrong + "z" + wrong + wrong);
}

} // namespace
