#include "base/VLXMLParser.h"

#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>

namespace {

constexpr std::size_t mebibyte = 1u << 20;

/// Writes down what it is told; some elements provoke it.
class recording_parser : public VLXMLParser {
public:
    std::string log;
    std::string texts;

    void init() override
    {
        if (refusesAtOnce) return fail("not today");
        for (const char* element : {"a", "b", "c"}) {
            add_start_handler(element, &recording_parser::begin);
            add_end_handler(element, &recording_parser::finish);
        }
        add_start_handler("refuse", &recording_parser::refuse);
        add_start_handler("throw", &recording_parser::give_up);
        add_end_handler("throw-late", &recording_parser::give_up_late);
    }
    bool parse(const std::string& xml)
    {
        std::istringstream in(xml);
        return load_xml(in);
    }
    bool refusesAtOnce = false;

private:
    void begin(const char* element, const attributes& found)
    {
        log += std::string("<") + element;
        for (const auto& [name, value] : found) log += " " + name + "=" + value;
        log += ">";
        push_text_buf();
    }
    void finish(const char* element)
    {
        unsigned length = 0;
        const char* text = pop_text_buf(&length);
        log += std::string("</") + element + ">";
        texts += std::string(element) + ":" + std::string(text, length) + ";";
        EXPECT_EQ(text[length], '\0');
    }
    void refuse(const char*, const attributes&) { fail("no such thing"); }
    void give_up(const char*, const attributes&) { throw std::runtime_error("given up"); }
    void give_up_late(const char*) { throw 42; }
    void OnXMLUnparsedEntity(const char* entity, const char*, const char* systemId, const char*,
                             const char* notation) override
    {
        log += std::string("!") + entity + "=" + systemId + ":" + notation;
    }
};

TEST(VLXMLParser, CallsTheBoundHandlers)
{
    recording_parser parser;
    EXPECT_TRUE(parser.parse("<?xml version='1.0'?>\n<a z='1' k='µ&lt;'>one<b>two &amp; <c/>&#xb5;</b>three"
                             "<unknown>four</unknown></a>"))
        << parser.get_error();
    EXPECT_EQ(parser.log, "<a k=µ< z=1><b><c></c></b></a>");
    // Inner text belongs to the innermost collection alone; elements without a handler leave theirs where it stands.
    EXPECT_EQ(parser.texts, "c:;b:two & µ;a:onethreefour;");
    EXPECT_EQ(parser.get_error(), "");
}

TEST(VLXMLParser, ReadsTextInUtf8WhateverTheFileHas)
{
    recording_parser parser;
    EXPECT_TRUE(parser.parse("<?xml version='1.0' encoding='ISO-8859-1'?><a>5 \xb5m</a>"));
    EXPECT_TRUE(parser.parse(std::string("\xff\xfe<\0b\0>\0\xb5\0<\0/\0b\0>\0", 18)));
    EXPECT_EQ(parser.texts, "a:5 µm;b:µ;");
}

std::string nested(int depth)
{
    std::string begin, end;
    for (int i = 0; i < depth; ++i) {
        begin += "<a>";
        end += "</a>";
    }
    return begin + end;
}

/// Expat goes through an unfinished token again with each block.
TEST(VLXMLParser, ReadsALongTokenInFewBlocks)
{
    struct counting_text : std::stringbuf {
        using std::stringbuf::stringbuf;
        int reads = 0;
        std::streamsize xsgetn(char* out, std::streamsize count) override
        {
            ++reads;
            return std::stringbuf::xsgetn(out, count);
        }
    } text("<a b='" + std::string(32u << 20, 'x') + "'/>");
    std::istream in(&text);
    recording_parser parser;
    EXPECT_TRUE(parser.load_xml(in)) << parser.get_error();
    EXPECT_LE(text.reads, 16) << "64 KiB, then twice as much in all each time, at most 8 MiB at once";
}

TEST(VLXMLParser, ReportsUnparsedEntitiesAndFetchesNothing)
{
    recording_parser parser;
    EXPECT_TRUE(parser.parse("<!DOCTYPE a SYSTEM 'file:///etc/hostname' [<!NOTATION raw SYSTEM ''>"
                             "<!ENTITY image SYSTEM 'image.bin' NDATA raw>"
                             "<!ENTITY host SYSTEM 'file:///etc/hostname'>]><a>[&host;]</a>"))
        << parser.get_error();
    EXPECT_EQ(parser.log, "!image=image.bin:raw<a></a>");
    EXPECT_EQ(parser.texts, "a:[];");
}

struct bad_xml {
    const char* name;
    std::string text, error;
};

class VLXMLParserRefuses : public testing::TestWithParam<bad_xml> {};

TEST_P(VLXMLParserRefuses, WithTheReasonAndItsPlace)
{
    recording_parser parser;
    EXPECT_FALSE(parser.parse(GetParam().text));
    EXPECT_EQ(parser.get_error(), GetParam().error);
    EXPECT_EQ(parser.log.find("later"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, VLXMLParserRefuses,
    testing::Values(bad_xml{"Empty", "", "no element found in line 1, column 1"},
                    bad_xml{"CutShort", "<a>\n<b>", "no element found in line 2, column 4"},
                    bad_xml{"WrongEnd", "<a>\n  </b>", "mismatched tag in line 2, column 5"},
                    bad_xml{"Twice", "<a/>\n<b/>", "junk after document element in line 2, column 1"},
                    bad_xml{"UnknownEntity", "<a>&who;</a>", "undefined entity in line 1, column 4"},
                    bad_xml{"NoUtf8", "<a>\xff</a>", "not well-formed (invalid token) in line 1, column 4"},
                    bad_xml{"TooDeep", nested(1001), "elements are nested more than 1000 deep in line 1, column 3001"},
                    bad_xml{"Handler", "<a>\n<refuse/><c later='1'/></a>", "no such thing in line 2, column 1"}),
    [](const auto& each) { return std::string(each.param.name); });

/// `levels` entities, each ten times the one before, the first of 100 bytes.
std::string laughs(int levels)
{
    std::string text = "<!DOCTYPE a [<!ENTITY e0 '" + std::string(100, 'x') + "'>";
    for (int i = 1; i <= levels; ++i) {
        text += "<!ENTITY e" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k) text += "&e" + std::to_string(i - 1) + ";";
        text += "'>";
    }
    return text + "]><a>&e" + std::to_string(levels) + ";</a>";
}

TEST(VLXMLParser, BoundsWhatEntitiesExpandTo)
{
    recording_parser parser;
    EXPECT_TRUE(parser.parse(laughs(3))) << parser.get_error(); // 100 kB
    EXPECT_EQ(parser.texts.size(), 100000u + 3);
    EXPECT_FALSE(parser.parse(laughs(5))); // 10 MB
    EXPECT_NE(parser.get_error().find("1 MiB"), std::string::npos) << parser.get_error();
    EXPECT_FALSE(parser.parse(laughs(12)));
    std::string attributes = laughs(7);
    attributes.replace(attributes.find("<a>"), std::string::npos, "<a k='&e7;'/>");
    EXPECT_FALSE(parser.parse(attributes));
    // A chain of doublings, in which no single text is long.
    std::string nothing = "<!DOCTYPE a [<!ENTITY e0 ''>";
    for (int i = 1; i < 40; ++i) {
        const std::string last = "&e" + std::to_string(i - 1) + ";";
        nothing += "<!ENTITY e" + std::to_string(i) + " '" + last + last + "'>";
    }
    EXPECT_FALSE(parser.parse(nothing + "]><a>&e39;</a>"));
}

/// A document that refers `count` times to an entity of 1,024 bytes, itself made of two.
std::string referring(std::size_t count)
{
    std::string text = "<!DOCTYPE a [<!ENTITY h '" + std::string(512, 'x') + "'><!ENTITY k '&h;&h;'>]><a>";
    for (std::size_t i = 0; i < count; ++i) text += "&k;";
    return text + "</a>";
}

TEST(VLXMLParser, LetsEntitiesExpandToOneMebibyteExactly)
{
    for (int round = 0; round < 2; ++round) { // each document counts for itself
        recording_parser parser;
        EXPECT_TRUE(parser.parse(referring(1024))) << parser.get_error();
        EXPECT_EQ(parser.texts.size(), mebibyte + 3);
        EXPECT_FALSE(parser.parse(referring(1025)));
    }
}

TEST(VLXMLParser, TakesAnyNumberOfEscapedCharacters)
{
    constexpr std::size_t count = 3 * mebibyte / 2;
    for (const char* declarations : {"", "<!DOCTYPE a [<!ENTITY e 'x'>]>"}) {
        for (const char* reference : {"&lt;", "&#38;"}) {
            std::string text = std::string(declarations) + "<a>";
            for (std::size_t i = 0; i < count; ++i) text += reference;
            recording_parser parser;
            ASSERT_TRUE(parser.parse(text + "</a>")) << declarations << reference << parser.get_error();
            EXPECT_EQ(parser.texts.size(), count + 3);
        }
        recording_parser parser; // what looks like a reference and is none
        EXPECT_TRUE(parser.parse(std::string(declarations) + "<a><![CDATA[&e;" + std::string(count, '&') + "]]></a>"))
            << parser.get_error();
    }
}

TEST(VLXMLParser, LetsExceptionsOfHandlersThrough)
{
    recording_parser parser;
    EXPECT_THROW(parser.parse("<a><throw/><b/></a>"), std::runtime_error);
    EXPECT_EQ(parser.log, "<a>"); // nothing was delivered behind it
    EXPECT_THROW(parser.parse("<a><throw-late></throw-late></a>"), int);
    EXPECT_TRUE(parser.parse(nested(1000))) << parser.get_error();
}

TEST(VLXMLParser, RefusesWhatCannotBeRead)
{
    recording_parser parser;
    std::istringstream failed("<a/>");
    failed.setstate(std::ios::failbit);
    EXPECT_FALSE(parser.load_xml(failed));
    EXPECT_EQ(parser.get_error(), "the XML text cannot be read");
    parser.refusesAtOnce = true;
    EXPECT_FALSE(parser.parse("<a/>"));
    EXPECT_EQ(parser.get_error(), "not today");
    EXPECT_EQ(parser.log, "");
}

} // namespace
