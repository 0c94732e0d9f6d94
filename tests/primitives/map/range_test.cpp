#include "primitives/map/range.h"

#include "primitives/kernel_forms.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using primitives::height_range;

TEST(FindRange, TakesExtremesAtEveryPlaceOfEveryLengthAndAlignment)
{
    constexpr std::size_t longest = 300; // past two rounds of the widest form, 128 samples each
    for (const auto& form : forms_of(&primitives::kernel_table::findRange))
        for (std::size_t offset = 0; offset < 32; offset += offset < 4 ? 1 : 7)
            for (std::size_t length = 1; length <= longest; ++length) {
                // Outside lie wilder values, so that one read too many shows.
                std::vector<std::int16_t> around(offset + length + 1, 32767);
                if (offset > 0) around[offset - 1] = -32768;
                for (std::size_t i = 0; i < length; ++i) around[offset + i] = static_cast<std::int16_t>(i % 7);
                const std::span<std::int16_t> heights(around.data() + offset, length);
                const std::size_t lowAt = length * 5 / 8, highAt = length - 1;
                heights[lowAt] = -500;
                heights[highAt] = 500;
                const std::int16_t lowest = lowAt == highAt ? std::int16_t{0} : std::int16_t{-500};
                const height_range found = form.run(heights.data(), heights.size());
                ASSERT_EQ(found.maximum, 500) << form.name << " length " << length << " offset " << offset;
                if (length > 1) {
                    ASSERT_EQ(found.minimum, lowest) << form.name << " length " << length << " offset " << offset;
                }
            }
}

TEST(FindRange, EqualsTheDefinition)
{
    std::mt19937 random(7);
    std::vector<std::int16_t> heights(1000);
    for (std::int16_t& v : heights) v = static_cast<std::int16_t>(random());
    heights[137] = -32768;
    heights[611] = 32767;
    for (const auto& form : forms_of(&primitives::kernel_table::findRange))
        for (std::size_t length = 0; length <= heights.size(); ++length) {
            const auto part = std::span<const std::int16_t>(heights).first(length);
            ASSERT_EQ(form.run(part.data(), part.size()), primitives::find_range_reference(part))
                << form.name << " length " << length;
        }
}

TEST(FindRange, IsEmptyForNothing)
{
    for (const auto& form : forms_of(&primitives::kernel_table::findRange))
        EXPECT_EQ(form.run(nullptr, 0), (height_range{32767, -32768})) << form.name;
}

} // namespace
