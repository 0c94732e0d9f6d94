#include "formats/registry.h"
#include "support/manifest.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

// A recording of which one image is cut short gives the whole ones, unchanged, and a warning.

namespace {

using namespace test_support;

struct cut_sample {
    const char *folder, *file;
    std::size_t lost; ///< bytes at the end, that is of the last image
};

void PrintTo(const cut_sample& row, std::ostream* out) { *out << row.file; }

/// Equal but for the rounding to 16 bits, which may be another when a direction is missing.
bool hold_the_same(const image_plane& one, const image_plane& other)
{
    if (one.width() != other.width() || one.height() != other.height()) return false;
    const double tolerance = 0.51 * (std::fabs(one.step()) + std::fabs(other.step()));
    for (unsigned row = 0; row < one.height(); ++row)
        for (unsigned column = 0; column < one.width(); ++column)
            if (!(std::fabs(one.at(column, row) - other.at(column, row)) <= tolerance)) return false;
    return true;
}

class CutSamples : public testing::TestWithParam<cut_sample> {};

TEST_P(CutSamples, GiveTheWholeImagesAndAWarning)
{
    const std::vector<std::byte> bytes = read_sample(GetParam().folder, GetParam().file);
    if (bytes.empty()) GTEST_SKIP() << "sample files are not here";
    const formats::format_row* row =
        formats::find_format(std::span(bytes).first(std::min(bytes.size(), formats::sniffBytes)), GetParam().file);
    ASSERT_TRUE(row);
    const std::span<const std::byte> stored(bytes);
    formats::memory_source whole(stored, GetParam().file),
        cut(stored.first(bytes.size() - GetParam().lost), GetParam().file);
    const auto all = row->read(whole), rest = row->read(cut);
    ASSERT_TRUE(all) << all.error().reason;
    ASSERT_TRUE(rest) << rest.error().reason;
    const auto tellsCut = [](const std::string& each) { return each.find("not measured") == std::string::npos; };
    EXPECT_TRUE(std::ranges::none_of(all->warnings, tellsCut));
    EXPECT_TRUE(std::ranges::any_of(rest->warnings, tellsCut));
    const auto before = planes_of(*all), after = planes_of(*rest);
    EXPECT_TRUE(after.size() < before.size() || rest->items.size() < all->items.size());
    for (const image_plane& plane : after)
        EXPECT_TRUE(std::ranges::any_of(before, [&](const image_plane& each) { return hold_the_same(plane, each); }))
            << plane.image->stream.get_name();
}

INSTANTIATE_TEST_SUITE_P(
    Formats, CutSamples,
    testing::Values(cut_sample{"nanoscope", "di-1.di", 1000},
                    cut_sample{"nanoscope", "20200903_Egel2.0_00023.spm", 4000}, cut_sample{"nid", "image.nid", 1000},
                    cut_sample{"ibw", "AR_20211011.ibw", 100000}, cut_sample{"mdt", "test_mdt.mdt", 100000},
                    cut_sample{"opd", "opd-1.opd", 400000}, cut_sample{"sur", "test_RGB.sur", 1000}),
    [](const auto& each) {
        std::string name = each.param.file;
        std::ranges::replace_if(name, [](unsigned char c) { return !std::isalnum(c); }, '_');
        return name;
    });

} // namespace
