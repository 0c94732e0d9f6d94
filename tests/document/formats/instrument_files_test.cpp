#include "base/text.h"
#include "document/formats/aist.h"
#include "document/formats/hdf.h"
#include "document/formats/nid.h"
#include "document/formats/pni.h"
#include "document/formats/scala.h"
#include "document/formats/sm2.h"
#include "document/formats/stp.h"
#include "document/formats/sur.h"
#include "document/formats/tmd.h"
#include "document/formats/wip.h"
#include "instrument_fixture.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <numeric>
#include <random>
#include <set>

// The real files of the samples folder: their values against the manifest, and the same files damaged.

namespace {

using namespace instrument_fixture;
using test_support::image_plane;
using test_support::manifest_row;

/// A folder of samples and what reads it.
struct sample_set {
    const char* folder;
    reader read;
    SupportedFileTypes type;
    /// Objects of the manifest are told apart by channel and direction, else by their number.
    bool byName;
};

std::ostream& operator<<(std::ostream& out, const sample_set& set) { return out << set.folder; }

/// All files of a folder; none when it is not there.
folder load_files(const std::string& path)
{
    folder files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(path, error)) {
        std::ifstream in(entry.path(), std::ios::binary);
        files[entry.path().filename().string()] = std::string(std::istreambuf_iterator<char>(in), {});
    }
    return files;
}

class InstrumentFiles : public testing::TestWithParam<sample_set> {
protected:
    void SetUp() override
    {
        files = load_files(test_support::sample_folder(GetParam().folder));
        if (files.empty()) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
    }
    std::set<std::string> readable() const
    {
        std::set<std::string> names;
        for (const manifest_row& row : test_support::read_manifest(GetParam().folder))
            if (row.text("kind") != "reject") names.insert(row.text("file"));
        return names;
    }
    folder files;
};

/// "Z-Axis backward", "Z (Backward)".
bool has_name(const image_plane& plane, const std::string& name)
{
    const std::string label = plane.image->stream.get_description();
    const auto subimages = subimages_of(*plane.image);
    const bool isReverse = base::lower_ascii(name).find("backward") != std::string::npos;
    const std::string direction = plane.subimage < subimages.size() ? subimages[plane.subimage] : "";
    return name.substr(0, name.rfind(' ')) == label && (direction == "Reverse") == isReverse;
}

/// The row with its numbers in base units, whatever units the list states them in.
manifest_row in_base_units(manifest_row row)
{
    const auto rebase = [&](const std::string& unitColumn, std::initializer_list<const char*> columns) {
        std::string& units = row.cells[unitColumn];
        if (units == "um") units = "\u00B5m";
        for (const char* column : columns)
            if (const auto number = row.number(column))
                row.cells[column] = base::shortest(*number * test_support::base_unit_factor(units));
        units = test_support::base_unit(units);
    };
    rebase("xy_unit", {"x_size", "y_size"});
    rebase("z_unit", {"z_min", "z_max", "z_mean", "top_left", "top_right", "bottom_left", "bottom_right"});
    return row;
}

void expect_curve(const manifest_row& row, const formats::recorded_image& image)
{
    ASSERT_EQ(image.stream.get_dimensions_number(), 1u);
    const auto& dimension = image.stream.get_dimension(0);
    EXPECT_EQ(dimension.length, row.number("nx"));
    EXPECT_EQ(image.stream.array_length() / dimension.length, row.number("ny"));
    const VLAxis& x = dimension.get_axis(0);
    // The list counts a point's width or the distance of the first and last point.
    const double size = *row.number("x_size");
    const double error =
        std::min(std::fabs(x.scale * dimension.length - size), std::fabs(x.scale * (dimension.length - 1) - size));
    EXPECT_LE(error, 1e-5 * size);
    EXPECT_EQ(std::string(x.get_units()), row.text("xy_unit"));
    EXPECT_EQ(std::string(image.stream.values.get_axis(0).get_units()), row.text("z_unit"));
}

void expect_range(const manifest_row& row, const formats::recorded_image& image)
{
    const std::vector<double> values = physical_of(image);
    const double range = *row.number("z_max") - *row.number("z_min");
    const double tolerance = range * 1e-5 + 0.5 * std::fabs(image.stream.values.get_axis(0).scale);
    EXPECT_NEAR(std::ranges::min(values), *row.number("z_min"), tolerance);
    EXPECT_NEAR(std::ranges::max(values), *row.number("z_max"), tolerance);
    const double mean = std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
    if (!image.strings.contains("\\Void points")) { EXPECT_NEAR(mean, *row.number("z_mean"), tolerance); }
}

/// Images whose not-measured points take part in no mean: shape and range only.
void expect_plane_with_voids(const manifest_row& row, const image_plane& plane)
{
    EXPECT_EQ(plane.width(), row.number("nx"));
    EXPECT_EQ(plane.height(), row.number("ny"));
    expect_range(row, *plane.image);
}

