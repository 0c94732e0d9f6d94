#include "view/AxisLine.h"

#include "support/RecordingDC.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using kind = drawn::kind;
using segment = std::pair<CPoint, CPoint>;

std::vector<segment> lines_of(const RecordingDC& dc)
{
    std::vector<segment> out;
    for (const drawn& line : dc.all(kind::lines)) out.emplace_back(line.points[0], line.points[1]);
    return out;
}

struct placed {
    std::string text;
    CPoint leftTop;
    bool operator==(const placed&) const = default;
};
void PrintTo(const placed& label, std::ostream* out)
{
    *out << label.text << "@" << label.leftTop.x << "," << label.leftTop.y;
}

std::vector<placed> labels_of(const RecordingDC& dc)
{
    std::vector<placed> out;
    for (const drawn& text : dc.all(kind::text)) out.push_back({text.text, text.box.TopLeft()});
    return out;
}

/// From 0 to 10 in steps of 5, 100 pixels; characters are 6 by 12.
axis_line horizontal(RecordingDC& dc, std::uint32_t flags)
{
    return {.dc = &dc,
            .flags = flags,
            .ticNumber = 2,
            .ticLength = 4,
            .minGap = 5,
            .x0 = 50,
            .y0 = 200,
            .x1 = 150,
            .y1 = 200,
            .start = 0.0,
            .end = 10.0,
            .units = "nm"};
}

axis_line vertical(RecordingDC& dc, std::uint32_t flags)
{
    axis_line axis = horizontal(dc, flags | AXIS_VERTICAL);
    axis.x1 = 50, axis.y1 = 100;
    return axis;
}

TEST(AxisLine, HorizontalTicksAndLabelsHangBelow)
{
    RecordingDC dc;
    dc.SetTextAlign(TA_RIGHT);
    const axis_line axis = horizontal(dc, AXIS_LINE | AXIS_TICKS | AXIS_TEXT);
    DrawAxisLine(&axis);
    // The line one pixel outward and longer; ticks of 4 + 1 pixels.
    EXPECT_EQ(
        lines_of(dc),
        (std::vector<segment>{
            {{49, 201}, {151, 201}}, {{50, 200}, {50, 205}}, {{100, 200}, {100, 205}}, {{150, 200}, {150, 205}}}));
    // "nm" ends at 150, "10" would overlap it.
    EXPECT_EQ(labels_of(dc), (std::vector<placed>{{"nm", {138, 205}}, {"0", {47, 205}}, {"5", {97, 205}}}));
    EXPECT_EQ(dc.GetTextAlign(), TA_RIGHT) << "put back";
}

TEST(AxisLine, TheOtherSideIsAboveAndLeft)
{
    RecordingDC above;
    axis_line axis = horizontal(above, AXIS_TICKS | AXIS_TEXT | AXIS_OTHER_SIDE);
    axis.units = nullptr;
    DrawAxisLine(&axis);
    EXPECT_EQ(lines_of(above)[0], (segment{{50, 200}, {50, 195}}));
    EXPECT_EQ(labels_of(above), (std::vector<placed>{{"0", {47, 183}}, {"5", {97, 183}}, {"10", {144, 183}}}));

    RecordingDC left;
    axis = vertical(left, AXIS_LINE | AXIS_TICKS | AXIS_TEXT | AXIS_OTHER_SIDE);
    DrawAxisLine(&axis);
    EXPECT_EQ(lines_of(left),
              (std::vector<segment>{
                  {{49, 201}, {49, 99}}, {{50, 200}, {45, 200}}, {{50, 150}, {45, 150}}, {{50, 100}, {45, 100}}}));
    // Right ends at 45. A baseline 4 below the tick, ascent 10: tops 6 above it. The unit takes 100 to 112.
    EXPECT_EQ(labels_of(left), (std::vector<placed>{{"nm", {33, 100}}, {"0", {39, 194}}, {"5", {39, 144}}}));

    RecordingDC right;
    axis = vertical(right, AXIS_TICKS);
    DrawAxisLine(&axis);
    EXPECT_EQ(lines_of(right)[1], (segment{{50, 150}, {55, 150}}));
    EXPECT_TRUE(labels_of(right).empty());
}

