#include "formats/jpk/jpk_fixture.h"
#include "formats/mdt/mdt.h"
#include "formats/nanoscope/nanoscope.h"
#include "formats/shared/force/force_order.h"
#include "recorded_values.h"
#include "support/manifest.h"

#include <gtest/gtest.h>
#include <set>

// What is known of single samples beyond the columns of their manifests.

namespace {

using namespace formats;
using namespace test_support;

class SampleFacts : public testing::Test {
protected:
    const recording& read(base::read_result<recording> (*reader)(source&), const char* folder, const std::string& name)
    {
        const std::vector<std::byte> bytes = read_sample(folder, name);
        memory_source file(bytes, name);
        auto result = reader(file);
        EXPECT_TRUE(result) << name << result.error().reason;
        return last = result ? std::move(*result) : recording();
    }
    void SetUp() override
    {
        if (read_manifest("jpk").empty()) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
    }
    recording last;
};

TEST_F(SampleFacts, ScanAndSpectraOfAnMdtFile)
{
    const recording& content = read(read_mdt, "mdt", "test_mdt.mdt");
    const auto& strings = item(content, 0).strings; // the title is "1F:Iprobe"
    EXPECT_EQ(strings.at("Pass"), "1");
    EXPECT_EQ(strings.at("\\Line direction"), "Forward");
    EXPECT_EQ(strings.at("\\Speed"), "2.99976563189274 \u00B5m/s");
    const SPMDataStream& spectra = item(content, 1).stream;
    EXPECT_NEAR(spectra.get_dimension(0).get_axis(0).start, -2.99985697, 1e-8); // from the manifest's note
    const std::vector<double> values = physical(spectra);
    EXPECT_GT(values[586], 40.0); // nA: the current saturates at +3 V and falls with the bias
    EXPECT_LT(values[0], 0.0);
    const auto names = spectra.subimage_names(); // three passes there and back at each of 25 points
    EXPECT_STREQ(names[0].text, "Point 1, pass 1, Forward");
    EXPECT_STREQ(names[5].text, "Point 1, pass 3, Reverse");
    EXPECT_STREQ(names[6].text, "Point 2, pass 1, Forward");
    EXPECT_STREQ(names[149].text, "Point 25, pass 3, Reverse");
}

TEST_F(SampleFacts, FirstStoredCurveOfAForceVolume)
{
    const recording& content = read(read_nanoscope, "nanoscope", "20200903_Egel2.0_00023.spm");
    const SPMDataStream& volume = item(content, 1).stream;
    ASSERT_EQ(volume.get_dimension(0).length, 1024u);
    ASSERT_EQ(volume.values.get_axes_number(), 3u); // force, deflection, volts
    const VLAxis& deflection = volume.values.get_axis(1);
    const auto* raw = static_cast<const std::int16_t*>(volume.array_data());
    const double half = 0.5001 * deflection.scale; // in nm; the numbers are those of the manifest's note
    EXPECT_NEAR(deflection.at(raw[0]), 8.55356832e3, half);
    EXPECT_NEAR(deflection.at(raw[1023]), 1.8669024e2, half);
    const auto* retract = raw + 256 * 1024;
    EXPECT_NEAR(deflection.at(retract[0]), 8.52464448e3, half);
    EXPECT_NEAR(deflection.at(retract[1023]), 7.362432e1, half);
}

TEST_F(SampleFacts, ForceIsHighWhereNanoscopeCurvesBegin)
{
    for (const char* name : {"BrukerReader_ForceCurve_Sapphire_TAP525.001", "20200904_Egel4-Z1.0_00025.spm"}) {
        const SPMDataStream& force = item(read(read_nanoscope, "nanoscope", name), 0).stream;
        const std::vector<double> values = physical(force);
        const std::size_t points = force.get_dimension(0).length;
        for (std::size_t part = 0; part < 2; ++part) EXPECT_GT(values[part * points], values[(part + 1) * points - 1]);
    }
}

/// All but the first of 128 lines of the map hold the number that its encoders name; the other image has measured
/// points of that very number, and encoders that name none.
TEST_F(SampleFacts, LinesOfAJpkMapThatWereNotMeasured)
{
    const recording& map = read(read_jpk, "jpk", "fmt-jpk-fd_2020.02.07-16.29.05.036.jpk-qi-data");
    std::size_t images = 0;
    for (const auto& each : map.items) {
        const auto& image = std::get<recorded_image>(each);
        if (image.stream.get_dimensions_number() != 2) continue;
        EXPECT_EQ(image.strings.at("\\Void points"), std::to_string(127 * 128)) << image.stream.get_name();
        ++images;
    }
    EXPECT_EQ(images, 5u);
    for (const auto& each : read(read_jpk, "jpk", "file.jpk-qi-image").items)
        EXPECT_FALSE(std::get<recorded_image>(each).strings.contains("\\Void points"));
}

TEST_F(SampleFacts, JpkCurvesBeginAtTheContact)
{
    std::size_t checked = 0;
    std::set<std::string> files;
    for (const manifest_row& row : manifest_rows("jpk", "curve"))
        if (row.text("name") == "vDeflection") files.insert(row.text("file"));
    for (const std::string& name : files) {
        const recording& content = read(read_jpk, "jpk", name);
        const SPMDataStream& force = jpk_fixture::find_image(content, "vDeflection")->stream;
        ASSERT_TRUE(force.get_parameter_stream()); // of a map, too
        const recorded_image& sensor = *jpk_fixture::find_image(content, force.get_parameter_stream());
        EXPECT_TRUE(sensor.strings.contains("\\Recorded order"));
        const std::vector<double> heights = physical(sensor.stream);
        const std::size_t points = sensor.stream.get_dimension(0).length;
        for (std::size_t curve = 0; curve * points < heights.size(); ++curve) {
            const auto& names = force.subimage_names();
            const force_way way = way_of_part(names[curve * names.size() * points / heights.size()].text);
            if (way == force_way::unknown) continue;
            // These instruments lower the probe: the height grows with the distance from the contact. Padding repeats
            // the free end.
            EXPECT_LT(heights[curve * points], heights[curve * points + points - 1]) << name << curve;
            ++checked;
        }
    }
    EXPECT_GT(checked, 12u);
}

} // namespace
