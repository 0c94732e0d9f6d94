// Steps of terraces: where they are found, how they are followed, what becomes of them.
#include "support/streams.h"
#include "surface/figures/measure/step_results.h"
#include "surface/figures/measure/step_search.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace {

using surface::steps_direction;

/// Terraces that end in edges: heights rise by `rise` to the right of each edge.
struct terraces {
    int width, height;
    std::vector<std::int16_t> samples;

    terraces(int width_, int height_)
        : width(width_), height(height_), samples(static_cast<std::size_t>(width_ * height_))
    {
    }
    template <class ColumnOfRow>
    void addEdge(ColumnOfRow columnOfRow, int rise, int firstRow, int lastRow)
    {
        for (int y = firstRow; y <= lastRow; ++y)
            for (int x = columnOfRow(y); x < width; ++x) at(x, y) = static_cast<std::int16_t>(at(x, y) + rise);
    }
    std::int16_t& at(int x, int y) { return samples[static_cast<std::size_t>(y * width + x)]; }
    surface::sample_frame frame() const { return {samples, width, height}; }
};

surface::step_settings settings_of(int border, int rows, int gap,
                                   steps_direction direction = steps_direction::rightToLeft)
{
    surface::step_settings made;
    made.direction = direction;
    made.leftBorder = border;
    made.searchRows = rows;
    made.gap = gap;
    return made;
}

TEST(StepSearch, FindsTheEdgesOfTerraces)
{
    terraces of(120, 60);
    const auto straight = [](int) { return 30; };
    const auto slanted = [](int y) { return 70 + y / 3; };
    of.addEdge(straight, 300, 0, 59);
    of.addEdge(slanted, 500, 0, 59);
    const auto steps = surface::find_steps(of.frame(), settings_of(5, 10, 2));
    ASSERT_EQ(steps.size(), 2u);
    for (int y = 0; y < 60; ++y) {
        // The slope at a sample is that between its neighbours: it is as steep on either side of an edge, and the
        // first counts.
        const auto row = static_cast<std::size_t>(y);
        EXPECT_EQ(steps[0][row], (surface::step_point{y, 29}));
        EXPECT_EQ(steps[1][row], (surface::step_point{y, slanted(y) - 1}));
    }
    EXPECT_TRUE(surface::find_steps(of.frame(), settings_of(5, 10, 2, steps_direction::leftToRight)).empty())
        << "all of them rise";
}

TEST(StepSearch, TakesNoBorderOfPointsNotMeasuredForAnEdge)
{
    terraces of(60, 30);
    of.addEdge([](int) { return 40; }, 300, 0, 29);
    std::vector<primitives::sample_run> voids;
    for (int y = 0; y < 30; ++y) {
        voids.push_back({static_cast<std::size_t>(y * 60 + 10), 5});
        for (int x = 10; x < 15; ++x) of.at(x, y) = -32768;
    }
    const surface::sample_frame frame{of.samples, of.width, of.height, voids};
    const auto steps = surface::find_steps(frame, settings_of(5, 10, 2));
    ASSERT_EQ(steps.size(), 1u) << "the heights rise at the right border of the hole, too";
    EXPECT_EQ(steps[0].front(), (surface::step_point{0, 39}));
}

TEST(StepSearch, MovesAndMirrorsWithTheImage)
{
    std::mt19937 random(3);
    std::vector<int> columns(50);
    for (int i = 0, at = 40; i < 50; ++i)
        columns[static_cast<std::size_t>(i)] = at += static_cast<int>(random() % 5) - 2;
    const auto shifted = [&columns](int by) {
        return [&columns, by](int y) { return columns[static_cast<std::size_t>(y)] + by; };
    };
    terraces still(150, 50), moved(150, 50), mirrored(150, 50);
    still.addEdge(shifted(0), 200, 0, 49);
    moved.addEdge(shifted(37), 200, 0, 49);
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 150; ++x) mirrored.at(x, y) = still.at(149 - x, y);
    const auto a = surface::find_steps(still.frame(), settings_of(12, 8, 1));
    const auto b = surface::find_steps(moved.frame(), settings_of(12, 8, 1));
    const auto c = surface::find_steps(mirrored.frame(), settings_of(12, 8, 1, steps_direction::leftToRight));
    ASSERT_TRUE(a.size() == 1 && b.size() == 1 && c.size() == 1);
    for (std::size_t y = 0; y < 50; ++y) {
        EXPECT_EQ(b[0][y], (surface::step_point{a[0][y].row, a[0][y].column + 37}));
        // Of the two columns beside an edge the first counts, which is the other one in a mirror.
        EXPECT_EQ(c[0][y], (surface::step_point{a[0][y].row, 149 - a[0][y].column - 1}));
    }
}

TEST(StepSearch, BridgesGapsUpToTheLimit)
{
    for (const int missing : {1, 3, 4}) {
        terraces of(60, 50);
        of.addEdge([](int) { return 20; }, 400, 0, 19);
        of.addEdge([](int) { return 22; }, 400, 20 + missing, 49);
        const auto steps = surface::find_steps(of.frame(), settings_of(6, 10, 3));
        ASSERT_EQ(steps.size(), 1u);
        EXPECT_EQ(steps[0].size(), missing <= 3 ? 50u : 20u) << missing;
        if (missing != 3) continue;
        EXPECT_EQ(steps[0][20], (surface::step_point{20, 20})) << "19 + round(2 / 4), halves up";
        EXPECT_EQ(steps[0][21], (surface::step_point{21, 20}));
        EXPECT_EQ(steps[0][22], (surface::step_point{22, 21}));
    }
}

