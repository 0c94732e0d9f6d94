#include "view/axes/view_geometry.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(ViewGeometry, MapsSamplesToTheirCentresAndBack)
{
    const view::view_geometry ten{CRect(0, 0, 100, 100), CRect(0, 0, 10, 10)};
    EXPECT_EQ(ten.xToClient(0), 5);
    EXPECT_EQ(ten.yToClient(0), 95) << "source y grows upwards";
    EXPECT_EQ(ten.xToSource(99), 9);
    EXPECT_EQ(ten.yToSource(0), 9);
    EXPECT_EQ(ten.xToClient(-1), -5) << "not clamped";
    EXPECT_EQ(ten.xToSource(-50), 0);
    EXPECT_EQ(ten.yToSource(500), 0);

    const view::view_geometry part{CRect(10, 20, 310, 220), CRect(100, 50, 130, 70)};
    EXPECT_EQ(part.xToClient(115), 165);
    EXPECT_EQ(part.yToClient(50), 215) << "19.5 of 20 rows, 200 pixels, from 20";
    for (int x = 100; x < 130; ++x) EXPECT_EQ(part.xToSource(part.xToClient(x)), x);
    for (int y = 50; y < 70; ++y) EXPECT_EQ(part.yToSource(part.yToClient(y)), y);

    const view::view_geometry empty{CRect(3, 4, 3, 4), CRect(7, 8, 7, 8)};
    EXPECT_EQ(empty.xToClient(1), 3);
    EXPECT_EQ(empty.yToSource(1), 8);
}

TEST(ViewGeometry, APixelLeadsToTheSampleThatItShows)
{
    for (const int zoom : {1, 2, 3, 4, 7}) {
        const view::view_geometry whole{CRect(50, 20, 50 + 13 * zoom, 20 + 9 * zoom), CRect(0, 0, 13, 9)};
        for (int pixel = 0; pixel < 13 * zoom; ++pixel) EXPECT_EQ(whole.xToSource(50 + pixel), pixel / zoom) << zoom;
        for (int pixel = 0; pixel < 9 * zoom; ++pixel) EXPECT_EQ(whole.yToSource(20 + pixel), 8 - pixel / zoom) << zoom;
        for (int x = 0; x < 13; ++x) EXPECT_EQ(whole.xToSource(whole.xToClient(x)), x) << zoom;
        for (int y = 0; y < 9; ++y) EXPECT_EQ(whole.yToSource(whole.yToClient(y)), y) << zoom;
    }
}

TEST(BoundedZoom, StopsAtTheEndsAndNeverTurnsBack)
{
    constexpr CSize largest{3840, 2160};
    const std::tuple<CSize, double, double> cases[] = {
        {{512, 512}, 1.2, 1.2},          // room enough
        {{2000, 2000}, 1.2, 1.08},       // up to 2160 rows
        {{3840, 100}, 1.2, 1.0},         // as wide as it may be
        {{9000, 9000}, 1.2, 1.0},        // beyond it stays
        {{512, 512}, 1 / 1.2, 1 / 1.2},  // room enough
        {{200, 40}, 1 / 1.2, 1 / 1.2},   // 33.3 rows are left
        {{200, 36}, 1 / 1.2, 32.0 / 36}, // down to 32 rows
        {{512, 4}, 1 / 1.2, 1.0},        // a line of samples stays
        {{512, 4}, 1.2, 1.2},            // and may grow
        {{0, 0}, 1.2, 1.2},              // nothing to compare
    };
    for (const auto& [display, factor, bounded] : cases)
        EXPECT_DOUBLE_EQ(view::bounded_zoom(factor, display, 32, largest), bounded) << display.cx << " " << display.cy;
    EXPECT_EQ(view::largest_display({CRect(0, 0, 1920, 1080), CRect(1920, -100, 3200, 924)}), (CSize{6400, 2360}))
        << "twice 3200 by 1180";
    EXPECT_GT(view::largest_display({}).cx, 1 << 30);
}

TEST(ShrunkInto, KeepsWhatFitsAndTheShapeOfTheRest)
{
    const std::tuple<CSize, CSize> cases[] = {
        {{300, 200}, {300, 200}}, {{3000, 200}, {1600, 107}}, {{200, 9000}, {20, 900}}, {{90000, 3}, {1600, 1}}};
    for (const auto& [size, shrunk] : cases) EXPECT_EQ(view::shrunk_into(size, {1600, 900}), shrunk) << size.cx;
    EXPECT_EQ(view::shrunk_into({40, 20}, {-5, 10}), (CSize{1, 1})) << "no room at all";
}

TEST(BestSize, FillsTheBoxWithItsShape)
{
    const std::tuple<CSize, CSize> cases[] = {
        {{256, 256}, {512, 512}}, {{1024, 512}, {512, 256}}, {{100, 400}, {128, 512}}, {{512, 512}, {512, 512}},
        {{512, 100}, {512, 100}}, {{5000, 1}, {512, 1}},     {{3, 2}, {512, 341}},     {{0, 5}, {0, 5}},
    };
    for (const auto& [asked, best] : cases) EXPECT_EQ(view::best_size(asked, {512, 512}), best) << asked.cx;
    EXPECT_EQ(view::best_size({200, 100}, {400, 100}), (CSize{200, 100})) << "r is exactly 1";
    EXPECT_EQ(view::repaired_content({0, 40}), (CSize{1, 1}));
    EXPECT_EQ(view::repaired_content({-4, 10}), (CSize{1, -2})) << "10 / -4 is -2.5, and halves go up";
    EXPECT_EQ(view::repaired_content({5, -3}), (CSize{5, -3}));
    constexpr int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();
    EXPECT_EQ(view::repaired_content({most, least}), (CSize{1 << 24, -(1 << 24)})) << "margins are added to it";
    EXPECT_EQ(view::repaired_content({-1, least}), (CSize{1, 1 << 24}));
}

TEST(FullScreenPlace, FollowsTheMode)
{
    const std::vector<CRect> monitors = {CRect(0, 0, 1000, 800), CRect(1000, 100, 2000, 700), CRect(-500, 0, 0, 400)};
    const CRect main(900, 200, 1500, 600);
    EXPECT_EQ(view::place_full_screen(monitors, 0, 1, main).target, monitors[1]);
    EXPECT_EQ(view::place_full_screen(monitors, 0, 7, main).target, monitors[0]);
    EXPECT_EQ(view::place_full_screen(monitors, 1, 0, main).target, monitors[1]);
    EXPECT_EQ(view::place_full_screen(monitors, 1, 0, main).pointerSpot, (CPoint{1500, 400}));
    EXPECT_EQ(view::place_full_screen(monitors, 2, 2, main).target, CRect(-500, 0, 2000, 800));
    EXPECT_EQ(view::place_full_screen(monitors, 2, 2, main).pointerSpot, (CPoint{-250, 200}));
    EXPECT_EQ(view::place_full_screen({CRect(50, 60, 100, 100)}, 2, 0, main).target, CRect(0, 0, 100, 100));
}

} // namespace
