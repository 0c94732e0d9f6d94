#include "view/scale/ColorTable.h"

#include <gtest/gtest.h>

namespace {

/// Square root cut to an integer, without floating point.
int whole_root(int n)
{
    int root = 0;
    while ((root + 1) * (root + 1) <= n) ++root;
    return root;
}

TEST(ColorTable, EveryEntryFollowsItsCurve)
{
    const color_table gray = view::built_in_palette(1), blue = view::built_in_palette(2),
                      brown = view::built_in_palette(3), green = view::built_in_palette(4),
                      first = view::built_in_palette(6), second = view::built_in_palette(7);
    for (int i = 0; i < 256; ++i) {
        const auto v = static_cast<unsigned>(i);
        // 256 - sqrt(n) cut to an integer is 256 less the next whole number above the root.
        const auto late = static_cast<unsigned>(255 - whole_root(65535 - i * i - 1));
        const auto early = static_cast<unsigned>(whole_root(65535 - (i - 255) * (i - 255)));
        ASSERT_EQ(gray[v], view::color_of(v, v, v));
        ASSERT_EQ(blue[v], view::color_of(late, v, early)) << i;
        ASSERT_EQ(brown[v], view::color_of(early, v, late)) << i;
        ASSERT_EQ(green[v], view::color_of(v / 2, v, v / 2));
    }
    int level = 0, step = 1; // up to 255 and down again; the last tooth is cut
    for (const colorEntry entry : view::built_in_palette(5)) {
        ASSERT_EQ(entry, view::color_of(static_cast<unsigned>(level), static_cast<unsigned>(level),
                                        static_cast<unsigned>(level)));
        level += step;
        if (level == 255 || level == 0) step = -step;
    }
    for (std::size_t i = 0; i < first.size(); ++i) ASSERT_EQ(first[i] + second[i], 0xffffffu) << i;
    for (const auto& [at, color] : {std::pair{0u, view::color_of(0, 0, 0)},
                                    {256u, view::color_of(0, 128, 255)},
                                    {512u, view::color_of(128, 255, 127)},
                                    {768u, view::color_of(255, 0, 0)}})
        EXPECT_EQ(first[at], color) << at;
}

TEST(ColorTable, PositionsAreTruncatedAndReadBackwards)
{
    color_table table(11);
    for (unsigned i = 0; i < 11; ++i) table[i] = 100 + i;
    EXPECT_EQ(view::color_at(table, false, 0, 0), 100u);
    EXPECT_EQ(view::color_at(table, true, 0, 0), 100u);
    EXPECT_EQ(view::color_at(table, false, 2, 3), 106u); // 2 * 10 / 3
    EXPECT_EQ(view::color_at(table, false, 3, 3), 110u);
    EXPECT_EQ(view::color_at(table, true, 0, 3), 110u);
    EXPECT_EQ(view::color_at(table, true, 1, 3), 106u);
}

TEST(ColorTable, GammaBendsThePositionAndRoundsHalvesUp)
{
    color_table table(11);
    for (unsigned i = 0; i < 11; ++i) table[i] = 100 + i;
    EXPECT_EQ(view::color_at(table, false, 1, 2, 1.0), 105u);
    EXPECT_EQ(view::color_at(table, false, 1, 2, 2.0), 103u); // 0.25 * 10 = 2.5
    EXPECT_EQ(view::color_at(table, true, 1, 4, 2.0), 106u);  // 0.5625 * 10 = 5.6
    EXPECT_EQ(view::color_at(table, false, 0, 0, 2.0), 100u);
}

} // namespace
