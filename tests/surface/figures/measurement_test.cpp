#include "surface/figures/measure/measurement_text.h"
#include "surface/views/calibration.h"
#include "surface/views/clipboard_text.h"
#include "surface/views/legend.h"

#include "support/HeadlessHost.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace surface;

/// 4 columns of 100 nm from 1000 nm on, 3 rows of 0.2 um; heights of 2 nm a step, 10 more: raw 0 … 11.
class MeasurementTest : public testing::Test {
protected:
    MeasurementTest()
    {
        map.samples = raw;
        map.width = 4;
        map.height = 3;
        map.x = {1000, 100, "nm"};
        map.y = {5, 0.2, "um"};
        map.z = {10, 2, "nm"};
    }
    std::wstring status(cursor_mode mode, selection_rect selection, CPoint at = {1, 2})
    {
        drawn.mode = mode;
        drawn.selection = selection;
        drawn.selectionActive = true;
        return status_text(map, drawn, at);
    }

    const std::int16_t raw[12] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    measured_surface map;
    selection_state drawn;
};

TEST_F(MeasurementTest, StatusTellsWhereTheCursorIs)
{
    EXPECT_EQ(status_text(map, drawn, {1, 2}).substr(0, 16), L"X=100 nm, Y=400 ");
    EXPECT_NE(status_text(map, drawn, {1, 2}).find(L"Z=28 nm"), std::wstring::npos); // 9 * 2 + 10
    EXPECT_NE(status_text(map, drawn, {99, -5}).find(L"X=300 nm, Y=0 "), std::wstring::npos);
    EXPECT_NE(status_text(map, drawn, {99, -5}).find(L"Z=16 nm"), std::wstring::npos); // raw 3
    map.isAbsoluteX = true;
    EXPECT_EQ(status_text(map, drawn, {1, 0}).substr(0, 6), L"X=1.1 ");
    EXPECT_EQ(status_text({}, drawn, {0, 0}), L"");
    map.isAbsoluteX = false;
    map.x.scale = 333.3333333;
    EXPECT_EQ(status_text(map, drawn, {3, 0}).substr(0, 6), L"X=1 \u00B5m") << "999.9999999 nm";
}

TEST_F(MeasurementTest, StatusTellsWhatADragMeasures)
{
    EXPECT_EQ(status(cursor_mode::rectangle, {3, 0, 1, 2}), L"W=-200 nm, H=400 nm, Z=28 nm");
    EXPECT_EQ(status(cursor_mode::ellipse, {0, 2, 2, 1}), L"W=200 nm, H=-200 nm, Z=28 nm");
    // 3 * 100 nm and 2 * 200 nm: 500 nm; from raw 0 to raw 11 are 22 nm
    EXPECT_EQ(status(cursor_mode::distance, {0, 0, 3, 2}), L"R=500 nm, dZ=22 nm, Z=28 nm");
    EXPECT_EQ(status(cursor_mode::section, {3, 2, 0, 0}), L"R=500 nm, dZ=-22 nm, Z=28 nm");
    EXPECT_EQ(status(cursor_mode::lineProfile, {}), L"Line=1, Z=28 nm");
    EXPECT_EQ(status(cursor_mode::columnProfile, {}), L"Line=1, Z=28 nm");
    EXPECT_EQ(status(cursor_mode::marks, {}), L"");
    EXPECT_EQ(status(cursor_mode::isoline, {}).substr(0, 2), L"X=");
    drawn.firstArm = {0, 0, 2, 0};
    EXPECT_EQ(status(cursor_mode::angle, {0, 0, 2, 1}), L"Angle=45.0 deg, Z=28 nm") << "through both steps";
    EXPECT_EQ(status(cursor_mode::angle, {2, 2, 0, 2}), L"Angle=180.0 deg, Z=28 nm");
}

TEST_F(MeasurementTest, SamplesThatWereNotMeasuredAreNoHeights)
{
    const primitives::sample_run voids[] = {{1, 2}, {11, 1}};
    map.unmeasured = voids;
    const auto told = [&](CPoint at) { return status(cursor_mode::rectangle, {0, 0, 1, 1}, at); };
    for (const CPoint at : {CPoint{1, 0}, {2, 0}, {3, 2}, {9, 9}}) EXPECT_TRUE(told(at).ends_with(L" (not measured)"));
    for (const CPoint at : {CPoint{0, 0}, {3, 0}, {2, 2}}) EXPECT_TRUE(told(at).ends_with(L" nm")) << at.x;
    EXPECT_EQ(status(cursor_mode::distance, {1, 0, 0, 0}, {0, 0}),
              L"R=100 nm, dZ=-2 nm, Z=10 nm (the start was not measured)");
    EXPECT_EQ(distance_table_text(map, drawn), L"Distance, nm\tHeight, nm\r\n 100\tnot measured\r\n");
}

