#include "formats/instrument_fixture.h"
#include "formats/shared/bytes.h"
#include "formats/wip/wip.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

/// A tag whose value is made of bytes or of tags; places in the file are known when it is written.
struct tag {
    std::string name;
    unsigned type = 0;
    std::string value = {};
    std::vector<tag> children = {};
};

void write(bytes_builder& out, const tag& which)
{
    out.add(std::uint32_t(which.name.size())).text(which.name).add(std::uint32_t(which.type));
    const std::size_t places = out.content.size();
    out.add(std::uint64_t{0}).add(std::uint64_t{0}).text(which.value);
    for (const tag& child : which.children) write(out, child);
    const std::size_t end = out.content.size();
    out.put(places, std::uint64_t(places + 16)).put(places + 8, std::uint64_t(end)).seek(end);
}

template <class T>
tag values(const std::string& name, unsigned type, const std::vector<double>& numbers)
{
    return {name, type, formats::in_bytes<T>(numbers)};
}
tag i32(const std::string& name, double number) { return values<std::int32_t>(name, 5, {number}); }
tag f64(const std::string& name, const std::vector<double>& numbers) { return values<double>(name, 2, numbers); }
tag text(const std::string& name, const std::string& value) { return {name, 9, formats::le32(value.size()) + value}; }

/// A data object: its class, its number, its title and its own tags.
struct object {
    std::string type;
    int id;
    std::string caption;
    std::vector<tag> own;
    std::string unit = {};
};

std::string build(const std::vector<object>& objects, const std::string& magic = "WIT_PR06")
{
    tag data{"Data"};
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const std::string number = std::to_string(i);
        data.children.push_back(text("DataClassName " + number, objects[i].type));
        tag content{"Data " + number};
        content.children.push_back({"TData", 0, {}, {i32("ID", objects[i].id), text("Caption", objects[i].caption)}});
        if (!objects[i].unit.empty())
            content.children.push_back({"TDTransformation", 0, {}, {text("StandardUnit", objects[i].unit)}});
        content.children.push_back({objects[i].type, 0, {}, objects[i].own});
        data.children.push_back(content);
    }
    bytes_builder out;
    out.text(magic);
    write(out, {"WITec Project", 0, {}, {i32("Version", 7), data}});
    return out.content;
}

object space(double scaleX, double scaleY)
{
    return {"TDSpaceTransformation",
            10,
            "Space",
            {{"ViewPort3D",
              0,
              {},
              {f64("ModelOrigin", {1, 0, 0}), f64("WorldOrigin", {5, 20, 0}),
               f64("Scale", {scaleX, 0, 0, 0, scaleY, 0, 0, 0, 1})}}},
            "\xB5m"};
}

object height_unit() { return {"TDZInterpretation", 11, "Z", {text("UnitName", "nm")}}; }

object picture(const std::vector<double>& heights, int version = 1, int columns = 3, double range = 3)
{
    return {"TDImage",
            12,
            "Topography",
            {i32("Version", version),
             i32("SizeX", columns),
             i32("SizeY", 2),
             i32("PositionTransformationID", 10),
             i32("ZInterpretationID", 11),
             {"ImageData",
              0,
              {},
              {i32("Dimension", 2), i32("DataType", 9), values<std::int32_t>("Ranges", 5, {range, 2}),
               values<float>("Data", 7, heights)}}}};
}

base::read_result<formats::recording> read(const std::vector<object>& objects)
{
    return instrument_fixture::read(formats::read_wip, build(objects));
}

TEST(Wip, PicturesLieInTheirCoordinates)
{
    const object heights = picture({1, 2, 3, 4, 5, 6});
    EXPECT_EQ(told(read({space(2, 4), height_unit(), heights})), // point 1 lies at 5
              "Topography [nm] (3: 3 + 2 \u00B5m; 2: 20 + 4 \u00B5m): 1 2 3 4 5 6");
    EXPECT_EQ(told(read({space(-2, -4), height_unit(), heights})), // 7, 5, 3
              "Topography [nm] (3: 3 + 2 \u00B5m; 2: 16 + 4 \u00B5m): 6 5 4 3 2 1");
    EXPECT_EQ(told(read({space(2, 4), height_unit(), picture({1, 2, 3, 4, 5, 6}, 0)})), // by columns
              "Topography [nm] (3: 3 + 2 \u00B5m; 2: 20 + 4 \u00B5m): 1 3 5 2 4 6");
    EXPECT_EQ(told(read({heights})), "Topography (3; 2): 4 5 6 1 2 3"); // the top row first
}