TEST(StepSearch, HonoursRowsAndLength)
{
    terraces of(60, 40);
    of.addEdge([](int) { return 25; }, 400, 5, 30);
    surface::step_settings settings = settings_of(4, 10, 1);
    const auto rows = [&] {
        const auto steps = surface::find_steps(of.frame(), settings);
        return steps.empty() ? std::pair{-1, -1} : std::pair{steps[0].front().row, steps[0].back().row};
    };
    EXPECT_EQ(rows(), std::pair(5, 30));
    settings.startRow = 8;
    settings.endRow = 12;
    EXPECT_EQ(rows(), std::pair(8, 27)) << "the end row counts from the end";
    settings.searchRows = 19;
    EXPECT_EQ(rows(), std::pair(8, 27)) << "27 - 8 is 19";
    settings.searchRows = 20;
    EXPECT_EQ(rows(), std::pair(-1, -1));
    settings = settings_of(4, 5, 1);
    EXPECT_EQ(rows(), std::pair(-1, -1)) << "it begins behind the first five rows";
}

/// The window by window definition, with the jumps from one to the next.
std::vector<std::int32_t> windowed(const std::vector<std::int32_t>& values, std::int32_t floor, int reach)
{
    std::vector<std::int32_t> padded(values.size() + 2 * static_cast<std::size_t>(reach), floor), found;
    for (std::size_t i = 0; i < values.size(); ++i)
        padded[i + static_cast<std::size_t>(reach)] = std::max(values[i], floor);
    for (int i = 0; i < static_cast<int>(values.size());) {
        const auto window = padded.begin() + i;
        const int j = static_cast<int>(std::max_element(window, window + 2 * reach + 1) - window);
        if (j == reach) found.push_back(i);
        i += j > reach ? j - reach : j + 1;
    }
    return found;
}

TEST(StepSearch, PeaksAreThoseOfSlidingWindows)
{
    std::mt19937 random(8);
    for (int round = 0; round < 2000; ++round) {
        std::vector<std::int32_t> values(random() % 40), found;
        for (std::int32_t& each : values) each = static_cast<std::int32_t>(random() % (round % 2 == 0 ? 4 : 100));
        const int reach = static_cast<int>(random() % 8);
        const std::int32_t floor = static_cast<std::int32_t>(random() % 3) + 1;
        surface::find_first_maxima(values, floor, reach, found);
        ASSERT_EQ(found, windowed(values, floor, reach)) << round;
    }
}

TEST(StepResults, AreImagesOfColumnsOverRows)
{
    CStorageDoc document;
    const SPMDataStream source = test_support::made_stream(
        "Topo", {{20, VLAxis(100, 2, "nm")}, {10, VLAxis(50, 3, "nm")}}, {}, [](unsigned) { return 0; });
    SPMDataStream old = source;
    old.set_name("step7");
    const SPMDataStream streams[] = {old, source, old};
    document.AddNewImages(streams, 3);

    surface::remove_step_images(document);
    ASSERT_EQ(document.getImagesNumber(), 1u);
    const std::deque<surface::surface_step> steps = {{{4, 7}, {5, 8}}, {{0, 1}}};
    surface::step_settings settings = settings_of(5, 2, 3);
    EXPECT_EQ(surface::add_step_images(document, 0, steps, settings), 2u);
    ASSERT_EQ(document.getImagesNumber(), 3u);
    const SPMDataStream& made = document.getImage(1);
    EXPECT_STREQ(document.getImage(2).get_name(), "step1");
    const auto* const values = static_cast<const short*>(made.array_data());
    EXPECT_EQ(values[0], 12) << "20 - 7 - 1";
    EXPECT_EQ(values[1], 11);
    EXPECT_EQ(made.values.get_axis(0), VLAxis(100, 2, "nm"));
    EXPECT_EQ(made.values.get_axis(1), VLAxis(100, 1, "line"));
    ASSERT_EQ(made.get_dimension(0).length, 2u);
    EXPECT_EQ(made.get_dimension(0).get_axis(0), VLAxis(12, 3, "nm"));
    EXPECT_EQ(made.get_dimension(0).get_axis(1), VLAxis(4, 1, "line"));
    EXPECT_STREQ(document.getString("stepsearch.leftBorder", 1), "11") << "5 to either side of the middle";
    EXPECT_STREQ(document.getString("stepsearch.start_row", 1), "1") << "rows count from 1";
    EXPECT_STREQ(document.getString("stepsearch.end_row", 1), "10");
    EXPECT_STREQ(document.getString("stepsearch.invert", 1), "Right to Left");
    const auto forward = surface::make_step_stream(steps[0], 3, steps_direction::leftToRight, 20, {}, {});
    EXPECT_EQ(static_cast<const short*>(forward.array_data())[0], 7);
    surface::step_mask mask(steps, {20, 10});
    int set = 0;
    for (const unsigned char each : mask.bytes()) set += each;
    EXPECT_EQ(set, 3);
    EXPECT_EQ(mask.bytes()[4 * 20 + 7], 1);
    const VLPluginDecoration record = mask.record(document.getAxis(0, 0, 0), document.getAxis(0, 0, 1));
    const auto& bitmap = *static_cast<const decoration_bitmap*>(record.data);
    EXPECT_EQ((std::array{bitmap.x0, bitmap.y0, bitmap.x1, bitmap.y1}), (std::array{100.0, 50.0, 140.0, 80.0}));
    EXPECT_STREQ(record.name, "steps_mask");
}

} // namespace
