// Curves of pairs: where they come from, where they stand, what marks and figures tell of them.
#include "curves/figures/pairs/pair_force.h"
#include "curves/figures/pairs/pair_text.h"
#include "support/own_names.h"
#include "support/streams.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace vldv::curves;
using test_support::made_stream;
using testing::ElementsAre;

std::vector<double> taken(const pair_series& series, const std::vector<double>& of)
{
    std::vector<double> out;
    for (std::size_t i = 0; i < series.size(); ++i) out.push_back(series.isMeasured(i) ? of[i] : NAN);
    return out;
}

TEST(PairSource, TilesTheShorterSeriesAndStopsAtTheShorterCurve)
{
    const SPMDataStream x = made_stream("x", {{4}}, {}, [](unsigned i) { return 10 * i; });
    const SPMDataStream y = made_stream("y", {{5}}, {}, [](unsigned i) { return i; }, 3);
    const pair_source source({&x, nullptr, nullptr}, {&y, "5 3 0", "of 15: 1-1"});
    ASSERT_EQ(source.curves(), 3u);
    EXPECT_THAT(source.curve(0).x, ElementsAre(0, 10, 20, 30));
    EXPECT_THAT(taken(source.curve(0), source.curve(0).y), ElementsAre(0, testing::IsNan(), 2, 3));
    EXPECT_THAT(source.curve(1).x, ElementsAre(0, 10, 20)) << "no more than the curve holds";
    EXPECT_THAT(source.curve(1).y, ElementsAre(5, 6, 7));
    EXPECT_TRUE(source.curve(2).isEmpty()) << "not measured";
    EXPECT_TRUE(source.curve(3).isEmpty());
    EXPECT_TRUE(pair_source({nullptr, nullptr, nullptr}, {&y, nullptr, nullptr}).isEmpty());
    SPMDataStream doubles = x;
    doubles.convert_stream(SPM_ARRAY_FLOAT64);
    const pair_source voids({&doubles, nullptr, "of 4: 3-3"}, {&y, nullptr, nullptr});
    EXPECT_THAT(taken(voids.curve(2), voids.curve(2).x), ElementsAre(0, 10, 20, testing::IsNan()));
    EXPECT_THAT(voids.curve(2).y, ElementsAre(10, 11, 12, 13));
}

TEST(PairPane, PutsLowPositionsAndValuesToTheLowerLeft)
{
    const pair_series series{{0, 5, 10, 10}, {-2, 2, 0, 1}, {}};
    pair_ranges ranges;
    ranges.add(series);
    // Positions fall from 7 nm by 0.5: 7, 4.5, 2, 2.
    const pair_pane pane({101, 41}, VLAxis(7, -0.5, "nm"), VLAxis(1, 10, "pN"), ranges);
    EXPECT_EQ(pane.positions().low, 2.0);
    EXPECT_EQ(pane.values().high, 21.0);
    std::vector<CPoint> line;
    pane.line(series, 0, 4, {1000, 0}, line);
    EXPECT_EQ(line, (std::vector<CPoint>{{1100, 40}, {1050, 0}, {1000, 20}, {1000, 10}}));
    EXPECT_EQ(pane.nearestInX(series, 0.0), 2u) << "the first of equals";
    EXPECT_EQ(pane.nearestInX(series, 0.76), 0u);
    EXPECT_EQ(pane.nearest(series, 0.0, 0.7), 3u);
    EXPECT_EQ(pane.nearest({{0}, {0}, {true}}, 0.0, 0.7), std::nullopt);
    const pair_series flat{{3, 3}, {4, 4}, {}};
    pair_ranges one;
    one.add(flat);
    const pair_pane still({101, 41}, {}, {}, one);
    still.line(flat, 0, 2, {}, line);
    EXPECT_EQ(line, (std::vector<CPoint>{{50, 20}})) << "in the middle, once";
}

