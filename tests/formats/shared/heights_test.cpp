#include "formats/instrument_fixture.h"
#include "formats/shared/heights.h"

#include "base/text/six_digits.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace {

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

TEST(Heights, ImagesAndCurvesHaveTheirAxesAndTheScaleAsGiven)
{
    using instrument_fixture::told;
    const formats::value_scale scale{-2.0, 10.0, "nm", "Z"};
    const std::vector<double> values = {0.0, 1.0, 2.0, 5.0, 6.0, 3.0};
    const auto image = formats::make_image_from_values("id", "Height", frame_of(3, 2), scale, values);
    EXPECT_EQ(told(image), "Height [nm] (3; 2): 10 8 6 0 -2 4"); // whole numbers stay
    EXPECT_EQ(image.strings.at("\\Z scale"), "raw * -2 + 10 [nm] from Z");
    const auto curve = formats::make_curve_from_values("c", "Curve", 3, VLAxis(0.0, 0.1, "s"), {}, values);
    EXPECT_EQ(told(curve), "Curve (3: 0 + 0.1 s): 0 1 2 5 6 3");
    formats::image_frame frame{2, 1, 2, VLAxis(1.0, 0.5, "nm"), VLAxis(0.0, 2.0, "nm")};
    const auto empty = formats::make_image("id", "A label", frame, {0.25, -1.0, "\u00B0", "Z scale"});
    EXPECT_EQ(empty.stream.array_length(), 4u);
    EXPECT_STREQ(empty.stream.get_description(), "A label");
    EXPECT_EQ(instrument_fixture::axis_text(empty, 0), "1 0.5 nm");
    EXPECT_EQ(instrument_fixture::axis_text(empty, 1), "0 2 nm");
    EXPECT_EQ(empty.stream.values.get_axis(0), VLAxis(-1.0, 0.25, "\u00B0"));

    const std::vector<double> gaps(2, std::numeric_limits<double>::quiet_NaN());
    const auto unmeasured = formats::make_image_from_values("id", "Height", frame_of(2, 1), {2.0, 5.0, "V", ""}, gaps);
    EXPECT_EQ(told(unmeasured), "Height [V] (2; 1): 0 0");
    EXPECT_EQ(unmeasured.strings.at("\\Void points"), "2");
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
    const std::pair<const char*, const char*> rows[] = {{"Height", "Height"},
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
    for (const auto& [channel, id] : rows) EXPECT_EQ(formats::unique_id(channel, used), id);
    EXPECT_EQ(used.size(), std::size(rows));
}

} // namespace
