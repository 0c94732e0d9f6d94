// Where a step crosses the lines of its image, as its samples tell.
#include "curves/figures/step_place.h"
#include "support/streams.h"

#include <gtest/gtest.h>

namespace {

using vldv::curves::step_places;

/// A step over three lines from the seventh on, in units of which the second counts lines.
SPMDataStream three_lines()
{
    SPMDataStream step = test_support::made_stream("step0", {{3, VLAxis(21, 3, "nm")}}, VLAxis(0, 1, "nm"),
                                                   [](unsigned i) { return 10 + 20 * i; });
    SPMDataStream::dimension rows = step.get_dimension(0);
    rows.set_axis(1, VLAxis(7, 1, "line"));
    step.set_dimension(0, rows);
    return step;
}

TEST(StepPlaces, TellLineAndColumn)
{
    const SPMDataStream step = three_lines();
    const auto left = step_places::of(step, true, 101), right = step_places::of(step, false, 101);
    ASSERT_TRUE(left && right);
    EXPECT_EQ(left->count(), 3);
    const struct {
        double share;
        int line;
    } lines[] = {{0.0, 7}, {0.24, 7}, {0.26, 8}, {0.5, 8}, {1.0, 9}};
    for (const auto& each : lines) EXPECT_EQ(left->lineAt(each.share), each.line) << each.share;
    const struct {
        int line;
        double along, fromLeft, fromRight;
    } rows[] = {{7, 0.0, 0.1, 0.9}, {8, 0.5, 0.3, 0.7}, {9, 1.0, 0.5, 0.5}};
    for (const auto& each : rows) {
        EXPECT_EQ(left->shareOfLine(each.line), each.along);
        EXPECT_DOUBLE_EQ(left->shareAcross(each.line).value(), each.fromLeft);
        EXPECT_DOUBLE_EQ(right->shareAcross(each.line).value(), each.fromRight) << "counted from the right end";
        EXPECT_EQ(right->valueAcross(each.fromRight), left->valueAcross(each.fromLeft));
        EXPECT_EQ(left->valueAcross(each.fromLeft), 10 + 20 * (each.line - 7)) << "back and forth";
    }
    for (const int outside : {6, 10, -1}) {
        EXPECT_FALSE(left->shareAcross(outside)) << outside;
        EXPECT_FALSE(left->sampleOfLine(outside)) << outside;
    }
    EXPECT_EQ(step_places::of(step, true, 20)->shareAcross(9), 1.0) << "50 of 20 columns: at the end";
}

TEST(StepPlaces, AreOfCurvesOverLinesOnly)
{
    const SPMDataStream bare = test_support::made_stream("step0", {{3}}, {}, [](unsigned) { return 1; });
    EXPECT_FALSE(step_places::of(bare, true, 10)) << "no axis counts lines";
    EXPECT_FALSE(step_places::of(three_lines(), true, 0)) << "an image without columns";
    SPMDataStream bytes = three_lines();
    bytes.set_array_type(SPM_ARRAY_UINT16);
    EXPECT_FALSE(step_places::of(bytes, true, 10));
}

} // namespace
