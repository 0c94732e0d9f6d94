// What the mouse meets at the limits: snapping, flat ground, images that change in the middle of a drag.
#include "fake_world.h"

namespace {

using surface::cursor_mode;
using surface::hot_action;
using points = std::vector<CPoint>;

TEST_F(CursorTest, ItemsAreHitWhereASnappedPressActs)
{
    world.sample(20, 20) = 50;
    world.options["cursor_snap"] = 1;
    world.options["cursor_snap.radius"] = 5;
    choose(cursor_mode::marks);
    click({18, 18});
    ASSERT_EQ(state.marks, points({{20, 20}}));
    hover({17, 19});
    EXPECT_EQ(state.hotAction, hot_action::deleteMark) << "the press will act on the summit, where the mark is";
    click({17, 19});
    EXPECT_TRUE(state.marks.empty());
    state.marks = {{17, 19}};
    hover({17, 19});
    EXPECT_EQ(state.hotAction, hot_action::none) << "a press acts 3 columns away from this one";
    world.keys = {VK_SHIFT};
    state.marks = {{20, 20}};
    machine.keyDown(VK_SHIFT);
    EXPECT_EQ(state.hotAction, hot_action::moveMark) << "by key as by mouse";
}

TEST_F(CursorTest, SnappingStaysInsideNarrowImages)
{
    struct {
        CSize size;
        CPoint summit, at;
    } const cases[] = {{{60, 1}, {7, 0}, {5, 0}}, {{1, 40}, {0, 7}, {0, 5}}, {{1, 1}, {0, 0}, {0, 0}}};
    world.options["cursor_snap"] = 1;
    world.options["cursor_snap.radius"] = 10;
    choose(cursor_mode::marks);
    for (const auto& each : cases) {
        world.size = each.size;
        world.window = CRect({0, 0}, each.size);
        world.samples.assign(static_cast<std::size_t>(each.size.cx * each.size.cy), 0);
        world.sample(each.summit.x, each.summit.y) = 9;
        state.marks.clear();
        click(each.at);
        EXPECT_EQ(state.marks, points({each.summit})) << each.size.cx << " by " << each.size.cy;
    }
}

TEST_F(CursorTest, AddingAContourThatIsNoneToNothingSelectsNothing)
{
    choose(cursor_mode::isoline);
    click({30, 20}, MK_CONTROL); // all is level: there is no contour
    EXPECT_FALSE(state.selectionActive) << "or the whole picture would be hatched as outside";
    raise({10, 10, 20, 16});
    click({15, 15}); // on its upper edge
    ASSERT_TRUE(state.selectionActive);
    click({30, 30}, MK_CONTROL);
    EXPECT_TRUE(state.selectionActive) << "what was selected stays";
    EXPECT_EQ(box(), CRect(10, 10, 19, 15));
}

TEST_F(CursorTest, AModeChosenByKeyEndsTheDrag)
{
    choose(cursor_mode::rectangle);
    press({5, 5}, MK_CONTROL);
    drag({20, 20}, MK_CONTROL);
    choose(cursor_mode::curve);
    EXPECT_FALSE(state.tracking);
    EXPECT_FALSE(world.isCaptured);
    release({20, 20});
    EXPECT_TRUE(state.curves.empty()) << "the press was no vertex";
    EXPECT_FALSE(state.selectionActive);
}

TEST_F(CursorTest, MarksThatAreClearedEndTheirOwnDragOnly)
{
    FakeSection section({60, 40}, {{40, 30}, {50, 35}});
    world.shown = {&section};
    state.marks = {{5, 5}, {10, 10}};
    press({40, 30});
    machine.removeMarks(); // what follows a section may clear them while it is dragged
    drag({45, 20});
    EXPECT_EQ(section.points[0], (CPoint{45, 20}));
    release({45, 20});
    EXPECT_FALSE(state.selectionActive) << "no region was begun";
    state.marks = {{5, 5}};
    press({5, 5}, MK_SHIFT);
    machine.removeMarks();
    EXPECT_FALSE(state.tracking);
    state.curves = {{{20, 5}, {30, 5}}};
    press({25, 5});
    machine.removeCurves();
    drag({27, 9});
    release({27, 9});
    EXPECT_TRUE(state.curves.empty());
    EXPECT_FALSE(state.selectionActive);
}

TEST_F(CursorTest, AnImageWithoutStepsIsMeasuredAsNothing)
{
    world.x = world.y = VLAxis(0, 0, "nm");
    choose(cursor_mode::distance);
    draw({10, 10}, {16, 18});
    EXPECT_EQ(state.measure.text, L"L=0 nm");
    choose(cursor_mode::angle);
    draw({10, 10}, {20, 10});
    draw({10, 10}, {10, 20});
    EXPECT_EQ(state.measure.text, L"Angle=0.0 deg");
    // All points of a drawing fall on sample 0, 0.
    const double coordinates[] = {1e300, -1e300, 5, 5};
    const VLPluginDecoration drawing{DECORATION_POLYLINE, 2, 0, 0, nullptr, "fibre", const_cast<double*>(coordinates)};
    world.drawings.set("fibres", &drawing, 1, DEC_IMAGE_SURFACE);
    const_cast<document::decoration&>(world.drawings.all().begin()->second.members[0]).state = DECORATION_HIT_TESTABLE;
    hover({0, 0});
    EXPECT_EQ(state.hotAction, hot_action::decoration);
    hover({30, 20});
    EXPECT_EQ(state.hotAction, hot_action::none);
}

/// Every mode and every kind of drag, while the image shrinks to one sample or to none before the button goes up.
TEST_F(CursorTest, DragsSurviveAnImageThatShrinks)
{
    const CPoint places[] = {{5, 5}, {20, 30}, {50, 30}, {40, 30}, {45, 32}}; // nothing, curve, mark, section, its line
    for (int mode = 0; mode <= 12; ++mode)
        for (const CPoint from : places)
            for (const unsigned flags : {0u, unsigned(MK_SHIFT), unsigned(MK_SHIFT | MK_CONTROL)})
                for (const CSize smaller : {CSize{1, 1}, CSize{0, 0}})
                    for (const bool isTold : {true, false}) {
                        FakeSection section({60, 40}, {{40, 30}, {50, 35}});
                        world.shown = {&section};
                        world.size = {60, 40};
                        world.window = {0, 0, 60, 40};
                        world.samples.assign(60 * 40, 0);
                        raise({2, 2, 9, 9});
                        choose(static_cast<cursor_mode>(mode));
                        state.marks = {{50, 30}};
                        state.curves = {{{20, 30}, {30, 36}}};
                        press(from, flags);
                        drag({7, 8}, flags);
                        world.size = smaller;
                        world.window = CRect({0, 0}, smaller);
                        world.samples.resize(static_cast<std::size_t>(smaller.cx * smaller.cy));
                        if (isTold) machine.endDrag();
                        EXPECT_EQ(world.isCaptured, !isTold);
                        const auto marks = state.marks;
                        const auto curves = state.curves;
                        const points vertices = section.points;
                        drag({0, 0}, flags);
                        release({0, 0}, flags);
                        EXPECT_FALSE(state.tracking);
                        EXPECT_FALSE(world.isCaptured);
                        if (!isTold) continue;
                        EXPECT_EQ(state.marks, marks) << mode;
                        EXPECT_EQ(state.curves, curves) << mode;
                        EXPECT_EQ(section.points, vertices) << mode;
                        world.shown.clear();
                    }
}

} // namespace
