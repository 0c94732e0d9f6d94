#include "document/formats/nanoscope.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <stdexcept>

using namespace test_support;

namespace {

base::read_result<formats::recording> read_file(const std::string& name, std::vector<std::byte>& bytes)
{
    bytes = read_sample("nanoscope", name);
    formats::memory_source source(bytes, name);
    return formats::read_nanoscope(source);
}

class NanoscopeSamples : public testing::Test {
protected:
    void SetUp() override
    {
        if (read_manifest("nanoscope").empty()) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
    }
};

TEST_F(NanoscopeSamples, ImagesHaveTheValuesOfTheManifest)
{
    for (const manifest_row& row : manifest_rows("nanoscope", "image")) {
        SCOPED_TRACE(row.title());
        std::vector<std::byte> bytes;
        const auto result = read_file(row.text("file"), bytes);
        ASSERT_TRUE(result) << result.error().reason;
        const auto planes = planes_of(*result);
        const auto index = static_cast<std::size_t>(row.number("object").value_or(-1));
        ASSERT_LT(index, planes.size());
        const auto& strings = planes[index].image->strings;
        const bool isWide = result->strings.at("Version") >= "0x09200000"; // all of eight digits
        expect_plane(row, planes[index], isWide);
        EXPECT_NE(strings.at("@2:Image Data").find(row.text("name")), std::string::npos);
    }
}

TEST_F(NanoscopeSamples, NoFileHasMoreImagesThanItsManifest)
{
    std::map<std::string, std::size_t> expected;
    for (const manifest_row& row : manifest_rows("nanoscope", "image")) ++expected[row.text("file")];
    for (const auto& [name, count] : expected) {
        std::vector<std::byte> bytes;
        const auto result = read_file(name, bytes);
        ASSERT_TRUE(result);
        EXPECT_EQ(planes_of(*result).size(), count) << name;
    }
}

TEST_F(NanoscopeSamples, DamagedFilesAreRefused)
{
    const auto rows = manifest_rows("nanoscope", "reject");
    for (const manifest_row& row : rows) {
        std::vector<std::byte> bytes;
        const auto result = read_file(row.text("file"), bytes);
        ASSERT_FALSE(result) << row.title();
        EXPECT_FALSE(result.error().reason.empty()) << row.title();
    }
    EXPECT_EQ(rows.size(), 2u);
}

/// The first image behind the file's images that is no stack of planes.
const formats::recorded_image& force_of(const formats::recording& content)
{
    for (const auto& each : content.items)
        if (const auto& image = std::get<formats::recorded_image>(each); image.stream.get_dimensions_number() != 2)
            return image;
    throw std::out_of_range("no force curves");
}

/// Compares range and mean of samples with a row; the value axis is the one in the row's units.
void expect_values(const manifest_row& row, const SPMDataStream& stream, std::size_t first, std::size_t count)
{
    VLAxis axis;
    for (unsigned i = stream.values.get_axes_number(); i-- > 0;)
        if (base_unit(stream.values.get_axis(i).get_units()) == row.text("z_unit")) axis = stream.values.get_axis(i);
    const double factor = base_unit_factor(axis.get_units());
    const auto* raw = static_cast<const std::int16_t*>(stream.array_data()) + first;
    const auto [lowest, highest] = std::minmax_element(raw, raw + count);
    const double mean = std::accumulate(raw, raw + count, 0.0) / static_cast<double>(count);
    const double tolerance = (row.text("file").ends_with(".spm") ? 0.5001 * std::fabs(axis.scale) * factor : 0.0) +
                             1e-5 * (*row.number("z_max") - *row.number("z_min"));
    EXPECT_NEAR(axis.at(*lowest) * factor, *row.number("z_min"), tolerance);
    EXPECT_NEAR(axis.at(*highest) * factor, *row.number("z_max"), tolerance);
    EXPECT_NEAR(axis.at(mean) * factor, *row.number("z_mean"), tolerance);
}

TEST_F(NanoscopeSamples, ForceCurvesHaveTheValuesOfTheManifest)
{
    for (const manifest_row& row : manifest_rows("nanoscope", "curve")) {
        SCOPED_TRACE(row.title());
        std::vector<std::byte> bytes;
        const auto result = read_file(row.text("file"), bytes);
        ASSERT_TRUE(result) << result.error().reason;
        const SPMDataStream& stream = force_of(*result).stream;
        const auto points = static_cast<std::size_t>(*row.number("nx"));
        const auto part = static_cast<std::size_t>(*row.number("object"));
        ASSERT_EQ(stream.get_dimension(0).length, points);
        EXPECT_STREQ(stream.subimage_names()[part].text, part == 0 ? "Approach" : "Retract");
        expect_values(row, stream, part * points, points);
        double extent = -stream.get_dimension(0).get_axis(0).scale * static_cast<double>(points - 1) * 1e-9;
        if (stream.get_parameter_stream()) { // the measured height, in nm
            const auto& height = std::get<formats::recorded_image>(result->items[1]).stream;
            EXPECT_STREQ(stream.get_parameter_stream(), height.get_name());
            const auto* raw = static_cast<const std::int16_t*>(height.array_data()) + part * points;
            const auto [lowest, highest] = std::minmax_element(raw, raw + points);
            extent = (*highest - *lowest) * height.values.get_axis(0).scale * 1e-9;
        }
        EXPECT_NEAR(extent, *row.number("x_size"), 1e-5 * *row.number("x_size"));
        // The contact comes first: there the force is high, at the free end it is low.
        const auto* raw = static_cast<const std::int16_t*>(stream.array_data()) + part * points;
        EXPECT_GT(raw[0], raw[points - 1]);
    }
}

TEST_F(NanoscopeSamples, ForceVolumesHaveTheValuesOfTheManifest)
{
    for (const manifest_row& row : manifest_rows("nanoscope", "forcevolume")) {
        SCOPED_TRACE(row.title());
        std::vector<std::byte> bytes;
        const auto result = read_file(row.text("file"), bytes);
        ASSERT_TRUE(result) << result.error().reason;
        const SPMDataStream& stream = force_of(*result).stream;
        ASSERT_EQ(stream.get_dimensions_number(), 3u);
        EXPECT_EQ(stream.get_dimension(1).length, row.number("nx"));
        EXPECT_EQ(stream.get_dimension(2).length, row.number("ny"));
        const VLAxis& x = stream.get_dimension(1).get_axis(0);
        EXPECT_NEAR(x.scale * stream.get_dimension(1).length * base_unit_factor(x.get_units()), *row.number("x_size"),
                    1e-12);
        expect_values(row, stream, 0, stream.array_length());
        // From the manifest's note: the first stored curve and its retract.
        ASSERT_EQ(stream.get_dimension(0).length, 1024u);
        ASSERT_EQ(stream.values.get_axes_number(), 3u); // force, deflection, volts
        const VLAxis& metres = stream.values.get_axis(1);
        const auto* raw = static_cast<const std::int16_t*>(stream.array_data());
        const double half = 0.5001 * metres.scale;
        EXPECT_NEAR(metres.at(raw[0]), 8.55356832e3, half);
        EXPECT_NEAR(metres.at(raw[1023]), 1.8669024e2, half);
        const auto* retract = raw + 256 * 1024;
        EXPECT_NEAR(metres.at(retract[0]), 8.52464448e3, half);
        EXPECT_NEAR(metres.at(retract[1023]), 7.362432e1, half);
    }
}

} // namespace
