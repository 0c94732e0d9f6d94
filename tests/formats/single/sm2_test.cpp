#include "formats/instrument_fixture.h"
#include "formats/single/sm2.h"

#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

/// Fields of one made-up page that the cases change.
struct page_parts {
    std::string shape = " 0 1 0 2 2 8 1", x = "X -1.5E-10 3E-9 m", z = "Z 2E-12 1E-9 m", scan = "scan 0 1.0",
                id = "id 5 512", label = "Topo", comment = "a note", data;
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

template <class T>
std::string samples(const std::vector<int>& values)
{
    bytes_builder out;
    for (const int value : values) out.add(static_cast<T>(value));
    return out.content;
}

TEST(Sm2, ImagesStandUprightAndDirectionsJoin)
{
    page_parts right, left;
    right.data = samples<std::int16_t>({1, 2, 3, 4}); // the top row first, each from right to left
    left.data = samples<std::int16_t>({5, 6, 7, 8});
    left.scan = "scan 1 2.5";
    left.comment = "\r\n<?xml"; // over the comment alone
    const auto result = read(formats::read_sm2, build(right) + build(left));
    ASSERT_EQ(result->items.size(), 1u);
    const auto& image = image_at(result, 0);
    EXPECT_EQ(raw_of(image), (std::vector<int>{4, 3, 2, 1, 8, 7, 6, 5}));
    EXPECT_EQ(subimages_of(image), (std::vector<std::string>{"Forward", "Reverse"}));
    EXPECT_EQ(axis_text(image, 0), "3e-09 1.5e-10 m");
    EXPECT_DOUBLE_EQ(physical_of(image)[0], 4 * 2e-12 + 1e-9);
    EXPECT_STREQ(image.stream.get_description(), "Topo");
    EXPECT_EQ(image.strings.at("\\Date"), "01/31/94 13:32:15");
    EXPECT_EQ(image.strings.at("\\Scan direction"), "right / left");
    EXPECT_EQ(image.strings.at("Scan period"), "1 / 2.5");
    EXPECT_EQ(image.strings.at("Id"), "5");
    EXPECT_EQ(image.strings.at("Comment"), "a note");
}

TEST(Sm2, DirectionsOfDifferentQuantitiesStayApart)
{
    page_parts right, left;
    right.label = left.label = ""; // kinds without a name are all pages
    right.shape = "0 1 0 2 2 8 3";
    left.shape = "0 1 0 2 2 8 7";
    left.scan = "scan 1 1.0";
    right.data = left.data = samples<std::int16_t>({1, 2, 3, 4});
    const auto result = read(formats::read_sm2, build(right) + build(left));
    ASSERT_EQ(result->items.size(), 2u);
    EXPECT_STREQ(image_at(result, 1).stream.get_description(), "Page");
}

TEST(Sm2, CurvesKeepTheSignOfTheirAxis)
{
    page_parts curves;
    curves.shape = " 1 3 0 3 2 6 10";
    curves.x = "X -0.5 1 V";
    curves.z = "Z 0.5 0 N/sec";
    curves.label = "\r\n<?xml";
    curves.id = "id 5";
    curves.data = samples<std::int8_t>({1, 2, 3, -4, 5, 6});
    const auto result = read(formats::read_sm2, build(curves));
    const auto& image = image_at(result, 0);
    EXPECT_EQ(raw_of(image), (std::vector<int>{1, 2, 3, -4, 5, 6}));
    expect_image(image, {.label = "I-V", .units = "counts/s", .axes = {"1 -0.5 V"}});
}

TEST(Sm2, WideAndFractionalSamplesTurnWhole)
{
    page_parts wide;
    wide.shape = "0 2 0 2 1 8 5";
    wide.z = "Z 1 0 V/\xFBHz";
    wide.data = samples<std::int32_t>({-100000, 100000});
    const auto integers = read(formats::read_sm2, build(wide));
    expect_image(image_at(integers, 0), {.units = "V/sqrt(Hz)", .values = {100000, -100000}, .isFitted = true});
    wide.shape = "0 0 0 2 1 8 5";
    wide.data = bytes_builder().add(0.5f).add(std::numeric_limits<float>::quiet_NaN()).content;
    const auto floats = read(formats::read_sm2, build(wide));
    EXPECT_EQ(image_at(floats, 0).strings.at("\\Void points"), "1");
    for (const double value : physical_of(image_at(floats, 0))) EXPECT_NEAR(value, 0.5, 1e-9);
}

TEST(Sm2, WhatFollowsAnUnreadablePageIsLeftOut)
{
    page_parts page;
    page.data = samples<std::int16_t>({1, 2, 3, 4});
    const std::string whole = build(page);
    const auto result = read(formats::read_sm2, whole + whole.substr(0, 515));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->items.size(), 1u);
    EXPECT_NE(result->strings.at("Unread pages").find("cut short"), std::string::npos);
    expect_cuts_refused(formats::read_sm2, whole);
}

TEST(Sm2, RefusesWhatCannotBe)
{
    const auto with = [](auto change) {
        page_parts parts;
        parts.data = samples<std::int16_t>({1, 2, 3, 4});
        change(parts);
        return build(parts);
    };
    expect_refused(
        formats::read_sm2,
        {
            {with([](page_parts& p) { p.x = "X 0 3E-9 m"; }), "the scale of axis 1 is 0: it is told by the field X"},
            {with([](page_parts& p) { p.x = "X wide"; }), "the scale of axis 1 is 0"},
            {with([](page_parts& p) { p.z = "Z nan 0 m"; }), "the scale of the values is no number"},
            {"something of another program", "Smena files have no public layout"},
            {with([](page_parts& p) { p.shape = "0 1 0 2 2"; }), "fewer than seven numbers"},
            {with([](page_parts& p) { p.shape = "2 1 0 2 2 8 1"; }), "page type is not known"},
            {with([](page_parts& p) { p.shape = "0 4 0 2 2 8 1"; }), "data type is not known"},
            {with([](page_parts& p) { p.shape = "0 nan 0 2 2 8 1"; }), "data type is not known"},
            {with([](page_parts& p) { p.shape = "0 1 0 0 2 8 1"; }), "not above 0"},
            {with([](page_parts& p) { p.shape = "0 1 0 2 1e9 8 1"; }), "above 65536"},
            {with([](page_parts& p) { p.shape = "0 1 0 2 3 8 1"; }), "beyond the end of the file"},
            {with([](page_parts& p) { p.id = "id 5 100"; }), "data offset lies inside the header"},
            {with([](page_parts& p) { p.id = "id 5 4294967295"; }), "beyond the end of the file"},
        });
    EXPECT_EQ(type_of("anything", "a.sm2"), FILE_SM2);
}

} // namespace
