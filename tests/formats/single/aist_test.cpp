#include "formats/instrument_fixture.h"
#include "formats/shared/bytes.h"
#include "formats/single/aist.h"

#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;
using formats::in_bytes;

constexpr auto big = std::endian::big;

std::string text(const std::string& ascii)
{
    bytes_builder out;
    if (ascii.empty()) return out.add(0xFFFFFFFFu, big).content;
    out.add(std::uint32_t(ascii.size() * 2), big);
    for (const char c : ascii) out.add(std::uint16_t(static_cast<unsigned char>(c)), big);
    return out.content;
}

std::string block(const std::string& bytes)
{
    return bytes_builder().add(std::int32_t(bytes.size()), big).text(bytes).content;
}

std::string folder_node(const std::vector<std::string>& children, int count = -1)
{
    bytes_builder out;
    out.add(std::uint8_t{0})
        .text(text("Data"))
        .add(count < 0 ? std::int32_t(children.size()) : std::int32_t(count), big);
    for (const std::string& child : children) out.text(child);
    return out.content;
}

std::string data_node(const std::string& type, const std::string& payload)
{
    return std::string("\1") + text(type) + block(payload) + text("node") + std::string(4, '\0');
}

std::string raster(const std::string& name, const std::vector<double>& values, const std::string& mask = {},
                   int columns = 2, int rows = 2)
{
    bytes_builder out;
    out.add(std::int32_t{5}, big).text(text(name)).text(text("told")).add(std::int32_t{0}, big);
    out.add(std::int32_t(columns), big).add(std::int32_t(rows), big);
    for (const double side : {3.0, 7.0, 6.0, -2.0}) out.add(side, big);
    out.text(text("X [um]")).text(text("nm")).text(text("Height [nm]"));
    out.text(block(in_bytes<double>(values))).text(block(mask)).text(block("seen"));
    return data_node("raster", out.content);
}

std::string curve(const std::vector<double>& data, int points, const std::string& name = "Force")
{
    bytes_builder out;
    out.add(std::int32_t{5}, big).text(text(name)).text(text(name + "?")).add(std::int32_t{0}, big);
    out.add(std::int32_t(points), big).text(block(in_bytes<double>(data))).add(std::int32_t{-1}, big);
    out.text(text("Z [nm]")).text(text("nN"));
    return data_node("curve", out.content);
}

TEST(Aist, RastersStandInTheTreeAtAnyDepth)
{
    const std::string file =
        folder_node({data_node("settings", "??"), data_node("else", "payload"),
                     folder_node({raster("_Height Forward[1]", {1, -2, 3, 4}, std::string("\1\0\1\1", 4)),
                                  raster("Height[Backward]", {5, 6, 7, 8}, std::string(4, '\0'))}),
                     raster("Phase", {0, 0, 0, 90})});
    const auto result = read(formats::read_aist, file);
    ASSERT_EQ(result->items.size(), 2u);
    // The bottom row first; the second point was not measured.
    EXPECT_EQ(told(image_at(result, 0)),
              "Height [nm] (2: 3 + 2 \u00B5m; 2: -2 + 4 nm) {Forward, Reverse}: 1 1 3 4 5 6 7 8");
    expect_image(image_at(result, 0), {.strings = {{"\\Void points", "1"}, {"Description", "told"}}});
    EXPECT_EQ(type_of(file, "a.aist"), FILE_AIST);
    EXPECT_EQ(type_of(file, "a.txt"), FILE_UNKNOWN); // the mark alone is too weak
}

TEST(Aist, CurvesRunEvenlyOrKeepTheirPositionsAndDirectionsShareAnImage)
{
    EXPECT_EQ(told(read(formats::read_aist, curve({0, 2, 4, 7, 8, 9}, 3))), "Force [nN] (3: 0 + 2 nm): 7 8 9");
    EXPECT_EQ(told(read(formats::read_aist, curve({0, 3, 4, 7, 8, 9}, 3))),
              "X [nm] (3): 0 3 4\nForce [nN] (3) over Force_X: 7 8 9");
    const auto result = read(formats::read_aist, folder_node({curve({0, 2, 4, 7, 8, 9}, 3, "_Force Forward[2]"),
                                                              curve({0, 1, 5, 6}, 2, "Lift Backward"),
                                                              curve({4, 2, 5, 6}, 2, "Force[Backward]")}));
    EXPECT_EQ(told(result), "X [nm] (3) {Forward, Reverse}: 0 2 4 4 2 2\n"
                            "Force [nN] (3) {Forward, Reverse} over Force_X: 7 8 9 5 6 6\n"
                            "Lift [nN] (2: 0 + 1 nm) {Reverse}: 5 6");
    expect_image(image_at(result, 1),
                 {.strings = {{"\\Curve lengths", "3 2"}, {"Description", "_Force Forward[2]?\nForce[Backward]?"}}});
}

TEST(Aist, RefusesWhatCannotBe)
{
    std::string deep;
    for (int i = 0; i < 70; ++i) deep += std::string(1, '\0') + text("d") + std::string("\0\0\0\1", 4);
    const std::string odd = std::string(1, '\0') + std::string("\0\0\0\2", 4) + "ab" + std::string("\0\0\0\1", 4) +
                            "\1" + std::string("\0\0\0\3", 4) + std::string(40, 'a');
    expect_refused(formats::read_aist,
                   {
                       {"\2", "not an AIST-NT file"},
                       {data_node("image", ""), "not an AIST-NT file"},
                       {folder_node({}), "neither an image nor a curve"},
                       {folder_node({raster("A", {1})}), "raster A: the length of the data is not columns x rows"},
                       {folder_node({raster("A", {1, 2, 3, 4}, "\1\1\1")}),
                        "raster A: the length of the mask is not columns x rows"},
                       {folder_node({raster("A", {1}, {}, 0, 1)}), "columns or rows are not above 0"},
                       {folder_node({raster("A", {1}, {}, -1, -1)}), "columns or rows are not above 0"},
                       {folder_node({curve({1, 2, 3}, 2)}), "curve Force: the length of the data"},
                       {folder_node({data_node("raster", "short")}), "is cut short"},
                       {folder_node({}, 1000), "more children than the file has room for"},
                       {deep + std::string(100, '\0'), "deeper than 64 levels"},
                       {odd, "a length in the tree cannot be"},
                   });
    expect_cuts_refused(formats::read_aist, folder_node({raster("A", {1, 2, 3, 4}), curve({0, 1, 2, 3}, 2)}));
}

} // namespace