void expect_image(const manifest_row& row, const formats::recording& content, bool byName)
{
    const auto planes = test_support::planes_of(content);
    auto index = static_cast<std::size_t>(row.number("object").value_or(-1));
    if (byName) {
        const auto found =
            std::ranges::find_if(planes, [&](const image_plane& plane) { return has_name(plane, row.text("name")); });
        index = static_cast<std::size_t>(found - planes.begin());
    }
    ASSERT_LT(index, planes.size());
    if (planes[index].image->strings.contains("\\Void points"))
        expect_plane_with_voids(row, planes[index]);
    else
        test_support::expect_plane(in_base_units(row), planes[index], true);
}

TEST_P(InstrumentFiles, HaveTheValuesOfTheManifest)
{
    for (const manifest_row& row : test_support::read_manifest(GetParam().folder)) {
        SCOPED_TRACE(row.title());
        const std::string name = row.text("file"), kind = row.text("kind");
        const auto result = read(GetParam().read, files, name);
        if (kind == "reject") {
            EXPECT_FALSE(result);
            continue;
        }
        ASSERT_TRUE(result) << result.error().reason;
        EXPECT_EQ(type_of(files.at(name), "wrong.ext"), GetParam().type);
        if (kind == "image") {
            expect_image(row, *result, GetParam().byName);
            continue;
        }
        const auto& image = image_at(result, static_cast<std::size_t>(*row.number("object")));
        if (kind == "curve") {
            expect_curve(row, image);
        } else {
            EXPECT_EQ(kind, "spectralmap");
            ASSERT_EQ(image.stream.get_dimensions_number(), 3u);
            EXPECT_EQ(image.stream.get_dimension(1).length, row.number("nx"));
            EXPECT_EQ(image.stream.get_dimension(2).length, row.number("ny"));
        }
        expect_range(row, image);
    }
}

TEST_P(InstrumentFiles, HaveNoMoreObjectsThanTheManifest)
{
    std::map<std::string, std::size_t> objects;
    for (const manifest_row& row : test_support::read_manifest(GetParam().folder)) ++objects[row.text("file")];
    for (const std::string& name : readable()) {
        const auto result = read(GetParam().read, files, name);
        ASSERT_TRUE(result);
        const std::size_t planes = test_support::planes_of(*result).size();
        EXPECT_EQ(planes ? planes : result->items.size(), objects[name]) << name;
    }
}

/// Either outcome will do, as long as it is one: a recording with something in it or a reason.
void expect_outcome(const base::read_result<formats::recording>& result)
{
    if (result)
        EXPECT_FALSE(result->items.empty());
    else
        EXPECT_FALSE(result.error().reason.empty());
}

/// Reads a file cut at many places and with many bytes changed.
template <class Read>
void read_damaged(const std::string& whole, const Read& readBytes)
{
    constexpr std::size_t cuts = 40, changes = 100;
    std::mt19937 random(1);
    for (std::size_t cut = 0; cut < cuts; ++cut) expect_outcome(readBytes(whole.substr(0, whole.size() * cut / cuts)));
    for (std::size_t change = 0; change < changes; ++change) {
        std::string changed = whole;
        // Most bytes are samples; half of the changes go to the beginning, where the header is.
        const std::size_t reach = change % 2 ? whole.size() : std::min<std::size_t>(whole.size(), 1024);
        changed[random() % reach] = static_cast<char>(random());
        expect_outcome(readBytes(changed));
    }
}

TEST_P(InstrumentFiles, DamagedFilesGiveAReasonOrARecording)
{
    constexpr std::size_t largest = 1u << 20;
    for (const std::string& name : readable()) {
        const std::string whole = files.at(name);
        if (whole.size() >= largest) continue;
        SCOPED_TRACE(name);
        read_damaged(whole, [&](const std::string& bytes) {
            files[name] = bytes;
            return read(GetParam().read, files, name);
        });
        files[name] = whole;
    }
}

/// Formats without a real sample: the small made-up files that fuzzing starts from.
TEST(InstrumentSeeds, DamagedFilesGiveAReasonOrARecording)
{
    const struct {
        const char* folder;
        reader read;
    } rows[] = {{"sur", sur_reader},        {"nid", formats::read_nid},   {"hdf", formats::read_hdf},
                {"sm2", formats::read_sm2}, {"stp", formats::read_stp},   {"pni", pni_reader},
                {"tmd", formats::read_tmd}, {"aist", formats::read_aist}, {"wip", formats::read_wip}};
    for (const auto& row : rows) {
        const folder seeds = load_files(std::string(VLDV_TEST_DATA "/") + row.folder);
        EXPECT_FALSE(seeds.empty()) << row.folder;
        for (const auto& [name, bytes] : seeds) {
            SCOPED_TRACE(name);
            EXPECT_TRUE(read(row.read, bytes));
            read_damaged(bytes, [&](const std::string& damaged) { return read(row.read, damaged); });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, InstrumentFiles,
                         testing::Values(sample_set{"sur", sur_reader, FILE_SUR, false},
                                         sample_set{"nid", formats::read_nid, FILE_NANOSURF, true},
                                         sample_set{"scala", formats::read_scala, FILE_SCALA, true},
                                         sample_set{"tmd", formats::read_tmd, FILE_TMD, false},
                                         sample_set{"hdf", formats::read_hdf, FILE_HDF, false}),
                         [](const auto& tested) { return std::string(tested.param.folder); });

} // namespace
