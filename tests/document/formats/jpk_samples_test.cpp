#include "document/formats/force_order.h"
#include "document/formats/registry.h"
#include "jpk_fixture.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace formats;
using namespace test_support;
using jpk_fixture::find_image;

class JpkSamples : public testing::Test {
protected:
    void SetUp() override
    {
        if (read_manifest("jpk").empty()) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
    }
    /// Reads a sample; the last one is kept, as the manifest's rows are ordered by file.
    const recording& content(const std::string& name)
    {
        if (name != lastName) {
            bytes = read_sample("jpk", name);
            lastName = name;
            memory_source source(bytes, name);
            const format_row* row = find_format(std::span(bytes).first(std::min(bytes.size(), sniffBytes)), "");
            EXPECT_TRUE(row && row->type == FILE_JPK) << name;
            auto result = read_jpk(source);
            EXPECT_TRUE(result) << result.error().reason;
            if (result) last = std::move(*result);
        }
        return last;
    }

private:
    std::string lastName;
    std::vector<std::byte> bytes;
    recording last;
};

TEST_F(JpkSamples, ImagesHaveTheValuesOfTheManifest)
{
    std::map<std::string, std::size_t> planesOfFile;
    for (const manifest_row& row : manifest_rows("jpk", "image")) {
        SCOPED_TRACE(row.title());
        const recording& file = content(row.text("file"));
        ++planesOfFile[row.text("file")];
        std::string label = row.text("name");
        const bool isReverse = label.ends_with(" (retrace)");
        if (isReverse) label.resize(label.size() - 10);
        std::size_t matches = 0;
        for (const image_plane& plane : planes_of(file)) {
            const auto& names = plane.image->stream.subimage_names();
            const bool isOther =
                names.size() == 2 && (std::string(names[plane.subimage].text) == "Reverse") != isReverse;
            if (label != plane.image->stream.get_description() || isOther) continue;
            if (std::fabs(plane.at(0, 0) - *row.number("bottom_left")) >
                1e-3 * (*row.number("z_max") - *row.number("z_min")))
                continue; // two channels of one file share a name
            ++matches;
            expect_plane(row, plane, true);
        }
        EXPECT_EQ(matches, 1u);
    }
    for (const auto& [name, count] : planesOfFile) EXPECT_EQ(planes_of(content(name)).size(), count) << name;
}

TEST_F(JpkSamples, CurvesHaveTheValuesOfTheManifest)
{
    std::size_t checked = 0;
    for (const manifest_row& row : manifest_rows("jpk", "curve")) {
        SCOPED_TRACE(row.title());
        unsigned number = 0, segment = 0;
        ASSERT_EQ(std::sscanf(row.text("object").c_str(), "curve %u segment %u", &number, &segment), 2);
        const recorded_image* image = find_image(content(row.text("file")), row.text("name"));
        ASSERT_TRUE(image);
        const SPMDataStream& stream = image->stream;
        // All maps here hold the first curves of their first row.
        const bool isMap = stream.get_dimensions_number() == 3;
        const std::size_t points = stream.get_dimension(0).length, columns = isMap ? stream.get_dimension(1).length : 1;
        const auto nx = static_cast<std::size_t>(*row.number("nx"));
        ASSERT_LE(nx, points);
        ASSERT_LT(number, columns);
        const std::vector<double> all = physical(stream);
        const auto first = all.begin() + static_cast<std::ptrdiff_t>((segment * columns + number) * points);
        const auto [lowest, highest] = std::minmax_element(first, first + static_cast<std::ptrdiff_t>(nx));
        const VLAxis& axis = stream.values.get_axis(0);
        const double factor = base_unit_factor(axis.get_units());
        const double tolerance =
            0.5001 * std::fabs(axis.scale) * factor + 1e-5 * (*row.number("z_max") - *row.number("z_min"));
        EXPECT_NEAR(*lowest * factor, *row.number("z_min"), tolerance);
        EXPECT_NEAR(*highest * factor, *row.number("z_max"), tolerance);
        EXPECT_EQ(base_unit(axis.get_units()), row.text("z_unit"));
        ++checked;
    }
    EXPECT_GT(checked, 90u);
}

TEST_F(JpkSamples, ApproachAndRetractBeginAtTheContact)
{
    std::size_t checked = 0;
    for (const manifest_row& row : manifest_rows("jpk", "curve")) {
        if (row.text("name") != "vDeflection") continue;
        SCOPED_TRACE(row.title());
        const SPMDataStream& force = find_image(content(row.text("file")), "vDeflection")->stream;
        ASSERT_TRUE(force.get_parameter_stream()); // of a map, too
        const recorded_image& sensor = *find_image(content(row.text("file")), force.get_parameter_stream());
        EXPECT_TRUE(sensor.strings.contains("\\Recorded order"));
        const std::vector<double> heights = physical(sensor.stream);
        const std::size_t points = sensor.stream.get_dimension(0).length;
        for (std::size_t curve = 0; curve * points < heights.size(); ++curve) {
            const auto& names = force.subimage_names();
            const force_way way = way_of_part(names[curve * names.size() * points / heights.size()].text);
            if (way == force_way::unknown) continue;
            // These instruments lower the probe: the height grows with the distance from the contact. Padding repeats
            // the free end.
            EXPECT_LT(heights[curve * points], heights[curve * points + points - 1]) << curve;
            ++checked;
        }
    }
    EXPECT_GT(checked, 30u);
}

TEST_F(JpkSamples, MapsKeepTheSizeOfTheirPoints)
{
    for (const manifest_row& row : manifest_rows("jpk", "summary")) {
        if (row.text("nx").empty()) continue;
        const recorded_image* image = find_image(content(row.text("file")), "height");
        ASSERT_TRUE(image) << row.title();
        ASSERT_EQ(image->stream.get_dimensions_number(), 3u);
        for (const auto& [size, count, dimension] : {std::tuple("x_size", "nx", 1u), std::tuple("y_size", "ny", 2u)})
            EXPECT_NEAR(image->stream.get_dimension(dimension).get_axis(0).scale,
                        *row.number(size) / *row.number(count), 1e-6 * *row.number(size) / *row.number(count));
    }
}

} // namespace
