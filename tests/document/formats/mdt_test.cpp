#include "base/text.h"
#include "document/formats/mdt.h"
#include "mdt_fixture.h"
#include "recorded_values.h"
#include "support/sample_checks.h"

#include <gtest/gtest.h>

namespace {

using namespace formats;
using namespace test_support;

base::read_result<recording> read(const std::string& bytes)
{
    memory_source source(std::as_bytes(std::span(bytes)));
    return read_mdt(source);
}

std::string reason_of(const std::string& bytes)
{
    const auto result = read(bytes);
    return result ? "" : result.error().reason;
}

TEST(Mdt, DirectionsOfAChannelShareAnImage)
{
    mdt_image forward{"1F:Height", 3, 2, {1, -2, 3, 4, 5, 6}}, backward{"1B:Height", 3, 2, {6, 5, 4, 3, 2, -1}};
    const auto result = read(mdt_file(
        {mdt_frame_of(0, forward.body()), mdt_frame_of(3, std::string(10, '\0')), mdt_frame_of(0, backward.body())}));
    ASSERT_TRUE(result) << result.error().reason;
    ASSERT_EQ(result->items.size(), 1u);
    const SPMDataStream& stream = item(*result, 0).stream;
    EXPECT_EQ(physical(stream), (std::vector<double>{9, 12, 7, 6, 5, 4, 4, 5, 6, 7, 8, 11})); // 10 - raw
    ASSERT_EQ(stream.subimage_names().size(), 2u);
    EXPECT_STREQ(stream.subimage_names()[0].text, "Forward");
    EXPECT_STREQ(stream.subimage_names()[1].text, "Reverse");
    EXPECT_EQ(stream.get_dimension(0).get_axis(0), VLAxis(5.0, 0.5, "\u00B5m"));
    EXPECT_EQ(stream.get_dimension(1).get_axis(0), VLAxis(-1.0, 0.25, "\u00B5m"));
    EXPECT_STREQ(stream.values.get_axis(0).get_units(), "nm");
    EXPECT_EQ(item(*result, 0).strings.at("\\Date"), "2020-02-03 04:05:06");
    EXPECT_EQ(item(*result, 0).strings.at("\\Z scale"), "raw * -1 + 10 [nm] from z axis of frame 1");
}

TEST(Mdt, CurvesAtPointsArePaddedAndKeepTheirLengths)
{
    const auto result = read(mdt_file({mdt_frame_of(201, mdt_point_curves({{{1, 2, 3}, {4, 5}}, {{7}, {}}}))}));
    ASSERT_TRUE(result) << result.error().reason;
    const recorded_image& image = item(*result, 0);
    EXPECT_EQ(physical(image.stream), (std::vector<double>{9, 8, 7, 6, 5, 5, 3, 3, 3}));
    EXPECT_EQ(image.strings.at("\\Curve lengths"), "3 2 1");
    EXPECT_EQ(image.strings.at("Points"), "0 0; 1 0.5");
    EXPECT_STREQ(image.stream.subimage_names()[1].text, "Point 1, Reverse");
    EXPECT_STREQ(image.stream.subimage_names()[2].text, "Point 2, Forward");
    EXPECT_EQ(image.stream.get_dimension(0).get_axis(0), VLAxis(5.0, 0.5, "\u00B5m"));
}

TEST(Mdt, SingleCurvesPassTheirDots)
{
    const auto result = read(mdt_file({mdt_frame_of(1, mdt_single_curve({3, 1, 2}, 2))}));
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(physical(item(*result, 0).stream), (std::vector<double>{7, 9, 8}));
}

TEST(Mdt, ArraysOfPairsDrawTheSecondValueOverTheFirst)
{
    const mdt_array pairs{"I(V)",
                          {},
                          {{"Bias", "V", 0.5, 2.0, 0, 2, -2}, {"Current", "nA", 0, 1, 0, 2, -4}},
                          le16(1) + le32(10) + le16(2) + le32(static_cast<std::uint32_t>(-20)) + le16(3) + le32(30)};
    const auto result = read(mdt_file({mdt_frame_of(106, pairs.body(), false)}));
    ASSERT_TRUE(result) << result.error().reason;
    ASSERT_EQ(result->items.size(), 2u);
    EXPECT_EQ(physical(item(*result, 0).stream), (std::vector<double>{2.5, 4.5, 6.5}));
    EXPECT_EQ(physical(item(*result, 1).stream), (std::vector<double>{10, -20, 30}));
    EXPECT_STREQ(item(*result, 1).stream.get_parameter_stream(), item(*result, 0).stream.get_name());
    EXPECT_STREQ(item(*result, 1).stream.values.get_axis(0).get_units(), "nA");
}

TEST(Mdt, ArraysOfEveryNumberTypeBecomeImages)
{
    const struct {
        int code;
        std::string numbers; // 1, 2, 3, 4
    } rows[] = {
        {1, std::string("\1\2\3\4", 4)},
        {-1, std::string("\1\2\3\4", 4)},
        {2, le16(1) + le16(2) + le16(3) + le16(4)},
        {4, le32(1) + le32(2) + le32(3) + le32(4)},
        {-8, le64(1) + le64(2) + le64(3) + le64(4)},
        {-5892, le_float(1) + le_float(2) + le_float(3) + le_float(4)},
        {-13320, le_double(1) + le_double(2) + le_double(3) + le_double(4)},
    };
    for (const auto& row : rows) {
        const mdt_array image{"2B:Mag",
                              {{"x", "um", 1, 0.5, 0, 1, 0}, {"y", "um", 2, 0.25, 0, 1, 0}},
                              {{"Mag", "", 10, 2, 0, 0, row.code}},
                              row.numbers};
        const auto result = read(mdt_file({mdt_frame_of(106, image.body(), false)}));
        ASSERT_TRUE(result) << row.code << ' ' << result.error().reason;
        EXPECT_EQ(physical(item(*result, 0).stream), (std::vector<double>{12, 14, 16, 18})) << row.code;
        EXPECT_EQ(item(*result, 0).stream.get_dimension(1).get_axis(0), VLAxis(2, 0.25, "\u00B5m"));
    }
}

/// Cell c holds c as 16 bits and 100 + c as 8 bits.
std::string numbered_cells(unsigned count)
{
    std::string cells;
    for (unsigned c = 0; c < count; ++c) cells += le16(static_cast<std::uint16_t>(c)) + static_cast<char>(100 + c);
    return cells;
}

TEST(Mdt, ArraysOfThreeDimensionsAreSpectraAtPoints)
{
    const mdt_calibration x{"x", "um", 1, 0.5, 0, 2, 0}, y{"y", "um", 2, 0.25, 0, 1, 0},
        wave{"Wavelength", "nm", 500, 3, 0, 1, 0};
    const std::vector<mdt_calibration> measured = {{"Counts", "", 0, 2, 0, 0, -2}, {"Phase", "V", 0, 1, 0, 0, 1}};
    // The spectrum runs slowest in the file (x, y, wave) and fastest in the volume.
    const mdt_array map{"Raman", {x, y, wave}, measured, numbered_cells(12)};
    const auto result = read(mdt_file({mdt_frame_of(106, map.body(), false)}));
    ASSERT_TRUE(result) << result.error().reason;
    ASSERT_EQ(result->items.size(), 2u);
    const SPMDataStream& counts = item(*result, 0).stream;
    EXPECT_STREQ(counts.get_description(), "Raman Counts");
    ASSERT_EQ(counts.get_dimensions_number(), 3u);
    EXPECT_EQ(counts.get_dimension(0).get_axis(0), VLAxis(500, 3, "nm"));
    EXPECT_EQ(counts.get_dimension(1).get_axis(0), VLAxis(1, 0.5, "\u00B5m"));
    EXPECT_EQ(counts.get_dimension(2).length, 2u);
    EXPECT_EQ(physical(counts), (std::vector<double>{0, 12, 2, 14, 4, 16, 6, 18, 8, 20, 10, 22}));
    EXPECT_EQ(physical(item(*result, 1).stream).at(1), 106); // the second value of cell 6
    EXPECT_STREQ(item(*result, 1).stream.values.get_axis(0).get_units(), "V");

    // Without names the units tell, and without these the order of the file stays.
    const auto anonymous = [](mdt_calibration dimension, const char* units) {
        dimension.name.clear();
        dimension.units = units;
        return dimension;
    };
    for (const auto& [units, second] : {std::pair("1/cm", 12.0), std::pair("um", 2.0)}) {
        const mdt_array unnamed{
            "Raman", {anonymous(x, "um"), anonymous(y, "um"), anonymous(wave, units)}, measured, numbered_cells(12)};
        const auto found = read(mdt_file({mdt_frame_of(106, unnamed.body(), false)}));
        ASSERT_TRUE(found) << found.error().reason;
        EXPECT_EQ(physical(item(*found, 0).stream).at(1), second) << units;
    }
}

TEST(Mdt, WholeFramesOfACutFileAreShown)
{
    const mdt_image image{"Height", 2, 2, {1, 2, 3, 4}};
    const std::string whole = mdt_file({mdt_frame_of(0, image.body()), mdt_frame_of(0, image.body())});
    const auto result = read(whole.substr(0, whole.size() - 1));
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(result->items.size(), 1u);
    EXPECT_NE(result->strings.at("Frames left out").find("frame 2"), std::string::npos);
}

TEST(Mdt, WhatCannotBeIsRefusedWithItsReason)
{
    const mdt_image image{"Height", 2, 2, {1, 2, 3, 4}}, short_{"Height", 300, 300, {1}}, empty{"Height", 0, 2, {}};
    mdt_array odd{
        "odd", {{"x", "um", 0, 1, 0, 1, 0}, {"y", "um", 0, 1, 0, 1, 0}}, {{"z", "", 0, 1, 0, 0, 77}}, le32(0)};
    mdt_array huge = odd;
    huge.dimensions[0].last = ~0ull - 1;
    huge.measured[0].type = 2;
    mdt_array vast{"vast", {}, {{"z", "", 0, 1, 0, 0, 2}}, le32(0)};
    for (const char* name : {"x", "y", "w"}) vast.dimensions.push_back({name, "", 0, 1, 0, 65535, 0});
    mdt_array late = odd;
    late.measured[0].type = 4;
    const struct {
        std::string bytes, reason;
    } rows[] = {
        {"\x01\xB0\x93\xFF", "cut short"},
        {mdt_file({}), "no frame"},
        {mdt_file({mdt_frame_of(0, short_.body())}), "more samples than the frame holds"},
        {mdt_file({mdt_frame_of(0, empty.body())}), "columns or rows is 0"},
        {mdt_file({mdt_frame_of(0, image.body())}).substr(0, 60), "does not fit the file"},
        {mdt_file({mdt_frame_of(105, image.body())}), "type 105 is not known"},
        {mdt_file({mdt_frame_of(106, odd.body(), false)}), "data type 77"},
        {mdt_file({mdt_frame_of(106, huge.body(), false)}), "above 65536"},
        {mdt_file({mdt_frame_of(106, vast.body(), false)}), "more than 4294967295 cells"},
        {mdt_file({mdt_frame_of(106, late.body(), false)}), "more samples than the frame holds"},
        {mdt_file({mdt_frame_of(190, le32(1u << 30))}), "more blocks"},
        {mdt_file({mdt_frame_of(190, le32(0))}), "index.xml"},
    };
    for (const auto& row : rows)
        EXPECT_NE(reason_of(row.bytes).find(row.reason), std::string::npos) << reason_of(row.bytes);
}

/// The manifest's reader takes scale * (n - 1) for the size of an array, one pixel less than it covers.
manifest_row with_whole_pixels(manifest_row row)
{
    for (const auto& [size, count] : {std::pair("x_size", "nx"), std::pair("y_size", "ny")})
        row.cells[size] = base::shortest(*row.number(size) * *row.number(count) / (*row.number(count) - 1));
    return row;
}

class MdtSamples : public testing::Test {
protected:
    void SetUp() override
    {
        if (read_manifest("mdt").empty()) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
    }
    static base::read_result<recording> read_file(const std::string& name)
    {
        static std::vector<std::byte> bytes;
        bytes = read_sample("mdt", name);
        memory_source source(bytes, name);
        return read_mdt(source);
    }
};

TEST_F(MdtSamples, ImagesHaveTheValuesOfTheManifest)
{
    for (const manifest_row& row : manifest_rows("mdt", "image")) {
        SCOPED_TRACE(row.title());
        const auto result = read_file(row.text("file"));
        ASSERT_TRUE(result) << result.error().reason;
        const auto planes = planes_of(*result);
        // The manifest counts curve sets among the images, and ends names with the number of the frame.
        const bool hasCurves = row.text("file") == "test_mdt.mdt";
        const auto index = static_cast<std::size_t>(row.number("object").value_or(-1)) - (hasCurves ? 1 : 0);
        ASSERT_LT(index, planes.size());
        expect_plane(hasCurves ? with_whole_pixels(row) : row, planes[index], hasCurves);
        const std::string label = hasCurves ? "1F:Iprobe" : planes[index].image->stream.get_description();
        EXPECT_EQ(row.text("name").substr(0, label.size()), label);
    }
}

TEST_F(MdtSamples, SpectraAtPointsAreAllThere)
{
    for (const manifest_row& row : manifest_rows("mdt", "curveset")) {
        const auto result = read_file(row.text("file"));
        ASSERT_TRUE(result) << result.error().reason;
        const SPMDataStream& stream = item(*result, 1).stream;
        ASSERT_EQ(stream.get_dimensions_number(), 1u);
        EXPECT_EQ(stream.get_dimension(0).length, row.number("nx"));
        EXPECT_EQ(stream.subimage_names().size(), row.number("ny"));
        const VLAxis& x = stream.get_dimension(0).get_axis(0);
        EXPECT_NEAR(x.scale * (*row.number("nx") - 1), *row.number("x_size"), 1e-5 * *row.number("x_size"));
        EXPECT_NEAR(x.start, -2.99985697, 1e-8); // from the manifest's note
        double lowest = 1e300, highest = -1e300, sum = 0;
        const std::vector<double> values = physical(stream);
        for (const double value : values) {
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
            sum += value;
        }
        const double half = 0.5 * stream.values.get_axis(0).scale; // in nA
        EXPECT_NEAR(lowest, *row.number("z_min") * 1e9, half);
        EXPECT_NEAR(highest, *row.number("z_max") * 1e9, half);
        EXPECT_NEAR(sum / static_cast<double>(values.size()), *row.number("z_mean") * 1e9, half);
        EXPECT_GT(values[586], 40.0); // the current of the first curve saturates at +3 V and falls with the bias
        EXPECT_LT(values[0], 0.0);
    }
}

} // namespace
