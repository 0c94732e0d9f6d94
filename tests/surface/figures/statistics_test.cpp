#include "base/VLAxis.h"
#include "surface/figures/measure/statistics.h"
#include "surface/figures/measure/statistics_text.h"
#include "surface/figures/selection_state.h"

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
        EXPECT_EQ(rows[i].isHeight, rows[i].units == "nm") << rows[i].name;
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

std::vector<std::string> texts_of(const std::vector<statistics_row>& rows, std::size_t room)
{
    return surface::row_texts(rows, [room](const std::string& text) { return text.size() <= room; });
}

TEST(RowTexts, OfHeightsHaveOneCountOfDecimals)
{
    const std::vector<statistics_row> small = {{"Zmax", 204.5, "nm", true},
                                               {"Zmin", 0.0, "nm", true},
                                               {"Rmax", 204.5, "nm", true},
                                               {"Rq", 61.23456, "nm", true},
                                               {"Rku", 2.5, ""}};
    using texts = std::vector<std::string>;
    EXPECT_EQ(texts_of(small, 99),
              (texts{"Zmax: 204.500 nm", "Zmin: 0.000 nm", "Rmax: 204.500 nm", "Rq: 61.235 nm", "Rku: 2.5"}));
    EXPECT_EQ(texts_of(small, 14),
              (texts{"Zmax: 204.5 nm", "Zmin: 0.0 nm", "Rmax: 204.5 nm", "Rq: 61.2 nm", "Rku: 2.5"}));
    EXPECT_EQ(texts_of(small, 13), (texts{"Zmax: 205 nm", "Zmin: 0 nm", "Rmax: 205 nm", "Rq: 61.2 nm", "Rku: 2.5"}));
    const std::vector<statistics_row> far = {{"Zmax", 12000300.0, "pm", true},
                                             {"Zmin", 12000000.0, "pm", true},
                                             {"Rmax", 300.0, "pm", true},
                                             {"Rq", 80.27, "pm", true}};
    EXPECT_EQ(texts_of(far, 99),
              (texts{"Zmax: 12000300.00 pm", "Zmin: 12000000.00 pm", "Rmax: 300.00 pm", "Rq: 80.27 pm"}));
    EXPECT_EQ(texts_of(far, 17), (texts{"Zmax: 12000300 pm", "Zmin: 12000000 pm", "Rmax: 300 pm", "Rq: 80.3 pm"}));
    EXPECT_EQ(texts_of(far, 16), (texts{"Zmax: 12 µm", "Zmin: 12 µm", "Rmax: 0.0003 µm", "Rq: 8.03E-05 µm"}));
}

TEST(RowTexts, OfSmallRoughnessHaveThreeDigitsOfTheirOwn)
{
    const struct {
        double value;
        std::size_t room;
        const char* text;
    } cases[] = {
        {0.0243712, 99, "Rq: 0.02437 µm"},    {0.0243712, 14, "Rq: 0.0244 µm"},
        {0.0243712, 13, "Rq: 0.024 µm"},      {0.0243712, 12, "Rq: 0.02 µm"},
        {0.00029951, 99, "Rq: 0.000300 µm"},  {0.00029951, 15, "Rq: 0.0003 µm"},
        {0.00005994, 99, "Rq: 5.994E-05 µm"}, {0.0, 99, "Rq: 0.00000 µm"},
        {0.03, 99, "Rq: 0.03000 µm"},         {0.03, 14, "Rq: 0.03 µm"},
        {0.00025, 99, "Rq: 0.00025 µm"},
    };
    for (const auto& [value, room, text] : cases) {
        const auto texts =
            texts_of({{"Zmax", 51.59, "µm", true}, {"Rmax", 2.21875, "µm", true}, {"Rq", value, "µm", true}}, room);
        EXPECT_EQ(texts[2], text) << room;
    }
    const auto far = texts_of({{"Zmax", 151.594, "µm", true}, {"Rmax", 2.21875, "µm", true}}, 14);
    EXPECT_EQ(far, (std::vector<std::string>{"Zmax: 152 µm", "Rmax: 2.22 µm"}));
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
