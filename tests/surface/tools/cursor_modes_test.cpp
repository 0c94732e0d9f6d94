// For every mode what a user does with it, by mouse and keys.
#include "fake_world.h"
#include "surface/tools/hit_test.h"

namespace {

using surface::combine_mode;
using surface::cursor_mode;
using points = std::vector<CPoint>;

TEST_F(CursorTest, RectanglesAddUpAndAreCutOff)
{
    choose(cursor_mode::rectangle);
    draw({10, 20}, {4, 5}); // from the upper right to the lower left
    EXPECT_TRUE(state.selectionActive);
    EXPECT_EQ(box(), CRect(4, 5, 11, 21)) << "the last column and row are inside";
    EXPECT_EQ(world.shares, 1);
    EXPECT_FALSE(world.isCaptured);

    draw({20, 5}, {21, 30}, MK_CONTROL);
    EXPECT_EQ(state.region.area(), 7 * 16 + 2 * 26) << "two columns are enough to add";
    EXPECT_EQ(state.combine, combine_mode::replace);
    EXPECT_EQ(state.selection.start(), state.selection.end());

    world.keys = {VK_MENU};
    draw({0, 0}, {30, 9});
    EXPECT_EQ(box(), CRect(4, 10, 22, 31));
    world.keys.clear();

    draw({10, 10}, {13, 12}, MK_SHIFT);
    EXPECT_EQ(box(), CRect(7, 12, 25, 33)) << "moved by the drag itself, 3 to the right and 2 up";
    draw({2, 2}, {3, 35});
    EXPECT_FALSE(state.selectionActive) << "a narrow rectangle of its own clears";
    EXPECT_TRUE(state.region.isEmpty());
    EXPECT_EQ(world.zooms, 4);
}

TEST_F(CursorTest, SubtractingFromNothingLeavesTheRestOfTheImage)
{
    choose(cursor_mode::rectangle);
    world.keys = {VK_MENU};
    draw({0, 0}, {59, 19});
    // The last column and row never stay selected.
    EXPECT_EQ(box(), CRect(0, 20, 59, 39));
    machine.inverseSelection();
    EXPECT_EQ(box(), CRect(-60, -40, 120, 80));
    EXPECT_FALSE(state.region.PtInRegion({10, 25}));
}

TEST_F(CursorTest, AnIsolineSelectsAnIsland)
{
    raise({10, 10, 20, 16});
    choose(cursor_mode::isoline);
    press({30, 30}); // in the flat sea, where all around is as high
    EXPECT_TRUE(state.isoline.empty());
    ASSERT_FALSE(world.notices.empty());
    EXPECT_EQ(world.notices.back(), "No isoline: all samples around are at least as high");
    world.notices.clear();
    drag({15, 15});
    EXPECT_GT(world.waits, 0);
    // Around 10 columns and 6 rows: 2 * (9 + 5) steps, and the start again.
    EXPECT_EQ(state.isoline.size(), 29u);
    release({15, 15});
    EXPECT_TRUE(world.notices.empty());
    EXPECT_TRUE(state.selectionActive);
    // The pixels whose centres lie within the polygon from sample 10, 10 to 19, 15.
    EXPECT_EQ(box(), CRect(10, 10, 19, 15));
    draw({15, 13}, {18, 16}, MK_SHIFT);
    EXPECT_EQ(box(), CRect(13, 13, 22, 18)) << "moved";
    draw({40, 2}, {50, 2});
    EXPECT_FALSE(state.selectionActive);
}

TEST_F(CursorTest, AnIsolineThatSelectsNothingSaysWhy)
{
    for (const int each : {10, 11, 12}) raise({each, each, each + 1, each + 1}); // a ridge aslant, one sample wide
    raise({30, 10, 40, 16});
    choose(cursor_mode::isoline);
    click({10, 10});
    EXPECT_TRUE(state.region.isEmpty());
    ASSERT_FALSE(world.notices.empty());
    EXPECT_EQ(world.notices.back(), "No selection: the isoline encloses no area");
    world.unmeasured = {35, 15};
    click({35, 15});
    EXPECT_FALSE(state.selectionActive);
    EXPECT_TRUE(state.isoline.empty());
    EXPECT_EQ(world.notices.back(), "No isoline: the sample was not measured");
    world.notices.clear();
    click({35, 10}); // of the same island
    EXPECT_TRUE(state.selectionActive);
    EXPECT_TRUE(world.notices.empty());
}

TEST_F(CursorTest, MarksAreSetMovedAndTakenAway)
{
    choose(cursor_mode::marks);
    click({5, 5});
    click({30, 20});
    EXPECT_EQ(state.measure.text, L"Total: 2");
    EXPECT_EQ(state.measure.position, (CPoint{59, 0}));
    draw({5, 5}, {8, 9}, MK_SHIFT);
    EXPECT_EQ(state.marks, points({{8, 9}, {30, 20}}));
    choose(cursor_mode::rectangle); // marks are taken hold of in every mode
    hover({30, 20});
    EXPECT_EQ(world.cursor, 5016);
    click({30, 20});
    EXPECT_EQ(state.marks, points({{8, 9}}));
    EXPECT_EQ(world.hints, std::vector<FakeWorld::sent>({{0x1E, {30, 20}}}));
    EXPECT_EQ(state.measure.text, L"Total: 1");
    click({8, 9});
    EXPECT_FALSE(state.measure.isVisible);
    EXPECT_FALSE(state.selectionActive) << "nothing was selected meanwhile";
}

TEST_F(CursorTest, CurvesAreDrawnBentAndCut)
{
    choose(cursor_mode::curve);
    click({5, 5});
    EXPECT_EQ(state.curves, std::vector<points>({{{5, 5}}}));
    EXPECT_EQ(state.measure.text, L"L=0 nm");
    click({15, 5});
    click({25, 5});
    EXPECT_EQ(state.measure.text, L"L=40 nm");

    draw({20, 5}, {20, 10}); // a press on a segment bends it
    EXPECT_EQ(state.curves[0], points({{5, 5}, {15, 5}, {20, 10}, {25, 5}}));
    draw({20, 10}, {20, 12}, MK_SHIFT);
    EXPECT_EQ(state.curves[0][2], (CPoint{20, 12}));

    click({40, 30}, MK_CONTROL);
    click({50, 30});
    ASSERT_EQ(state.curves.size(), 2u);
    EXPECT_EQ(state.curves[0], points({{40, 30}, {50, 30}})) << "a new curve is the active one";
    hover({15, 5});
    EXPECT_EQ(world.cursor, 5040);
    click({15, 5});
    EXPECT_EQ(state.curves[0].size(), 4u);

    click({20, 12});
    EXPECT_EQ(state.curves[0], points({{5, 5}, {15, 5}, {25, 5}}));
    hover({15, 5}, MK_CONTROL);
    click({15, 5}, MK_CONTROL);
    EXPECT_EQ(state.curves[0], points({{5, 5}})) << "the vertex and all behind it";
    click({5, 5});
    EXPECT_EQ(state.curves, std::vector<points>({{{40, 30}, {50, 30}}})) << "the first vertex takes the curve along";
    EXPECT_FALSE(state.measure.isVisible);
}

TEST_F(CursorTest, ALineProfileFollowsMouseAndKeys)
{
    choose(cursor_mode::lineProfile);
    press({20, 7});
    EXPECT_EQ(world.openedLines, std::vector<points>({{{0, 7}, {59, 7}}}));
    FakeSection line({60, 40}, {{0, 7}, {59, 7}});
    line.line = line.horizontal = true;
    world.line = &line;
    drag({25, 12});
    EXPECT_EQ(line.points, points({{0, 12}, {59, 12}}));
    release({25, 12});
    EXPECT_FALSE(state.selectionActive);
    EXPECT_TRUE(machine.keyDown(VK_PRIOR));
    EXPECT_TRUE(machine.keyDown(VK_DOWN));
    EXPECT_EQ(line.points[0], (CPoint{0, 21}));
    EXPECT_EQ(world.status.back(), (CPoint{0, 21}));
    for (int i = 0; i < 5; ++i) machine.keyDown(VK_PRIOR);
    EXPECT_EQ(line.points, points({{0, 39}, {59, 39}}));
    const int before = line.reloads;
    machine.keyDown(VK_UP);
    EXPECT_EQ(line.reloads, before) << "it stands at the edge already";
}

TEST_F(CursorTest, AColumnProfileSpansTheWindowOnShow)
{
    world.window = {10, 5, 40, 25};
    choose(cursor_mode::columnProfile);
    press({20, 7});
    EXPECT_EQ(world.openedLines, std::vector<points>({{{20, 5}, {20, 24}}}));
    FakeSection line({60, 40}, {{20, 5}, {20, 24}});
    line.line = true;
    world.line = &line;
    drag({22, 7});
    EXPECT_EQ(line.points, points({{22, 0}, {22, 39}}));
}

TEST_F(CursorTest, AnObjectIsTracedAlongItsRidge)
{
    // A fibre goes right along row 10 and then up along column 40.
    raise({5, 10, 41, 11});
    raise({40, 10, 41, 31});
    choose(cursor_mode::lengthyObject);
    press({5, 10});
    EXPECT_EQ(state.lengthy.path, points({{5, 10}}));
    drag({50, 35});
    drag({40, 30});
    release({40, 30});
    ASSERT_FALSE(state.lengthy.path.empty());
    EXPECT_EQ(state.lengthy.path.back(), (CPoint{40, 30}));
    for (const CPoint& at : state.lengthy.path) EXPECT_EQ(world.sample(at.x, at.y), 100) << at.x << ',' << at.y;
    // 34 columns, one step around the corner, 19 rows.
    EXPECT_EQ(state.lengthy.path.size(), 1u + 34u + 1u + 19u);
    const double corner = std::hypot(2.0, 3.0), length = 34 * 2 + corner + 19 * 3;
    EXPECT_EQ(state.measure.text, L"L=128.606 nm") << length;
    EXPECT_FALSE(state.selectionActive);
    ASSERT_EQ(world.objects.size(), 1u);
    EXPECT_EQ(world.objects[0], state.lengthy.path);

    world.options["lengthy_object.simplify.r"] = 1.5;
    raise({40, 30, 58, 31});
    click({57, 30}, MK_CONTROL); // goes on from the end
    EXPECT_EQ(state.lengthy.path.front(), (CPoint{5, 10}));
    EXPECT_EQ(state.lengthy.path.back(), (CPoint{57, 30}));
    EXPECT_EQ(state.lengthy.corners.size(), 4u) << "two bends";
    click({2, 2});
    EXPECT_EQ(state.lengthy.path, points({{2, 2}})) << "without Ctrl another object begins";
}

TEST_F(CursorTest, BrushesOfFeaturesAreToldOfEveryStroke)
{
    choose(cursor_mode::includeFeatures);
    EXPECT_EQ(world.cursor, 5046);
    draw({4, 4}, {6, 7});
    choose(cursor_mode::excludeFeatures);
    draw({8, 8}, {9, 9});
    EXPECT_EQ(world.features,
              std::vector<FakeWorld::sent>(
                  {{0x1F, {4, 4}}, {0x20, {6, 7}}, {0x21, {6, 7}}, {0x22, {8, 8}}, {0x23, {9, 9}}, {0x24, {9, 9}}}));
    EXPECT_FALSE(state.selectionActive);
    machine.setMode(99);
    EXPECT_EQ(state.mode, cursor_mode::excludeFeatures);
}

TEST_F(CursorTest, ADragRepaintsOnlyWhereItIs)
{
    choose(cursor_mode::rectangle);
    press({5, 5});
    drag({8, 8});
    world.repainted = CRgn();
    drag({9, 9});
    // Up to 5 samples of 10 pixels a side, and the handles: far from the 240000 pixels of the picture.
    EXPECT_LE(world.repainted.area(), 60 * 60);
    EXPECT_TRUE(world.repainted.PtInRegion(world.client({9, 9})));
    EXPECT_TRUE(world.repainted.PtInRegion(world.client({5, 5})));
    world.repainted = CRgn();
    release({9, 9});
    EXPECT_EQ(world.repainted.GetRgnBox(), CRect(100, 50, 700, 450)) << "all outside is hatched now";
}

TEST_F(CursorTest, AnImageWithoutSamplesOnlyCapturesTheMouse)
{
    world.size = {0, 0};
    machine.press(MK_LBUTTON, {200, 200});
    EXPECT_TRUE(world.isCaptured);
    EXPECT_FALSE(state.tracking);
    machine.move(MK_LBUTTON, {210, 210});
    machine.release(0, {210, 210});
    EXPECT_FALSE(world.isCaptured);
}

TEST_F(CursorTest, ADragThatLosesTheMouseEnds)
{
    choose(cursor_mode::distance);
    press({5, 5});
    drag({20, 20});
    machine.captureLost();
    EXPECT_FALSE(state.tracking);
    EXPECT_FALSE(state.selectionActive);
    release({30, 30});
    EXPECT_FALSE(state.measure.isVisible);
}

} // namespace
