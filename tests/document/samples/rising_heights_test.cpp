// Samples whose value axis falls are counted the other way and keep their values.
#include "document/samples/rising_heights.h"

#include <gtest/gtest.h>

namespace {

TEST(RisingHeights, KeepTheValuesOfEverySample)
{
    std::vector<std::int16_t> all(65536);
    for (int i = 0; i < 65536; ++i) all[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(i - 32768);
    for (const double step : {-0.25, 0.25, 0.0}) {
        const VLAxis axis(3, step, "nm");
        const document::rising_heights heights(all, axis);
        EXPECT_GE(heights.axis().scale, 0.0);
        EXPECT_STREQ(heights.axis().get_units(), "nm");
        EXPECT_EQ(heights.samples().data() == all.data(), step >= 0.0) << "no copy where none is needed";
        for (std::size_t i = 0; i < all.size(); ++i)
            ASSERT_EQ(heights.axis().at(heights.samples()[i]), axis.at(all[i])) << all[i];
    }
    document::rising_heights moved(all, VLAxis(0, -1, ""));
    const document::rising_heights kept = std::move(moved);
    EXPECT_EQ(kept.samples().front(), 32767);
}

} // namespace
