#include "view/scale/strip.h"

#include "support/RecordingDC.h"

#include <gtest/gtest.h>

namespace {

/// Four entries, so that each colour tells its index.
const color_table table = {0x10, 0x11, 0x12, 0x13};

view::scale_state fixed_state()
{
    view::scale_state state;
    state.autoScaling = view::fixedScale;
    state.scaleLength = 100;
    state.upperDelimiter = 25;
    state.lowerDelimiter = 75;
    return state;
}

/// First points and colours of the strip's lines.
std::vector<std::pair<CPoint, colorEntry>> lines_of(const RecordingDC& dc)
{
    std::vector<std::pair<CPoint, colorEntry>> out;
    for (const drawn& line : dc.all(drawn::kind::lines)) out.push_back({line.points.front(), line.tools.pen.color});
    return out;
}

TEST(Strip, ContrastLiesInTheOtherHalfOfEachChannel)
{
    EXPECT_EQ(view::contrast(view::color_of(0, 64, 127)), view::color_of(255, 191, 254));
    EXPECT_EQ(view::contrast(view::color_of(128, 192, 255)), view::color_of(0, 64, 1));
}

TEST(Strip, HasALineForEachPixelAndOneMore)
{
    view::scale_state state;
    RecordingDC dc;
    view::draw_strip(dc, {10, 20, 16, 25}, state, table, tdHorizontal, true);
    // 3 i / 6 truncated
    EXPECT_EQ(lines_of(dc), (std::vector<std::pair<CPoint, colorEntry>>{{{10, 20}, 0x10},
                                                                        {{11, 20}, 0x10},
                                                                        {{12, 20}, 0x11},
                                                                        {{13, 20}, 0x11},
                                                                        {{14, 20}, 0x12},
                                                                        {{15, 20}, 0x12},
                                                                        {{16, 20}, 0x13}}));
    const drawn first = dc.all(drawn::kind::lines).front();
    EXPECT_EQ(first.points.back(), (CPoint{10, 25}));
    EXPECT_EQ(first.tools.pen.style, PS_GEOMETRIC | PS_ENDCAP_ROUND);
    EXPECT_EQ(first.tools.pen.width, 2);

    state.inverse = true;
    RecordingDC vertical;
    view::draw_strip(vertical, {10, 20, 12, 23}, state, table, tdVertical, true);
    EXPECT_EQ(lines_of(vertical), (std::vector<std::pair<CPoint, colorEntry>>{
                                      {{10, 20}, 0x10}, {{10, 21}, 0x11}, {{10, 22}, 0x12}, {{10, 23}, 0x13}}))
        << "inverse: the low end is on top";
    EXPECT_EQ(vertical.all(drawn::kind::lines).front().tools.pen.style, PS_GEOMETRIC | PS_ENDCAP_SQUARE);
    RecordingDC flat;
    view::draw_strip(flat, {5, 5, 5, 5}, state, table, tdHorizontal, true);
    EXPECT_EQ(lines_of(flat), (std::vector<std::pair<CPoint, colorEntry>>{{{5, 5}, 0x10}}));
}

TEST(Strip, DelimitersAndAxisAreThoseOfAnActiveFixedScale)
{
    const CRect rect(40, 30, 239, 50);
    const auto dotted = [&](const view::scale_state& state, tdTileDirection along) {
        RecordingDC dc;
        dc.SetTextAlign(TA_RIGHT);
        view::draw_strip(dc, rect, state, table, along, true);
        EXPECT_EQ(dc.GetTextAlign(), TA_RIGHT) << "all settings come back";
        std::vector<CPoint> out;
        for (const drawn& line : dc.all(drawn::kind::lines))
            if (line.tools.pen == CPen::dotted(0xffffff)) out.push_back(line.points.front());
        return std::pair{out, dc.all(drawn::kind::text).size()};
    };
    view::scale_state state = fixed_state();
    // 25 * 200 / 100 and 75 * 200 / 100 from the side of the surface, not of the strip
    EXPECT_EQ(dotted(state, tdHorizontal).first, (std::vector<CPoint>{{50, 30}, {150, 30}}));
    EXPECT_GT(dotted(state, tdHorizontal).second, 3u);
    // 25 * 21 / 100 = 5 and 75 * 21 / 100 = 15 below the top
    EXPECT_EQ(dotted(state, tdVertical).first, (std::vector<CPoint>{{40, 35}, {40, 45}}));
    state.active = false;
    EXPECT_EQ(dotted(state, tdHorizontal), (std::pair{std::vector<CPoint>{}, std::size_t{0}}));
    state.active = true;
    for (const int mode : {1, 2, 3}) {
        state.autoScaling = mode;
        EXPECT_EQ(dotted(state, tdHorizontal), (std::pair{std::vector<CPoint>{}, std::size_t{0}}));
    }
}

TEST(Strip, ShowsTheWindowsSizeWhileItIsDragged)
{
    view::scale_state state = fixed_state();
    state.hotDelimiter = view::upperOne;
    state.fixedSize = 12.5;
    state.fixedUnits = "µm";
    const auto texts = [&](tdTileDirection along) {
        RecordingDC dc;
        view::draw_strip(dc, {100, 30, 300, 70}, state, table, along, false);
        return dc.all(drawn::kind::text);
    };
    EXPECT_TRUE(texts(tdHorizontal).empty());
    state.dragging = 1;
    ASSERT_EQ(texts(tdHorizontal).size(), 1u);
    const drawn text = texts(tdHorizontal).front();
    EXPECT_EQ(text.text, "12.5 µm");
    EXPECT_EQ(text.box.left, 200 - 7 * RecordingDC::characterWidth / 2);
    EXPECT_EQ(text.box.top, 30 + (20 - RecordingDC::lineHeight) / 2);
    EXPECT_EQ(text.tools.textColor, view::contrast(0x11)) << "entry 1 * 3 / 2";
    EXPECT_EQ(text.tools.font.height, -10);
    EXPECT_TRUE(texts(tdVertical).empty());
}

TEST(Strip, DelimitersAreGrabbedWithinThreePixels)
{
    view::scale_state state = fixed_state();
    state.stripRect = {0, 0, 100, 22};
    EXPECT_EQ(view::delimiter_at(state, {22, 5}), view::upperOne);
    EXPECT_EQ(view::delimiter_at(state, {21, 5}), view::noDelimiter);
    EXPECT_EQ(view::delimiter_at(state, {78, -3}), view::lowerOne);
    EXPECT_EQ(view::delimiter_at(state, {78, -4}), view::noDelimiter);
    state.lowerDelimiter = 29;
    EXPECT_EQ(view::delimiter_at(state, {27, 5}), view::upperOne) << "a tie takes the upper one";
    state.direction = tdVertical;
    state.stripRect = {0, 0, 22, 100};
    EXPECT_EQ(view::delimiter_at(state, {5, 28}), view::lowerOne);
}

TEST(Strip, MovingADelimiterStretchesTheWindow)
{
    view::scale_state state = fixed_state();
    state.fixedSize = 100.0;
    state.fixedStart = 10.0;
    state.hotDelimiter = view::upperOne;
    EXPECT_FALSE(view::move_delimiter(state, 25));
    EXPECT_TRUE(view::move_delimiter(state, 50)); // half the distance
    EXPECT_EQ(state.fixedSize, 50.0);
    EXPECT_EQ(state.fixedStart, 60.0);
    EXPECT_EQ(state.relativeMeanOffset, 25.0);
    EXPECT_TRUE(view::move_delimiter(state, 500));
    EXPECT_EQ(state.upperDelimiter, 74) << "one pixel before the other";
    EXPECT_EQ(state.fixedSize, 2.0);

    state.hotDelimiter = view::lowerOne;
    EXPECT_TRUE(view::move_delimiter(state, 84)); // from 1 to 10 pixels
    EXPECT_EQ(state.fixedSize, 20.0);
    EXPECT_EQ(state.fixedStart, 108.0) << "stays";
    EXPECT_TRUE(view::move_delimiter(state, -9));
    EXPECT_EQ(state.lowerDelimiter, 75);
    state.lowerDelimiter = state.upperDelimiter = 0; // a strip without length
    EXPECT_FALSE(view::move_delimiter(state, 9));
}

TEST(Strip, AWindowSuitsDataThatItOverlapsAndIsNotFarLargerThan)
{
    struct suit_case {
        double start, size, offset;
        bool suitsAbsolute, suitsRelative;
    };
    const suit_case cases[] = {
        {0.0, 100.0, 0.0, true, true},      {-101.0, 100.0, -101.0, false, false},
        {149.0, 10.0, 99.0, true, true},    {150.0, 10.0, 100.0, false, false}, // begins where the data end
        {50.0, 25600.0, 0.0, true, true},                                       // 256 times the span
        {50.0, 25601.0, 0.0, false, false}, {60.0, 0.39, 10.0, false, false},   // 100 / 256 = 0.390625
        {60.0, 0.390625, 10.0, true, true},
    };
    const view::data_range data{50.0, 150.0, "nm"};
    view::scale_state state;
    for (const suit_case& each : cases) {
        state.fixedStart = each.start;
        state.fixedSize = each.size;
        state.relativeMeanOffset = each.offset;
        EXPECT_EQ(view::window_suits(state, data, true), each.suitsAbsolute) << each.start << " " << each.size;
        EXPECT_EQ(view::window_suits(state, data, false), each.suitsRelative) << each.offset << " " << each.size;
    }
    EXPECT_FALSE(view::window_suits(state, {50.0, 150.0, "V"}, true));
    view::take_window(state, data);
    EXPECT_EQ(state.fixedSize, 100.0);
    EXPECT_EQ(state.fixedStart, 50.0);
    EXPECT_EQ(state.relativeMeanOffset, 0.0);
}

} // namespace
