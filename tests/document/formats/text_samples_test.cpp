#include "document/formats/text_table.h"
#include "recorded_values.h"

#include "support/manifest.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>

// The real files of the samples folder against the values of its manifest.

namespace {

using namespace formats;

struct measured {
    double lo = std::numeric_limits<double>::infinity(), hi = -lo, mean = 0.0;
};

measured measure(const std::vector<double>& values)
{
    measured result;
    for (const double value : values) {
        result.lo = std::min(result.lo, value);
        result.hi = std::max(result.hi, value);
    }
    result.mean = std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
    return result;
}

void compare_values(const test_support::manifest_row& row, const SPMDataStream& stream)
{
    const std::vector<double> values = physical(stream);
    const double range = *row.number("z_max") - *row.number("z_min");
    // Half a step of 16 bits, and the six digits that the list itself gives.
    const double allowed = range / 131070 * 1.02 + 1e-5 * range + 1e-6 * std::fabs(*row.number("z_max"));
    const measured found = measure(values);
    EXPECT_NEAR(found.lo, *row.number("z_min"), allowed);
    EXPECT_NEAR(found.hi, *row.number("z_max"), allowed);
    EXPECT_NEAR(found.mean, *row.number("z_mean"), allowed);
}

/// Curves are compared with the extent of x, whether it is an axis or a stream of its own.
void compare_curve(const test_support::manifest_row& row, const recording& content)
{
    const bool hasX = content.items.size() > 1 && item(content, 1).stream.get_parameter_stream();
    const auto index = static_cast<std::size_t>(*row.number("object")) + (hasX ? 1 : 0);
    ASSERT_LT(index, content.items.size());
    const SPMDataStream& stream = item(content, index).stream;
    ASSERT_EQ(stream.get_dimensions_number(), 1u);
    EXPECT_EQ(stream.array_length(), *row.number("nx"));
    double extent = stream.get_dimension(0).get_axis(0).scale * (stream.array_length() - 1);
    if (hasX) {
        const measured x = measure(physical(item(content, 0).stream));
        extent = x.hi - x.lo;
    }
    EXPECT_NEAR(std::fabs(extent), *row.number("x_size"), 2e-5 * *row.number("x_size"));
    compare_values(row, stream);
}

TEST(TextTableSamples, RealFilesGiveTheValuesOfTheirManifest)
{
    const auto rows = test_support::read_manifest("text");
    if (rows.empty()) GTEST_SKIP() << "the sample files are not there";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.title());
        const std::vector<std::byte> bytes = test_support::read_sample("text", row.text("file"));
        ASSERT_FALSE(bytes.empty());
        memory_source file(bytes, row.text("file"));
        const auto result = read_text_table(file);
        if (row.text("kind") == "reject") {
            EXPECT_FALSE(result);
            EXPECT_FALSE(possible_text_table(bytes));
            continue;
        }
        ASSERT_TRUE(result) << result.error().reason;
        EXPECT_TRUE(possible_text_table(std::span(bytes).first(std::min<std::size_t>(bytes.size(), 4096))));
        if (row.text("kind") == "image")
            test_support::expect_plane(row, test_support::planes_of(*result).at(0), true);
        else
            compare_curve(row, *result);
    }
}

} // namespace