TEST(AxisLine, WidePensMoveTheLineAndLengthenTicks)
{
    RecordingDC dc;
    const CPen pen = CPen::solid(4, 0xFF);
    axis_line axis = horizontal(dc, AXIS_LINE | AXIS_TICKS);
    axis.axisPen = &pen;
    DrawAxisLine(&axis);
    EXPECT_EQ(lines_of(dc)[0], (segment{{48, 202}, {152, 202}})) << "(4 + 1) / 2 = 2 outward";
    EXPECT_EQ(lines_of(dc)[1], (segment{{50, 200}, {50, 208}}));
    EXPECT_EQ(dc.operations[0].tools.pen, pen);
    EXPECT_EQ(dc.getCurrentPen(), CPen());
    dc.operations.clear();
    axis.flags = AXIS_LINE | AXIS_KEEP_LINE;
    DrawAxisLine(&axis);
    EXPECT_EQ(lines_of(dc), (std::vector<segment>{{{50, 200}, {150, 200}}}));
}

TEST(AxisLine, LabelsKeepTheirDistance)
{
    RecordingDC dc;
    axis_line axis = horizontal(dc, AXIS_TEXT);
    axis.units = nullptr;
    axis.ticNumber = 10; // ticks 10 pixels apart, labels 6 wide: 4 pixels between neighbours
    DrawAxisLine(&axis);
    std::vector<std::string> texts;
    for (const placed& label : labels_of(dc)) texts.push_back(label.text);
    EXPECT_EQ(texts, (std::vector<std::string>{"0", "2", "4", "6", "8", "10"}));
    dc.operations.clear();
    axis.minGap = 4;
    DrawAxisLine(&axis);
    EXPECT_EQ(labels_of(dc).size(), 10u) << "10 is 12 wide and 1 pixel from 9";
}

TEST(AxisLine, ZeroLineAndTickAtZero)
{
    RecordingDC dc;
    const CPen zero = CPen::dotted(0xFF00);
    axis_line axis = horizontal(dc, AXIS_TICKS | AXIS_TEXT | AXIS_NO_TICK_AT_ZERO);
    axis.units = "";
    axis.start = -5.0, axis.end = 5.0;
    axis.zeroPen = &zero;
    DrawAxisLine(&axis);
    EXPECT_EQ(lines_of(dc),
              (std::vector<segment>{{{50, 200}, {50, 205}}, {{150, 200}, {150, 205}}, {{100, 200}, {100, 205}}}));
    EXPECT_EQ(dc.all(kind::lines)[2].tools.pen, zero);
    ASSERT_EQ(labels_of(dc).size(), 3u);
    EXPECT_EQ(labels_of(dc)[1], (placed{"0", {97, 205}})) << "its label stays";
    dc.operations.clear();
    axis.start = 0.0;
    DrawAxisLine(&axis);
    EXPECT_NE(dc.all(kind::lines).back().tools.pen, zero) << "both ends have one sign";
    dc.operations.clear();
    for (const auto& [start, end] : {std::pair{-INFINITY, 5.0}, {-1.7e308, 1.7e308}}) {
        axis.start = start, axis.end = end;
        DrawAxisLine(&axis);
    }
    EXPECT_TRUE(dc.operations.empty()) << "no value has a place on an endless axis";
    DrawAxisLine(nullptr);
}

TEST(Grid, CrossesTheWholeRectangle)
{
    RecordingDC dc;
    const CRect rect(10, 20, 110, 70);
    DrawGrid(&dc, rect, 3, -10.0, 10.0, 0.0, 1.0, true, 4, 1);
    EXPECT_EQ(lines_of(dc), (std::vector<segment>{{{10, 20}, {110, 20}}, // y = 1; y = 0 is left out
                                                  {{10, 70}, {10, 20}},
                                                  {{35, 70}, {35, 20}},
                                                  {{85, 70}, {85, 20}},
                                                  {{110, 70}, {110, 20}}}));
    dc.operations.clear();
    DrawGrid(&dc, rect, 1, 0.0, 1.0, 0.0, 1.0, false, 0, 1);
    EXPECT_EQ(lines_of(dc), (std::vector<segment>{{{10, 70}, {110, 70}}, {{10, 20}, {110, 20}}}));
    DrawGrid(nullptr, rect, 3, 0.0, 1.0, 0.0, 1.0, false, 0, 0);
}

} // namespace