TEST(PairMarks, StandOnPairsAndTellThem)
{
    // Over and back: at each position two values.
    const pair_series series{{0, 1, 2, 3, 4, 3, 2, 1}, {0, 1, 2, 3, 4, 13, 12, 11}, {}};
    const VLAxis x(0, 0.5, "µm"), y(0, 100, "pN");
    pair_ranges ranges;
    ranges.add(series);
    const CRect place(50, 10, 50 + 401, 10 + 261);
    const pair_pane pane(place.Size(), x, y, ranges);
    pair_mark_set marks;
    const auto lines = pair_marks_mode::verticalLines;
    EXPECT_TRUE(marks.move(0, {50 + 110, 0}, lines, place, pane, series));
    EXPECT_FALSE(marks.move(0, {50 + 120, 99}, lines, place, pane, series)) << "the same sample";
    EXPECT_TRUE(marks.move(1, {9999, 9999}, lines, place, pane, series));
    EXPECT_EQ(pair_marks_text(marks, lines, series, x, y), "dX: 1.5 µm\tdY: 300 pN") << "the way out comes first";
    EXPECT_EQ(pair_marks_text(marks, pair_marks_mode::crosses, series, x, y),
              "X: 500 nm\tY: 100 pN\tX: 2 µm\tY: 400 pN");
    const auto crossbar = pair_marks_mode::crossbar;
    EXPECT_EQ(pair_marks_text(marks, crossbar, series, x, y), "") << "not settled yet";
    marks.move(2, {50 + 190, 10 + 15}, crossbar, place, pane, series);
    EXPECT_EQ(pair_marks_text(marks, crossbar, series, x, y), "X: 1 µm\tY: 1.2 nN") << "the way back lies nearer";
    EXPECT_EQ(marks.under({50 + 200, 10 + 20}, 4, crossbar, place), 2);
    EXPECT_EQ(marks.under({50 + 200, 10 + 25}, 4, crossbar, place), -1) << "near across alone";
    EXPECT_TRUE(marks.step(2, -1, pane, series));
    EXPECT_EQ(marks[2].sample, 5u);
    EXPECT_EQ(marks[2].x, 0.75);
    for (int i = 0; i < 2; ++i) EXPECT_TRUE(marks.step(2, 1, pane, series));
    EXPECT_FALSE(marks.step(2, 1, pane, series)) << "the last one";
}

TEST(PairText, FiguresOfAForceCurveRunOverPositions)
{
    // Positions that go 1 and 3 nm in turn; contact rises by 0.2 nN for 1 nm down to 100 nm, then 500 pN of adhesion at
    // one sample, then nothing.
    pair_series series;
    double position = 0;
    for (int i = 0; i < 256; ++i) {
        series.x.push_back(position);
        const double contact = position < 100 ? 200.0 * (100 - position) : 0.0;
        series.y.push_back(contact + (i == 60 ? -500.0 : 0.0) + (i * 7919 % 5 - 2) * 0.5);
        position += i % 2 == 0 ? 1 : 3;
    }
    const VLAxis x(0, 1, "nm"), y(0, 1, "pN");
    const force_curve_stats stats = pair_force_stats(series, x, y, 1.0, 1.0);
    ASSERT_TRUE(stats.hasSlant());
    ASSERT_TRUE(stats.hasZero());
    EXPECT_NEAR(stats.slant_b - stats.zero_b, -200.0, 1.0);
    const std::string text = pair_force_text(series, x, y, stats);
    EXPECT_THAT(text, testing::StartsWith("\tdF/dZ: -"));
    EXPECT_THAT(text, testing::HasSubstr(" pN/nm"));
    EXPECT_EQ(pair_force_text({{1, 2}, {3, 4}, {}}, x, y, pair_force_stats({{1, 2}, {3, 4}, {}}, x, y, 1, 1)), "")
        << "too short";
}

TEST(PairText, TablesHoldAllCurvesSideBySide)
{
    const SPMDataStream x = made_stream("Sep", {{3}}, {}, [](unsigned i) { return i; });
    const SPMDataStream y = made_stream("Force", {{3}}, {}, [](unsigned i) { return i; }, 2);
    const pair_source source({&x, nullptr, "of 3: 1-1"}, {&y, "3 2", nullptr});
    EXPECT_EQ(pair_table(source, VLAxis(1, 0.5, "nm"), VLAxis(0, 1e-12, "N"), "Sep", "Force"),
              "Subimage1,X data,Sep\tSubimage1,Y data,Force\tSubimage2,X data,Sep\tSubimage2,Y data,Force\r\n"
              "1\t0\t1\t3e-12\r\n\t\t\t\r\n2\t2e-12\t\t\r\n");
}

} // namespace
