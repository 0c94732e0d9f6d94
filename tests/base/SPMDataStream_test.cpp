#include "base/SPMDataStream.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace {

SPMDataStream sample_stream()
{
    SPMDataStream stream;
    stream.Init("he,ight \"1\"", "Height (raw), first", SPM_VAR_ARRAY, 12u, 2u);
    stream.set_array_type(SPM_ARRAY_INT16);
    SPMDataStream::dimension x, y;
    x.length = 4;
    x.set_axis(0, VLAxis(-1.5, 0.1, "µm"));
    x.set_axis(1, VLAxis(0, 1, "a \"unit\", (odd)"));
    y.length = 3;
    stream.set_dimension(0, x);
    stream.set_dimension(1, y);
    stream.values.set_axis(0, VLAxis(0, 1.0 / 3.0, "nm"));
    const char* names[] = {"Forward", "", "with blank"};
    stream.set_subimage_names(names, 3);
    const char* depends[] = {"Deflection Error"};
    stream.set_dependent_vars(depends, 1);
    stream.set_parameter_stream("Z, sensor");
    stream.offset = 17;
    stream.set_options(",#other");
    return stream;
}

TEST(SPMDataStream, DescriptionRebuildsTheShape)
{
    const SPMDataStream source = sample_stream();
    SPMDataStream rebuilt;
    rebuilt.Init(source.description().c_str());
    EXPECT_STREQ(rebuilt.get_name(), source.get_name());
    EXPECT_STREQ(rebuilt.get_description(), source.get_description());
    EXPECT_STREQ(rebuilt.get_options(), ",#other");
    EXPECT_EQ(rebuilt.array_length(), 12u);
    EXPECT_EQ(rebuilt.array_type(), SPM_ARRAY_INT16);
    ASSERT_EQ(rebuilt.get_dimensions_number(), 2u);
    EXPECT_EQ(rebuilt.get_dimension(0), source.get_dimension(0));
    EXPECT_EQ(rebuilt.get_dimension(1), source.get_dimension(1));
    EXPECT_EQ(rebuilt.values, source.values);
    EXPECT_EQ(rebuilt.subimage_names(), source.subimage_names());
    EXPECT_EQ(rebuilt.dependent_vars(), source.dependent_vars());
    EXPECT_STREQ(rebuilt.get_parameter_stream(), "Z, sensor");
    EXPECT_EQ(rebuilt.offset, 17u);
    EXPECT_STREQ(rebuilt.description().c_str(), source.description().c_str());
}

SPMDataStream stream_of(const std::vector<double>& values, const VLAxis& axis)
{
    SPMDataStream stream;
    stream.Init("v", "Values", SPM_VAR_ARRAY, static_cast<unsigned>(values.size()), 8u);
    stream.set_array_type(SPM_ARRAY_FLOAT64);
    stream.set_array(values.data(), static_cast<unsigned>(values.size()), 0);
    stream.values.set_axis(0, axis);
    return stream;
}

TEST(SPMDataStream, ConversionKeepsPhysicalValuesWithinHalfAStep)
{
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        const double centre =
            std::ldexp(static_cast<double>(random() % 2001) - 1000, static_cast<int>(random() % 60) - 30);
        const double span = std::ldexp(1.0, static_cast<int>(random() % 60) - 30);
        std::vector<double> values(50);
        for (double& v : values) v = centre + span * (static_cast<double>(random()) / 4294967296.0 - 0.5);
        const VLAxis axis(random() % 2 ? 0.0 : -3.25, random() % 2 ? 1.0 : -0.7, "nm");
        SPMDataStream stream = stream_of(values, axis);
        stream.values.set_axis(1, VLAxis(1.0, 2.0, "V"));
        stream.convert_stream(SPM_ARRAY_INT16);
        ASSERT_EQ(stream.array_type(), SPM_ARRAY_INT16);
        const VLAxis& first = stream.values.get_axis(0);
        const VLAxis& second = stream.values.get_axis(1);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const short raw = static_cast<const short*>(stream.array_data())[i];
            const double slack = 1e-9 * (std::abs(first.start) + std::abs(first.scale));
            ASSERT_NEAR(first.at(raw), axis.at(values[i]), std::abs(first.scale) / 2 + slack) << round;
            const double otherSlack = 1e-9 * (std::abs(second.start) + std::abs(centre) + std::abs(second.scale));
            ASSERT_NEAR(second.at(raw), 1.0 + 2.0 * values[i], std::abs(second.scale) / 2 + otherSlack) << round;
        }
    }
}

TEST(SPMDataStream, UnmeasuredPointsDoNotStretchTheRange)
{
    SPMDataStream stream = stream_of({1.5, std::nan(""), 2.5}, VLAxis(0, 1, "nm"));
    stream.convert_stream(SPM_ARRAY_INT16);
    EXPECT_NEAR(stream.values.get_axis(0).scale, 1.0 / 65535, 1e-4 / 65535);
    EXPECT_EQ(static_cast<const short*>(stream.array_data())[1], -32768);
}

TEST(SPMDataStream, ANewDeclarationForgetsTheOldShape)
{
    SPMDataStream stream = sample_stream();
    stream.Init("new", "New", SPM_VAR_ARRAY, 0u, 2u);
    EXPECT_STREQ(stream.description().c_str(), "new(New),array,0,2");
    stream = sample_stream();
    stream.Destroy();
    EXPECT_EQ(stream.get_dimensions_number(), 0u);
    EXPECT_EQ(stream.get_parameter_stream(), nullptr);
}

} // namespace