object graph(int columns, int rows, int points, const std::vector<double>& counts, std::vector<double> valid = {})
{
    return {"TDGraph",
            20,
            "Raman",
            {i32("SizeX", columns),
             i32("SizeY", rows),
             i32("SizeGraph", points),
             i32("SpaceTransformationID", 10),
             i32("XTransformationID", 21),
             i32("XInterpretationID", 22),
             values<std::uint8_t>("LineValid", 8, std::move(valid)),
             {"GraphData", 0, {}, {i32("DataType", 6), values<std::uint16_t>("Data", 7, counts)}}}};
}

TEST(Wip, SpectraHaveLinearAxesAndMapsRunBySpectrum)
{
    const object linear{"TDLinearTransformation",
                        21,
                        "X",
                        {f64("ModelOrigin_D", {10}), f64("WorldOrigin_D", {0}), f64("Scale_D", {0.5})},
                        "s"};
    EXPECT_EQ(told(read({linear, graph(1, 1, 3, {7, 8, 40000})})), "Raman (3: -5 + 0.5 s): 7 8 40000");
    const auto map = read({linear, space(1, -1), graph(2, 2, 2, {1, 2, 3, 4, 5, 6, 7, 8}, {1, 0})});
    EXPECT_EQ(image_at(map, 0).stream.get_dimensions_number(), 3u);
    expect_image(image_at(map, 0), {.values = {1, 1, 1, 1, 1, 2, 3, 4}, // the bottom line was not measured
                                    .strings = {{"\\Void points", "4"}}});
}

/// With all angles 0 the grating equation is short: lambda = d / m * sin(-atan(x * (nC - i) / f)).
TEST(Wip, GratingsGiveUnevenAxes)
{
    const std::vector<tag> own = {f64("nC", {3}),    f64("LambdaC", {0}), f64("Gamma", {0}),
                                  f64("Delta", {0}), f64("m", {1}),       f64("d", {1000}),
                                  f64("x", {1}),     f64("f", {2}),       i32("SpectralTransformationType", 1)};
    const object grating{"TDSpectralTransformation", 21, "X", own};
    const object raman{
        "TDSpectralInterpretation", 22, "Shift", {i32("UnitIndex", 3), f64("ExcitationWaveLength", {532})}};
    const auto plain = read({grating, graph(1, 1, 3, {7, 8, 9})}),
               shifted = read({grating, raman, graph(1, 1, 3, {7, 8, 9})});
    ASSERT_TRUE(plain && plain->items.size() == 2 && shifted);
    for (std::size_t i = 0; i < 3; ++i) {
        const double steps = static_cast<double>(i) - 3, nm = 1000 * steps / std::sqrt(steps * steps + 4);
        EXPECT_NEAR(physical_of(image_at(plain, 0)).at(i), nm, 0.01) << i;
        EXPECT_NEAR(physical_of(image_at(shifted, 0)).at(i), 1e7 / 532 - 1e7 / nm, 0.3) << i;
    }
    EXPECT_STREQ(image_at(plain, 0).stream.values.get_axis(0).get_units(), "nm");
    EXPECT_STREQ(image_at(shifted, 0).stream.values.get_axis(0).get_units(), "1/cm");
    EXPECT_STREQ(image_at(plain, 1).stream.get_parameter_stream(), image_at(plain, 0).stream.get_name());
}

TEST(Wip, PolynomialsAndTablesGiveAxesToo)
{
    const auto axis_with = [&](const object& axis) {
        const object nanometres{"TDSpectralInterpretation", 22, "nm", {i32("UnitIndex", 0)}};
        const auto result = read({axis, nanometres, graph(1, 1, 4, {7, 8, 9, 10})});
        return told(image_at(result, 0));
    };
    const auto polynomial = [](const std::vector<double>& factors) {
        return object{"TDSpectralTransformation",
                      21,
                      "X",
                      {i32("SpectralTransformationType", 2), f64("FreePolynom", factors), i32("FreePolynomStartBin", 0),
                       i32("FreePolynomStopBin", 3)}};
    };
    EXPECT_EQ(axis_with(polynomial({500, 10, 1})), "Raman axis [nm] (4): 500 511 524 539");
    EXPECT_EQ(axis_with(polynomial({500, 0.5})), "Raman (4: 500 + 0.5 nm): 7 8 9 10");
    EXPECT_EQ(axis_with(polynomial({500, -3, 1})), "Raman (4): 7 8 9 10"); // 500, 498, 498, 500
    EXPECT_EQ(axis_with({"TDLUTTransformation", 21, "X", {i32("LUTSize", 4), f64("LUT", {1, 2, 4, 8})}, "s"}),
              "Raman axis [s] (4): 1 2 4 8");
}

