#include "base/VLAxis.h"
#include "surface/selection_state.h"
#include "surface/statistics.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using surface::statistics_row;

std::vector<statistics_row> rows_of(const std::wstring& text, int compactLength = 1, bool isVisible = true)
{
    surface::measure_text measure;
    measure.text = text;
    measure.isVisible = isVisible;
    return surface::measure_rows(measure, compactLength);
}

TEST(FrameStatistics, StandInOrderUnderTheirHeading)
{
    const std::vector<std::int16_t> peak = {0, 0, 0, 0, 9, 0, 0, 0, 0}; // mean 1: eight times -1 and once 8
    const auto rows = surface::frame_statistics(peak, 3, VLAxis(-2, 5, "nm"));
    const double rq = std::sqrt(8.0);
    const statistics_row expected[] = {{"", 0, "Statistics"},
                                       {"Zmax", 43, "nm"},
                                       {"Zmin", -2, "nm"},
                                       {"Rmax", 45, "nm"},
                                       {"Rq", 5 * rq, "nm"},
                                       {"Ra", 80.0 / 9.0, "nm"},
                                       {"Rsk", 56.0 / (8.0 * rq), ""},
                                       {"Rku", 456.0 / 64.0, ""}};
    ASSERT_EQ(rows.size(), std::size(expected));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].name, expected[i].name);
        EXPECT_NEAR(rows[i].value, expected[i].value, 1e-9) << rows[i].name;
        EXPECT_EQ(rows[i].units, expected[i].units) << rows[i].name;
    }
}

TEST(FrameStatistics, AllHeightsShareTheUnitInWhichTheirRangeReadsWell)
{
    const struct {
        VLAxis axis;
        std::int16_t highest;
        const char* units;
        double zMax, zMin, rMax;
    } cases[] = {
        {VLAxis(1, 0.25, "nm"), 100, "nm", 26, 1, 25},          {VLAxis(1, 0.25, "nm"), 3, "pm", 1750, 1000, 750},
        {VLAxis(3e-6, 5e-12, "m"), 2000, "nm", 3010, 3000, 10}, // the range, not the offset
        {VLAxis(2e-6, 5e-12, "m"), 0, "µm", 2, 2, 0},           // one height
        {VLAxis(1, 0.25, "px"), 4000, "px", 1001, 1, 1000},
    };
    for (const auto& each : cases) {
        const auto rows = surface::frame_statistics(std::vector<std::int16_t>{0, each.highest}, 2, each.axis);
        for (std::size_t i = 1; i <= 5; ++i) EXPECT_EQ(rows[i].units, each.units) << rows[i].name;
        EXPECT_NEAR(rows[1].value, each.zMax, 1e-9);
        EXPECT_NEAR(rows[2].value, each.zMin, 1e-9);
        EXPECT_NEAR(rows[3].value, each.rMax, 1e-9);
    }
}

TEST(StatisticsRow, LosesDigitsBehindThePointFirst)
{
    const struct {
        double value;
        std::size_t room;
        const char* text;
    } cases[] = {
        {204.512345, 99, "Rq: 204.512 nm"}, {204.512345, 13, "Rq: 204.51 nm"}, {204.512345, 10, "Rq: 205 nm"},
        {204.512345, 5, "Rq: 205 nm"},      {-0.0625, 10, "Rq: -0.06 nm"},     {0.0, 3, "Rq: 0 nm"},
        {123456.7, 3, "Rq: 123457 nm"},     {1234567.8, 14, "Rq: 1.2e+06 nm"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(surface::row_text({"Rq", each.value, "nm"},
                                    [&](const std::string& text) { return text.size() <= each.room; }),
                  each.text)
            << each.value << ' ' << each.room;
}

TEST(FrameStatistics, ThinFlatAndMissingFramesHaveNoRoughness)
{
    for (const int width : {1, 5}) { // a column, a row
        const auto rows = surface::frame_statistics(std::vector<std::int16_t>{2, 4, 6, 8, 10}, width, {});
        for (std::size_t i = 4; i < rows.size(); ++i) EXPECT_EQ(rows[i].value, 0.0) << rows[i].name;
    }
    EXPECT_EQ(surface::frame_statistics({}, 0, {}).size(), 1u);
}

TEST(MeasureRows, AreSplitIntoNameNumberAndUnit)
{
    const std::pair<const wchar_t*, std::vector<statistics_row>> cases[] = {
        {L"L=12 nm; S=3 nm^2", {{"", 0, "Text"}, {"L", 12, "nm"}, {"S", 3, "nm^2"}}},
        {L"L=12 nm;", {{"", 0, "Text"}, {"L", 12, "nm"}}},
        {L"Total: 5", {{"", 0, "Text"}, {"Total", 5, ""}}},
        {L"a:b=-1.5E2  x", {{"", 0, "Text"}, {"a:b", -150, "x"}}},
        {L"just words;x=nm", {{"", 0, "Text"}, {"just words", 0, ""}, {"x", 0, "nm"}}},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(rows_of(text), expected);
}

TEST(MeasureRows, ShortAndHiddenTextsStayOut)
{
    EXPECT_TRUE(rows_of(L"L=12 nm", 8).empty());
    EXPECT_EQ(rows_of(L"L=12 nm", 7).size(), 2u);
    EXPECT_TRUE(rows_of(L"L=12 nm", 1, false).empty());
}

} // namespace