TEST_F(MeasurementTest, ClipboardTakesWhatTheLegendsShow)
{
    legend_content content;
    content.path = "/a/b.spm";
    content.imageName = "Topo";
    content.x = map.x;
    content.y = map.y;
    content.samples = {40, 20}; // 4000 nm and 4 um
    content.parameters = {{"Tip", "line\tone\r\ntwo"}};
    content.statistics = {{"", 0, "Statistics"}, {"Rq", 1.5, "nm"}, {"Rsk", -0.25, ""}};
    content.drawn = &drawn;
    drawn.measure.isVisible = true;
    drawn.measure.text = L"L=1.5 nm";
    const std::wstring all = clipboard_text(content, true, "Forward", true);
    const std::wstring names = L"File\tX, \u00B5m\tY, \u00B5m\tImage data\tTip\tRq, nm\tRsk\tL nm\r\n";
    const std::wstring values = L"/a/b.spm\t4\t4\tTopo (Forward)\tline one  two\t1.5\t-0.25\t1.5\r\n";
    EXPECT_EQ(all, names + values);
    EXPECT_EQ(clipboard_text(content, true, "Forward", false), values);
    drawn.measure.text = L"12.5E3";
    content.parameters.clear();
    content.statistics.clear();
    EXPECT_EQ(clipboard_text(content, false, "", true), L"Data\r\n12.5E3\r\n");
    drawn.measure.isVisible = false;
    EXPECT_EQ(clipboard_text(content, false, "", true), L"");
}

TEST_F(MeasurementTest, CalibrationFitsAPitchToACurve)
{
    // Lines at 0, 100, 200 and 300 nm for a grating of 110 nm
    const auto positions = curve_positions(map, {{0, 0}, {1, 0}, {2, 0}, {3, 0}});
    EXPECT_EQ(positions, (std::vector<double>{0, 100, 200, 300}));
    const auto table = calibrate(positions, 110.0);
    ASSERT_TRUE(table);
    EXPECT_DOUBLE_EQ(table->pitch, 100.0);
    EXPECT_DOUBLE_EQ(table->factor, 1.1);
    EXPECT_NEAR(table->deviation, 0.0, 1e-12);
    // 0, 3, 3 by least squares: slope 1.5, offset 0.5; residuals -0.5, 1, -0.5
    const auto bent = calibrate({0, 3, 3}, 1.5);
    ASSERT_TRUE(bent);
    EXPECT_DOUBLE_EQ(bent->pitch, 1.5);
    EXPECT_DOUBLE_EQ(bent->offset, 0.5);
    EXPECT_DOUBLE_EQ(bent->deviation, std::sqrt(0.5));
    EXPECT_EQ(calibration_text(*bent, "nm"),
              L"N\tPosition, nm\tNominal, nm\tFit, nm\tResidual, nm\r\n0\t0\t0\t0.5\t-0.5\r\n1\t3\t1.5\t2\t1\r\n"
              L"2\t3\t3\t3.5\t-0.5\r\nPitch, nm\t1.5\r\nOffset, nm\t0.5\r\nNominal / measured\t1\r\n"
              L"RMS residual, nm\t0.707107\r\n");
    EXPECT_EQ(calibrate({0.1, 0.2, 0.3, 0.4, 0.5}, 0.1)->deviation, 0.0) << "rounding is no residual";
    EXPECT_FALSE(calibrate({0, 1}, 1.0)) << "two points fit any pitch";
    EXPECT_FALSE(calibrate({0, 1, 2}, 0.0));
    EXPECT_FALSE(calibrate({2, 1, 0}, 1.0));
    // back at its start a curve counts along itself: 100, then 400 down, then back over hypot(100, 400)
    EXPECT_DOUBLE_EQ(curve_positions(map, {{0, 0}, {1, 0}, {1, 2}, {0, 0}}).back(), 500.0 + std::hypot(100.0, 400.0));
}

} // namespace
