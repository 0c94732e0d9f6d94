#include "formats/instrument_fixture.h"
#include "formats/single/sm2.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

/// A page of 2 by 2 short samples, the fields of which the cases change.
struct page_parts {
    std::string shape = " 0 1 0 2 2 8 1", x = "X -1.5E-10 3E-9 m", z = "Z 2E-12 1E-9 m", scan = "scan 0 1.0",
                id = "id 5 512", label = "Topo", comment = "a note", data = std::string("\1\0\2\0\3\0\4\0", 8);
};

std::string build(const page_parts& parts)
{
    bytes_builder out;
    out.text(std::string(512, ' ')).text(0, "STiMage 3.1 01/31/94 13:32:15");
    out.text(0x20, parts.shape).text(0x40, parts.x).text(0x60, "Y 2E-10 0 m").text(0x80, parts.z);
    out.text(0xA0, "XY 0 G 30").text(0xC0, "IV 1E-9 0.5").text(0xE0, parts.scan).text(0x100, parts.id);
    out.text(0x140, parts.label).text(0x160, parts.comment).seek(512).text(parts.data);
    return out.content;
}

TEST(Sm2, ImagesStandUprightAndDirectionsJoin)
{
    page_parts right, left; // the top row first, each from right to left
    left.data = std::string("\5\0\6\0\7\0\x8\0", 8);
    left.scan = "scan 1 2.5";
    left.comment = "\r\n<?xml"; // over the comment alone
    const auto result = read(formats::read_sm2, build(right) + build(left));
    EXPECT_EQ(told(result), "Topo [m] (2: 3e-09 + 1.5e-10 m; 2: 0 + 2e-10 m) {Forward, Reverse}: " // 1 + 0.002 raw nm
                            "1.008e-09 1.006e-09 1.004e-09 1.002e-09 1.016e-09 1.014e-09 1.012e-09 1.01e-09");
    expect_image(image_at(result, 0), {.strings = {{"\\Date", "01/31/94 13:32:15"},
                                                   {"\\Scan direction", "right / left"},
                                                   {"Scan period", "1 / 2.5"},
                                                   {"Id", "5"},
                                                   {"Comment", "a note"}}});
    right.label = left.label = ""; // kinds without a name are all pages, those of different quantities stay apart
    right.shape = "0 1 0 2 2 8 3";
    left.shape = "0 1 0 2 2 8 7";
    const auto apart = read(formats::read_sm2, build(right) + build(left));
    ASSERT_EQ(apart->items.size(), 2u);
    EXPECT_STREQ(image_at(apart, 1).stream.get_description(), "Page");
}

TEST(Sm2, SamplesOfEveryTypeTurnWholeAndCurvesKeepTheSignOfTheirAxis)
{
    EXPECT_EQ(told(read(formats::read_sm2, seed("sm2/curves.sm2").content)), // bytes, -0.5 V a point
              "I-V [counts/s] (3: 1 + -0.5 V): 0.5 1 1.5 -2 2.5 3");
    page_parts wide;
    wide.shape = "0 2 0 2 1 8 5";
    wide.z = "Z 1 0 V/\xFBHz";
    wide.data = bytes_builder().add(std::int32_t{-100000}).add(std::int32_t{100000}).content;
    EXPECT_EQ(told(read(formats::read_sm2, build(wide))),
              "Topo [V/sqrt(Hz)] (2: 3e-09 + 1.5e-10 m; 1: 0 + 2e-10 m) {Forward}: 100000 -100000");
    const auto floats = read(formats::read_sm2, seed("sm2/floats.sm2").content); // 0.5, and one that is no number
    EXPECT_EQ(image_at(floats, 0).strings.at("\\Void points"), "1");
    for (const double value : physical_of(image_at(floats, 0))) EXPECT_NEAR(value, 0.5, 1e-9);
}

TEST(Sm2, WhatFollowsAnUnreadablePageIsLeftOut)
{
    const std::string whole = build({});
    const auto result = read(formats::read_sm2, whole + whole.substr(0, 515));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->items.size(), 1u);
    EXPECT_NE(result->strings.at("Unread pages").find("cut short"), std::string::npos);
    expect_cuts_refused(formats::read_sm2, whole);
}

TEST(Sm2, RefusesWhatCannotBe)
{
    const auto shaped = [](const char* shape) { return build({.shape = shape}); };
    expect_refused(formats::read_sm2,
                   {
                       {build({.x = "X 0 3E-9 m"}), "the scale of axis 1 is 0: it is told by the field X"},
                       {build({.x = "X wide"}), "the scale of axis 1 is 0"},
                       {build({.z = "Z nan 0 m"}), "the scale of the values is no number"},
                       {"something of another program", "Smena files have no public layout"},
                       {shaped("0 1 0 2 2"), "fewer than seven numbers"},
                       {shaped("2 1 0 2 2 8 1"), "page type is not known"},
                       {shaped("0 4 0 2 2 8 1"), "data type is not known"},
                       {shaped("0 nan 0 2 2 8 1"), "data type is not known"},
                       {shaped("0 1 0 0 2 8 1"), "not above 0"},
                       {shaped("0 1 0 2 1e9 8 1"), "above 65536"},
                       {shaped("0 1 0 2 3 8 1"), "beyond the end of the file"},
                       {build({.id = "id 5 100"}), "data offset lies inside the header"},
                       {build({.id = "id 5 4294967295"}), "beyond the end of the file"},
                   });
    EXPECT_EQ(type_of("anything", "a.sm2"), FILE_SM2);
}

} // namespace
