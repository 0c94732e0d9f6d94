#include "formats/instrument_fixture.h"
#include "formats/shared/heights.h"

#include "base/text/six_digits.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace {

constexpr double notMeasured = std::numeric_limits<double>::quiet_NaN();

formats::image_frame frame_of(unsigned width, unsigned height) { return {width, height, 1, VLAxis(), VLAxis()}; }

TEST(Heights, FittedValuesStayWithinHalfAStepOnASixDigitAxis)
{
    std::mt19937 random(7);
    for (const double magnitude : {1e-12, 3e-5, 1.0, 47.11, 1e9})
        for (const double offset : {0.0, 0.1, -5.0}) {
            std::normal_distribution<double> normal(offset * magnitude, magnitude);
            std::vector<double> values(5000);
            for (double& value : values) value = normal(random);
            const auto image = formats::make_image_from_values("id", "label", frame_of(100, 50), {}, values);
            const VLAxis& axis = image.stream.values.get_axis(0);
            EXPECT_EQ(axis.start, base::six_digits(axis.start));
            EXPECT_EQ(axis.scale, base::six_digits(axis.scale));
            const auto fitted = instrument_fixture::physical_of(image);
            for (std::size_t i = 0; i < values.size(); ++i)
                ASSERT_NEAR(fitted[i], values[i], 0.5000001 * axis.scale) << magnitude << " " << offset;
            EXPECT_EQ(image.strings.count("\\Void points"), 0u);
        }
}

TEST(Heights, ScaleIsAppliedBeforeFitting)
{
    const formats::value_scale scale{-2.0, 10.0, "nm", "Z"};
    const std::vector<double> values = {0.0, 1.0, 2.0, 5.0, 6.0, 3.0};
    const auto image = formats::make_image_from_values("id", "label", frame_of(3, 2), scale, values);
    const auto fitted = instrument_fixture::physical_of(image);
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(fitted[i], 10.0 - 2.0 * values[i]) << "whole numbers stay";
    EXPECT_STREQ(image.stream.values.get_axis(0).get_units(), "nm");
    EXPECT_EQ(image.strings.at("\\Z scale"), "raw * -2 + 10 [nm] from Z");
}

TEST(Heights, AnImageWithoutAnyMeasuredPointIsZero)
{
    const std::vector<double> values(6, notMeasured);
    const auto image = formats::make_image_from_values("id", "label", frame_of(3, 2), {2.0, 5.0, "V", ""}, values);
    for (const double value : instrument_fixture::physical_of(image)) EXPECT_EQ(value, 0.0);
    EXPECT_EQ(image.strings.at("\\Void points"), "6");
}

TEST(Heights, AnImageHasItsAxesAndTheScaleAsGiven)
{
    formats::image_frame frame{4, 3, 2, VLAxis(1.0, 0.5, "nm"), VLAxis(0.0, 2.0, "nm")};
    const auto image = formats::make_image("id", "A label", frame, {0.25, -1.0, "\u00B0", "Z scale"});
    EXPECT_STREQ(image.stream.get_name(), "id");
    EXPECT_STREQ(image.stream.get_description(), "A label");
    EXPECT_EQ(image.stream.array_type(), SPM_ARRAY_INT16);
    EXPECT_EQ(image.stream.array_length(), 24u);
    ASSERT_EQ(image.stream.get_dimensions_number(), 2u);
    EXPECT_EQ(image.stream.get_dimension(0).get_axis(0), VLAxis(1.0, 0.5, "nm"));
    EXPECT_EQ(image.stream.get_dimension(1).get_axis(0), VLAxis(0.0, 2.0, "nm"));
    EXPECT_EQ(image.stream.values.get_axis(0), VLAxis(-1.0, 0.25, "\u00B0"));
}

TEST(Heights, CurvesOfEqualLengthBecomeSubimages)
{
    const std::vector<double> values = {0.0, 1.0, 2.0, 10.0, 11.0, 12.0};
    const auto curve = formats::make_curve_from_values("c", "Curve", 3, VLAxis(0.0, 0.1, "s"), {}, values);
    ASSERT_EQ(curve.stream.get_dimensions_number(), 1u);
    EXPECT_EQ(curve.stream.get_dimension(0).length, 3u);
    EXPECT_EQ(curve.stream.get_dimension(0).get_axis(0), VLAxis(0.0, 0.1, "s"));
    EXPECT_NEAR(instrument_fixture::physical_of(curve)[4], 11.0, 1e-3);
}

TEST(Heights, AnImageOfMoreSamplesThanAnArrayHoldsIsRefused)
{
    EXPECT_THROW(formats::make_image("id", "", frame_of(0xFFFFFFFFu, 0xFFFFFFFFu), {}), std::bad_alloc);
    formats::image_frame frame = frame_of(65536, 65535);
    frame.frames = 2;
    EXPECT_THROW(formats::make_image("id", "", frame, {}), std::bad_alloc);
}

TEST(Heights, IdsAreSafeFileNamesAndUnique)
{
    const struct {
        const char *channel, *id;
    } rows[] = {{"Height", "Height"},
                {"Height", "Height_2"},
                {"Height", "Height_3"},
                {"Height_2", "Height_2_2"},
                {"Peak Force/Error", "Peak_Force_Error"},
                {"\u00B5m\u00B2", "_m_"},
                {"", "Image"},
                {"..", "_."},
                {"Z-1.5", "Z-1.5"},
                {"Height_9", "Height_9"},
                {"Height", "Height_10"}};
    std::vector<std::string> used;
    for (const auto& row : rows) EXPECT_EQ(formats::unique_id(row.channel, used), row.id);
    EXPECT_EQ(used.size(), std::size(rows));
}

} // namespace
