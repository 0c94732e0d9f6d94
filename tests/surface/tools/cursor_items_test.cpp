// What the cursor takes hold of: the order of the hit test, sections, volumes, drawings, panning, snapping.
#include "fake_world.h"
#include "surface/figures/measure/snapping.h"
#include "surface/tools/hit_test.h"
#include "surface/tools/hot/hot_tools.h"

namespace {

using surface::cursor_mode;
using surface::hot_action;
using points = std::vector<CPoint>;

TEST(HitTest, SegmentsEndAtTheirBox)
{
    struct {
        CPoint from, to, at;
        int reach;
        bool isHit;
    } const cases[] = {{{0, 0}, {10, 10}, {5, 5}, 0, true},
                       {{0, 0}, {10, 10}, {5, 6}, 0, false},
                       {{0, 0}, {10, 10}, {5, 6}, 1, true},
                       {{0, 0}, {10, 10}, {11, 11}, 5, false},
                       {{10, 10}, {0, 0}, {10, 10}, 0, true},
                       {{0, 5}, {10, 5}, {5, 6}, 3, false},
                       {{3, 3}, {3, 3}, {3, 3}, 0, true},
                       {{3, 3}, {3, 3}, {4, 3}, 5, false},
                       {{0, 0}, {30000, 40000}, {15000, 20000}, 0, true}};
    for (const auto& each : cases)
        EXPECT_EQ(surface::is_segment_hit(each.from, each.to, each.at, each.reach), each.isHit)
            << each.at.x << ',' << each.at.y << " within " << each.reach;
}

TEST(Snapping, TiesGoAwayFromTheOriginOfTheImage)
{
    std::vector<std::int16_t> samples(20 * 20);
    const surface::sample_frame frame{samples, 20, 20};
    std::optional<CPoint> hole;
    const auto snapped = [&](CPoint at, surface::snap_mode mode, int radius) {
        surface::sample_frame shown = frame;
        const std::vector<primitives::sample_run> runs(hole ? 1 : 0, {hole ? frame.index(*hole) : 0, 1});
        shown.unmeasured = runs;
        return surface::snapped_point(shown, at, mode, radius);
    };
    using enum surface::snap_mode;
    EXPECT_EQ(snapped({10, 10}, toMaximum, 3), (CPoint{12, 12})) << "the far column and row do not count";
    EXPECT_EQ(snapped({18, 18}, toMinimum, 3), (CPoint{19, 19}));
    samples[7 * 20 + 8] = 5;
    samples[11 * 20 + 9] = 5;
    EXPECT_EQ(snapped({10, 10}, toMaximum, 3), (CPoint{9, 11}));
    EXPECT_EQ(snapped({9, 9}, toMaximum, 2), (CPoint{8, 7})) << "row 11 is out of reach";
    samples[13 * 20 + 10] = 9;
    EXPECT_EQ(snapped({10, 10}, toMaximum, 3), (CPoint{9, 11})) << "row 13 is the far edge";
    EXPECT_EQ(snapped({10, 10}, off, 3), (CPoint{10, 10}));
    samples[0] = -5;
    EXPECT_EQ(snapped({2, 2}, toMinimum, 1 << 30), (CPoint{0, 0}));
    hole = {0, 0};
    EXPECT_EQ(snapped({2, 2}, toMinimum, 3), (CPoint{4, 4})) << "what was not measured is no minimum";
    EXPECT_EQ(snapped({0, 0}, toMinimum, 2), (CPoint{1, 1})) << "nor does the cursor stay on it";
}

TEST_F(CursorTest, WhatLiesAboveIsHitFirst)
{
    const double coordinates[] = {10, 15, 60, 60}; // nm: samples 5, 5 and 30, 20
    const VLPluginDecoration drawing{DECORATION_POLYLINE, 2, 0, 0, nullptr, "fibre", const_cast<double*>(coordinates)};
    world.drawings.set("fibres", &drawing, 1, DEC_IMAGE_SURFACE);
    FakeSection section({120, 80}, {{10, 10}, {100, 10}});
    world.shown = {&section};
    world.volume = surface::volume_mark{&section.view, {7, 5}, 0.0, 0.0};
    state.marks = {{5, 5}};
    state.curves = {{{5, 5}, {20, 5}}};
    const auto found = [&](CPoint at, unsigned flags = 0) {
        hover(at, flags);
        return state.hotAction;
    };
    EXPECT_EQ(found({5, 5}), hot_action::deleteMark) << "the drawing is not to be hit";
    const_cast<document::decoration&>(world.drawings.all().begin()->second.members[0]).state = DECORATION_HIT_TESTABLE;
    EXPECT_EQ(found({5, 5}), hot_action::decoration);
    click({5, 5});
    EXPECT_EQ(world.toggled.size(), 1u);
    world.drawings.clear();
    EXPECT_EQ(found({5, 5}, MK_SHIFT), hot_action::moveMark);
    state.marks.clear();
    EXPECT_EQ(found({5, 5}, MK_SHIFT), hot_action::moveVertex);
    EXPECT_EQ(found({5, 5}), hot_action::deleteVertex);
    EXPECT_EQ(found({12, 5}), hot_action::insertVertex);
    state.curves.clear();
    EXPECT_EQ(found({5, 5}), hot_action::sectionVertex) << "half of 10, 10 on an image of half the size";
    EXPECT_EQ(found({50, 10}), hot_action::moveSection) << "segments are taken unscaled";
    EXPECT_EQ(found({0, 0}), hot_action::volumeMark);
    EXPECT_EQ(found({30, 30}), hot_action::none);
    EXPECT_EQ(found({30, 30}, MK_SHIFT | MK_CONTROL), hot_action::pan);
    section.line = true;
    EXPECT_EQ(found({5, 5}), hot_action::none);
}

TEST_F(CursorTest, SectionsAreDraggedByVertexAndByLine)
{
    FakeSection section({120, 80}, {{10, 10}, {100, 10}});
    world.shown = {&section};
    draw({5, 5}, {20, 15}); // the first vertex, at half its place
    EXPECT_EQ(section.points[0], (CPoint{40, 30}));
    EXPECT_EQ(world.fronted, std::vector<ISection*>({&section}));
    section.points = {{10, 10}, {100, 10}};
    draw({50, 10}, {30, 15});
    EXPECT_EQ(section.points, points({{0, 15}, {80, 15}})) << "20 to the left, as far as the image goes, and 5 up";
    section.points = {{0, 10}, {59, 10}};
    section.size = {60, 40};
    section.line = section.horizontal = true;
    draw({50, 10}, {30, 15});
    EXPECT_EQ(section.points, points({{0, 15}, {59, 15}})) << "a row stays a whole row";
    press({50, 15});
    world.shown.clear(); // closed in the middle of the drag
    drag({20, 20});
    release({20, 20});
}

TEST_F(CursorTest, TheMarkOfAVolumeIsDragged)
{
    CImageView view;
    world.volume = surface::volume_mark{&view, {7, 5}, 0.5, 0.5};
    // Cell 3, 2 lies at 3 * 60 / 7 = 25 and 2 * 40 / 5 = 16.
    press({25, 16});
    EXPECT_EQ(state.hotAction, hot_action::volumeMark);
    EXPECT_EQ(world.volumeDrags, 1);
    drag({59, 39});
    EXPECT_EQ(world.volume->x, 1.0);
    EXPECT_EQ(world.volume->y, 1.0);
    release({59, 39});
    EXPECT_EQ(world.volumeDrags, 0);
}

TEST_F(CursorTest, BothKeysPanAlsoOverMarks)
{
    world.window = {10, 10, 40, 30};
    state.marks = {{20, 20}};
    press({20, 20}, MK_SHIFT | MK_CONTROL);
    drag({25, 22}, MK_SHIFT | MK_CONTROL);
    EXPECT_EQ(world.window, CRect(5, 8, 35, 28)) << "the sample stays under the cursor";
    drag({34, 27}, MK_SHIFT | MK_CONTROL);
    EXPECT_EQ(world.window.TopLeft(), (CPoint{0, 1})) << "14 to the left stops at the image's edge; 7 down";
    release({20, 20}, MK_SHIFT | MK_CONTROL);
    EXPECT_EQ(state.marks.size(), 1u);
    hover({20, 20});
    EXPECT_EQ(state.hotAction, hot_action::deleteMark);
}

TEST_F(CursorTest, MarksAndCurvesGoTogether)
{
    state.marks = {{5, 5}, {6, 6}};
    state.curves = {{{5, 5}}};
    hover({5, 5});
    machine.removeMarks();
    EXPECT_TRUE(state.marks.empty());
    EXPECT_EQ(state.hotAction, hot_action::none) << "what was under the cursor is gone";
    EXPECT_TRUE(world.repainted.PtInRegion(world.client({6, 6})));
    machine.removeCurves();
    EXPECT_TRUE(state.curves.empty());
    // Of a file: the number that was told would be that of before.
    machine.addMark({1, 1});
    machine.addDrawings(std::vector<points>{{{2, 2}, {3, 3}}}, points{{4, 4}, {5, 5}});
    EXPECT_EQ(state.measure.text, L"Total: 3");
    EXPECT_EQ(state.curves.size(), 1u);
}

} // namespace