TEST(Wip, ExtendedNumbersAreRead)
{
    // 1.5, -2 and 0 with 64 bits of mantissa; the exponent of 1 is 16383.
    bytes_builder numbers;
    for (const auto& [mantissa, power] : {std::pair(0xC000000000000000u, 0x3FFFu),
                                          std::pair(0x8000000000000000u, 0xC000u), std::pair(std::uint64_t{0}, 0u)})
        numbers.add(std::uint64_t{mantissa}).add(static_cast<std::uint16_t>(power));
    object extended = graph(1, 1, 3, {});
    extended.own.back().children = {i32("DataType", 11), {"Data", 7, numbers.content, {}}};
    EXPECT_EQ(told(read({extended})), "Raman (3): 1.5 -2 0");
}

using strings = std::map<std::string, std::string>;

TEST(Wip, TextsDatesAndSingleNumbersComeAlong)
{
    object scan = picture({1, 2, 3, 4, 5, 6});
    scan.own.push_back(text("Comment", "first \xB5m"));
    scan.own.push_back(values<std::uint16_t>("Taken", 6, {2020, 5, 11, 6, 20, 12, 30}));
    scan.own.push_back({"Never", 6, std::string(4, '\0')}); // a date that is none
    scan.own.push_back(text("Long", std::string(5000, 'x')));
    const object interpretation{"TDSpectralInterpretation", 11, "Z", {f64("ExcitationWaveLength", {532.25})}};
    const auto result = read({interpretation, scan});
    const strings expected{{"Class", "TDImage"},
                           {"Caption", "Topography"},
                           {"ID", "12"},
                           {"Version", "1"},
                           {"SizeX", "3"},
                           {"SizeY", "2"},
                           {"Comment", "first \u00B5m"},
                           {"Taken", "2020 5 11 6 20 12 30"},
                           {"Excitation wavelength", "532.25 nm"},
                           {"\\Z scale", "raw * 1 + 0 from the numbers as they stand"}};
    EXPECT_EQ(image_at(result, 0).strings, expected);
    EXPECT_EQ(result->strings, (strings{{"Version", "7"}}));

    object endless = picture({1, 2, 3, 4, 5, 6});
    for (int i = 0; i < 200; ++i) endless.own.push_back(i32("n" + std::to_string(i), i));
    EXPECT_LE(image_at(read({endless}), 0).strings.size(), 66u);
}

TEST(Wip, ADamagedObjectDoesNotLoseTheOthers)
{
    object wrongType = picture({1, 2, 3, 4, 5, 6});
    wrongType.own[5].children[1] = i32("DataType", 12);
    const object whole = picture({1, 2, 3, 4, 5, 6}), wide = picture({1, 2, 3, 4, 5, 6}, 1, 3, 4);
    const auto result = read({picture({1, 2, 3}), wide, wrongType, {"TDText", 30, "Notes", {}}, whole});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->items.size(), 1u);
    EXPECT_EQ(result->strings.at("Skipped objects"),
              "Topography: the size of Data is not that of its points; Topography: Ranges are not SizeX and SizeY; "
              "Topography: DataType is not known");
}

TEST(Wip, RefusesWhatCannotBe)
{
    const std::string whole = build({picture({1, 2, 3, 4, 5, 6})});
    const auto with = [&](std::size_t offset, auto value) {
        bytes_builder out;
        return out.text(whole).put(offset, value).content;
    };
    const std::size_t start = 8 + 4 + 13 + 4; // of the root's places
    tag deep{"x"};
    for (int i = 0; i < 70; ++i) deep = {"x", 0, {}, {deep}};
    bytes_builder nested;
    nested.text("WIT_PRCT");
    write(nested, deep);
    expect_refused(formats::read_wip, {
                                          {"WIT_NONE", "not a WITec file"},
                                          {"WIT^....", "too old"},
                                          {build({}), "neither an image nor a spectrum"},
                                          {build({{"TDImage", 1, "A", {}}}), "A: SizeX or SizeY is 0"},
                                          {with(start, std::uint64_t{12}), "starts before its own header"},
                                          {with(start + 8, std::uint64_t{20}), "ends outside"},
                                          {with(8, std::uint32_t{5000}), "longer than 4096 bytes"},
                                          {nested.content, "deeper than 64 levels"},
                                      });
    expect_cuts_refused(formats::read_wip, build({picture({1, 2, 3, 4, 5, 6}), picture({1, 2, 3, 4, 5, 6})}));
    EXPECT_EQ(instrument_fixture::read(formats::read_wip, with(start + 8, std::uint64_t{1} << 40))->warnings.size(),
              1u);
    EXPECT_EQ(type_of(whole, "a.txt"), FILE_WIP);
}

} // namespace
