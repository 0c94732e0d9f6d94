#include "base/VLAxis.h"
#include "surface/selection_state.h"
#include "surface/statistics.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using surface::statistics_row;

std::vector<statistics_row> rows_of(const std::wstring& text, int compactLength = 1, bool isVisible = true)
{
    std::vector<statistics_row> rows;
    surface::measure_text measure;
    measure.text = text;
    measure.isVisible = isVisible;
    surface::add_measure_rows(rows, measure, compactLength);
    return rows;
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

TEST(FrameStatistics, OriginAndStepShareTheUnitOfTheStep)
{
    const auto rows = surface::frame_statistics(std::vector<std::int16_t>{0, 100}, 2, VLAxis(1, 0.25, "nm"));
    EXPECT_EQ(rows[1].units, "pm");
    EXPECT_NEAR(rows[1].value, 1000.0 + 100 * 250.0, 1e-9);
    EXPECT_NEAR(rows[2].value, 1000.0, 1e-9);
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
