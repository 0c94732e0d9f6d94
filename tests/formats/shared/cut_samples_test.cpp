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

constexpr cut_sample cuts[] = {
    {"nanoscope", "di-1.di", 1000},  {"nanoscope", "20200903_Egel2.0_00023.spm", 4000},
    {"nid", "image.nid", 1000},      {"ibw", "AR_20211011.ibw", 100000},
    {"mdt", "test_mdt.mdt", 100000}, {"opd", "opd-1.opd", 400000},
    {"sur", "test_RGB.sur", 1000},
};

TEST(CutSamples, GiveTheWholeImagesAndAWarning)
{
    for (const cut_sample& each : cuts) {
        SCOPED_TRACE(each.file);
        const std::vector<std::byte> bytes = read_sample(each.folder, each.file);
        if (bytes.empty()) GTEST_SKIP() << "sample files are not here";
        const std::span<const std::byte> stored(bytes);
        const formats::format_row* row =
            formats::find_format(stored.first(std::min(bytes.size(), formats::sniffBytes)), each.file);
        ASSERT_TRUE(row);
        formats::memory_source whole(stored, each.file), cut(stored.first(bytes.size() - each.lost), each.file);
        const auto all = row->read(whole), rest = row->read(cut);
        ASSERT_TRUE(all && rest);
        const auto tellsCut = [](const std::string& text) { return text.find("not measured") == std::string::npos; };
        EXPECT_TRUE(std::ranges::none_of(all->warnings, tellsCut));
        EXPECT_TRUE(std::ranges::any_of(rest->warnings, tellsCut));
        const auto before = planes_of(*all), after = planes_of(*rest);
        EXPECT_TRUE(after.size() < before.size() || rest->items.size() < all->items.size());
        for (const image_plane& plane : after)
            EXPECT_TRUE(std::ranges::any_of(before, [&](const image_plane& old) { return hold_the_same(plane, old); }))
                << plane.image->stream.get_name();
    }
}

} // namespace
