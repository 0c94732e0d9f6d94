#include "document/formats/registry.h"
#include "recorded_values.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>

// Real files of formats with one reader and one kind of object against the values of their manifests.

namespace {

using namespace formats;
using namespace test_support;

struct instrument {
    SupportedFileTypes type;
    const char* folder;
};

base::read_result<recording> read_file(const instrument& format, const std::string& name)
{
    const std::vector<std::byte> bytes = read_sample(format.folder, name);
    // By content alone: an instrument's file opens under any name.
    const format_row* row = find_format(std::span(bytes).first(std::min(bytes.size(), sniffBytes)), "other.xyz");
    if (!row) return base::read_error{0, "not recognised"};
    EXPECT_EQ(row->type, format.type) << name;
    memory_source source(bytes, name);
    return row->read(source);
}

/// The plane that a row means, by its place.
const image_plane* find_plane(const manifest_row& row, const std::vector<image_plane>& planes)
{
    const auto index = static_cast<std::size_t>(*row.number("object"));
    return index < planes.size() ? &planes[index] : nullptr;
}

void expect_image(manifest_row row, const recording& content)
{
    const auto planes = planes_of(content);
    const image_plane* plane = find_plane(row, planes);
    ASSERT_TRUE(plane);
    // Heights without a title take the name of their block, which the manifest's reader calls so.
    const std::string label = plane->image->stream.get_description(), name = row.text("name");
    const bool isNamed = !name.empty() && name != "Topography";
    EXPECT_EQ(isNamed ? name.substr(0, label.size()) : label, label);
    // The manifest's reader fills points that were not measured from their neighbours.
    if (plane->image->strings.contains("\\Void points")) row.cells.erase("z_mean");
    expect_plane(row, *plane, true); // numbers that are fitted onto 16 bits may be off by half a step
}

/// Numbers of all parts of a curve, without what they are padded with.
std::vector<double> curve_values(const recorded_image& image)
{
    const std::vector<double> all = physical(image.stream);
    const auto lengths = image.strings.find("\\Curve lengths");
    if (lengths == image.strings.end()) return all;
    std::vector<double> values;
    std::istringstream text(lengths->second);
    const std::size_t points = image.stream.get_dimension(0).length;
    std::size_t at = 0;
    for (std::size_t length = 0; text >> length; at += points)
        values.insert(values.end(), all.begin() + static_cast<std::ptrdiff_t>(at),
                      all.begin() + static_cast<std::ptrdiff_t>(at + length));
    return values;
}

void expect_curve(const manifest_row& row, const recording& content)
{
    const recorded_image& image = item(content, static_cast<std::size_t>(*row.number("object")));
    const std::string label = image.stream.get_description();
    EXPECT_EQ(row.text("name").substr(0, label.size()), label);
    const std::vector<double> values = curve_values(image);
    ASSERT_EQ(static_cast<double>(values.size()), row.number("nx"));
    const VLAxis &axis = image.stream.values.get_axis(0), &x = image.stream.get_dimension(0).get_axis(0);
    EXPECT_EQ(base_unit(axis.get_units()), row.text("z_unit"));
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    const double mean = std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
    const double tolerance = 0.5001 * axis.scale + 1e-5 * (*row.number("z_max") - *row.number("z_min"));
    EXPECT_NEAR(*lowest, *row.number("z_min"), tolerance);
    EXPECT_NEAR(*highest, *row.number("z_max"), tolerance);
    EXPECT_NEAR(mean, *row.number("z_mean"), tolerance);
    if (!row.number("x_size")) return;
    EXPECT_EQ(x.get_units(), row.text("xy_unit"));
    EXPECT_NEAR(x.scale * (*row.number("nx") - 1), *row.number("x_size"), 1e-3 * *row.number("x_size"));
}

class InstrumentSamples : public testing::TestWithParam<instrument> {};

TEST_P(InstrumentSamples, HoldWhatTheManifestTells)
{
    const auto rows = read_manifest(GetParam().folder);
    if (rows.empty()) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
    std::map<std::string, std::size_t> images;
    for (const manifest_row& row : rows) {
        SCOPED_TRACE(row.title());
        const auto result = read_file(GetParam(), row.text("file"));
        const std::string kind = row.text("kind");
        if (kind == "reject" || kind == "wave") {
            ASSERT_FALSE(result);
            EXPECT_FALSE(result.error().reason.empty());
            continue;
        }
        ASSERT_TRUE(result) << result.error().reason;
        if (kind == "image") expect_image(row, *result);
        if (kind == "curve") expect_curve(row, *result);
        if (kind == "image" && ++images[row.text("file")] == 1) {
            const auto ofFile = std::count_if(rows.begin(), rows.end(), [&](const manifest_row& each) {
                return each.text("file") == row.text("file");
            });
            EXPECT_EQ(planes_of(*result).size(), static_cast<std::size_t>(ofFile));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, InstrumentSamples,
                         testing::Values(instrument{FILE_WSXM, "wsxm"}, instrument{FILE_BCR, "bcr"},
                                         instrument{FILE_OPD, "opd"}, instrument{FILE_IBW, "ibw"}),
                         [](const auto& each) { return std::string(each.param.folder); });

} // namespace
