// How curves stand in a pane, and what the text below them tells of their marks.
#include "base/text.h"
#include "curves/figures/display/curve_points.h"
#include "curves/figures/display/section_text.h"
#include "curves/figures/display/spectrum_display.h"
#include "curves/figures/placed_points.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <set>

namespace {

using namespace vldv::curves;

CMinMaxInfo range_of(const std::vector<std::int16_t>& curve)
{
    CMinMaxInfo range;
    range.Readjust(curve.data(), static_cast<unsigned>(curve.size()));
    return range;
}

TEST(CurvePane, PutsTheEndsOfCurvesAndRangesOnTheEdges)
{
    const std::vector<std::int16_t> curve{-50, 0, 50, 150};
    const VLAxis values(3.0, 2.0, "nm"); // -97 … 303 nm
    const auto pane = [&](const std::optional<fixed_heights>& fixed) {
        return make_pane({31, 101}, 4, range_of(curve), values, values.start, fixed);
    };
    const curve_pane whole = pane({});
    EXPECT_EQ(whole.column(0), 0);
    EXPECT_EQ(whole.column(3), 30);
    EXPECT_EQ(whole.row(-50), 100);
    EXPECT_EQ(whole.row(150), 0);
    EXPECT_EQ(whole.row(50), 50);
    EXPECT_DOUBLE_EQ(whole.share(50), 0.5);
    // 0.8 µm over 100 rows: 8 nm a row; -97 nm at the lower edge, or 0.1 µm.
    EXPECT_EQ(pane(fixed_heights{"µm", 0.8, {}}).row(150), 50);
    const curve_pane raised = pane(fixed_heights{"µm", 0.8, 0.1});
    EXPECT_EQ(raised.row(0), 100 - static_cast<int>(std::lround((3 - 100) / 8.0)));
    EXPECT_TRUE(raised.isFixed);
    const pane_heights heights =
        heights_of(raised, range_of(curve), values, values.start, fixed_heights{"µm", 0.8, 0.1});
    EXPECT_DOUBLE_EQ(heights.range, 800.0);
    EXPECT_DOUBLE_EQ(heights.start, 100.0);
    for (const fixed_heights& useless : {fixed_heights{"V", 1.0, {}}, {"nm", 0.0, {}}, {"nm", -1.0, {}}})
        EXPECT_FALSE(pane(useless).isFixed) << useless.units;
    const curve_pane flat = make_pane({1, 1}, 1, range_of({7}), values, 3.0, {});
    EXPECT_EQ(flat.row(7), 0);
    EXPECT_EQ(flat.column(0), 0);
}

/// What a line through points covers: the pixels of its upright parts, and its other parts.
std::pair<std::set<std::pair<int, int>>, std::vector<std::array<int, 4>>> covered(const std::vector<CPoint>& points)
{
    std::set<std::pair<int, int>> pixels;
    std::vector<std::array<int, 4>> slanted;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const CPoint a = points[i - 1], b = points[i];
        if (a.x != b.x) {
            slanted.push_back({a.x, a.y, b.x, b.y});
            continue;
        }
        for (int y = std::min(a.y, b.y); y <= std::max(a.y, b.y); ++y) pixels.insert({a.x, y});
    }
    return {pixels, slanted};
}

TEST(CurvePoints, FewCoverWhatAllCover)
{
    std::mt19937 random(5);
    for (const int samples : {1, 2, 99, 100, 399, 401, 1000, 4097, 100'003}) {
        std::vector<std::int16_t> curve(static_cast<std::size_t>(samples));
        int at = 0;
        for (std::int16_t& each : curve)
            each =
                static_cast<std::int16_t>(at = std::clamp(at + static_cast<int>(random() % 401) - 200, -30000, 30000));
        for (const int width : {1, 2, 17, 100}) {
            const curve_pane pane = make_pane({width, 80}, static_cast<std::uint32_t>(samples), range_of(curve),
                                              VLAxis(0, 1, "nm"), 0.0, {});
            std::vector<CPoint> few, all;
            curve_points(curve, pane, 0, {3, 4}, few);
            curve_points_reference(curve, pane, 0, {3, 4}, all);
            EXPECT_EQ(covered(few), covered(all)) << samples << " in " << width;
            if (samples > 8 * width && width > 1) { EXPECT_LE(few.size(), static_cast<std::size_t>(4 * width)); }
        }
    }
}

TEST(CurvePoints, APartOfACurveCoversWhatItCoversOfTheWhole)
{
    std::mt19937 random(6);
    std::vector<std::int16_t> curve(50'000);
    int at = 0;
    for (std::int16_t& each : curve)
        each = static_cast<std::int16_t>(at = std::clamp(at + static_cast<int>(random() % 401) - 200, -30000, 30000));
    const auto inside = [](const auto& shown, int width) { // what lies in the pane, with the lines that enter it
        std::set<std::pair<int, int>> pixels;
        for (const auto& each : shown.first)
            if (each.first >= 3 && each.first < 3 + width) pixels.insert(each);
        std::vector<std::array<int, 4>> lines;
        for (const auto& each : shown.second)
            if (each[2] >= 3 && each[0] < 3 + width) lines.push_back(each);
        return std::pair(pixels, lines);
    };
    for (const platform::shown_part part :
         {platform::shown_part{0.25, 0.75}, {0.9, 1.0}, {0.5, 0.502}, {0.3, 0.30004}}) {
        curve_pane pane = make_pane({100, 80}, 50'000, range_of(curve), VLAxis(0, 1, "nm"), 0.0, {});
        pane.part = part;
        std::vector<CPoint> few, all;
        curve_points(curve, pane, 0, {3, 4}, few);
        curve_points_reference(curve, pane, 0, {3, 4}, all);
        EXPECT_EQ(inside(covered(few), 100), inside(covered(all), 100)) << part.from;
        EXPECT_LE(few.size(), 408u) << "what is out of sight costs nothing";
    }
}

TEST(PlacedPoints, KeepTheirPlaceAndComeBack)
{
    placed_points placed;
    std::vector<grid_point> points{{39, 7}, {3, 19}};
    const std::vector<grid_point> put = points;
    placed.settle({40, 20}, points);
    EXPECT_EQ(points, put);
    placed.settle({80, 10}, points);
    EXPECT_EQ(points, (std::vector<grid_point>{{78, 4}, {6, 10}}));
    placed.settle({1, 1}, points);
    placed.settle({40, 20}, points);
    EXPECT_EQ(points, put) << "as they were";
    placed.settle({80, 40}, points);
    placed.forget(); // the user moves one
    points[0] = {10, 10};
    placed.settle({80, 40}, points);
    placed.settle({40, 20}, points);
    EXPECT_EQ(points[0], (grid_point{5, 5}));
}

TEST(ShownPart, ZoomsAroundAPlaceAndStaysInside)
{
    const platform::shown_part half = platform::zoomed({}, 2.0, 0.3, 1001);
    EXPECT_DOUBLE_EQ(half.from, 0.15);
    EXPECT_DOUBLE_EQ(half.to, 0.65);
    EXPECT_EQ(platform::zoomed(half, 0.5, 0.9, 1001), platform::shown_part());
    EXPECT_DOUBLE_EQ(platform::zoomed({}, 2.0, 1.0, 1001).to, 1.0);
    EXPECT_DOUBLE_EQ(platform::panned(half, 0.5).from, 0.4);
    EXPECT_DOUBLE_EQ(platform::panned(half, 9.0).to, 1.0);
    EXPECT_DOUBLE_EQ(platform::panned(half, -9.0).from, 0.0);
    platform::shown_part close;
    for (int i = 0; i < 200; ++i) close = platform::zoomed(close, 1.25, 0.5, 1001);
    EXPECT_NEAR(close.width(), 0.002, 1e-12) << "two steps of a thousand";
    EXPECT_EQ(platform::zoomed({}, 2.0, 0.5, 1), platform::shown_part()) << "one sample is all";
}

TEST(SectionText, TellsDistancesAreasAnglesAndTimes)
{
    const std::vector<std::int16_t> curve{0, 4, 8, 4, 0};
    const VLAxis x(0, 3.0, "nm"), y(0, 1.0, "nm"), volts(0, 0.5, "V");
    const auto text = [&](stretch_value wanted, const VLAxis& values, bool angle = false, bool relative = true) {
        section_marks_told told;
        told.wanted = wanted;
        told.tellsAngle = angle;
        told.isRelative = relative;
        told.marks = {2.0, 0.0}; // backwards
        told.firstValue = 8 * values.scale;
        told.secondValue = 0;
        told.lineSamples = 5;
        told.rate = 2.0;
        return marks_text(curve, x, values, told);
    };
    EXPECT_EQ(text(stretch_value::length, y), "dX: -6 nm\tdY: -8 nm");
    EXPECT_EQ(text(stretch_value::length, y, false, false), "dX: 6 nm\tdY: 8 nm");
    EXPECT_EQ(text(stretch_value::length, volts), "dX: -6 nm\tdY: -4 V");
    EXPECT_EQ(text(stretch_value::fullLength, y), "dL: 10 nm\tdY: -8 nm") << "two steps of 3 and 4";
    EXPECT_EQ(text(stretch_value::fullLength, volts), "dX: -6 nm\tdY: -4 V");
    EXPECT_EQ(text(stretch_value::integral, y), "dI: 12 nm^2\tdY: -8 nm") << "0 and 4 nm, each for 3 nm";
    EXPECT_EQ(text(stretch_value::integral, volts), "dI: 6 Vxnm\tdY: -4 V");
    EXPECT_EQ(text(stretch_value::chordArea, y), "dS: -12 nm^2\tdY: -8 nm") << "12 less 2 times 4 times 3";
    EXPECT_EQ(text(stretch_value::time, y), "Time: " + std::string("90.9091 ms\tdY: -8 nm")) << "2000 / 2 / 11";
    EXPECT_EQ(text(stretch_value::length, y, true), "dX: -6 nm\tAngle: 53.1301 deg") << "atan(8 / 6)";
    EXPECT_EQ(text(stretch_value::length, volts, true), "dX: -6 nm\tAngle: 0 deg");
    section_marks_told crossbar;
    crossbar.mode = marks_mode::crossbar;
    crossbar.position = 2500;
    crossbar.value = -0.25;
    EXPECT_EQ(marks_text(curve, x, y, crossbar), "X: 2.5 µm\tY: -250 pm");
    crossbar.mode = marks_mode::none;
    EXPECT_EQ(marks_text(curve, x, y, crossbar), "\t");
}

TEST(SpectrumDisplay, TellsWavelengthPhaseAndPower)
{
    const curve_spectrum spectrum{{0.0f, 2.0f, 4.0f}, {0.0f, 1.0f, -1.0f}, 4.0f}; // of four samples
    const VLAxis x(0, 10.0, "nm"), y(0, 1.0, "V");
    EXPECT_EQ(spectrum_text(spectrum, 0.0, 4, x, y, {}), "X: 0 (DC)\tS: 0\tPhase: 0");
    EXPECT_EQ(spectrum_text(spectrum, 1.5, 4, x, y, {}), "X: 26.6667 nm\tS: 0.75\tPhase: 0") << "40 nm in 1.5 periods";
    EXPECT_EQ(spectrum_text(spectrum, 2.0, 4, x, y, {false, true, 8.0}),
              "X: 8 Hz\tS: 4 V^2\tPhase: " + std::string("-57.2958"));
    EXPECT_EQ(spectrum_points(spectrum, 4, {5, 8}, {0, 0}), (std::vector<CPoint>{{0, 7}, {2, 3}, {4, -1}}));
    EXPECT_EQ(phase_points(spectrum, 4, {5, 8}, {1, 2}).front(), (CPoint{1, 2 + 3}));
}

TEST(ForceText, NamesSlopeAdhesionAndValleys)
{
    force_curve_stats stats;
    const std::vector<std::int16_t> curve{10, 0, -4, -2, 0, 0};
    const VLAxis x(0, 2.0, "nm"), y(0, 1.0, "nN"), time(0, 2.0, "s");
    EXPECT_EQ(force_text(curve, x, y, stats), "");
    stats.slant_last = 1;
    stats.slant_b = -10.0;
    EXPECT_EQ(force_text(curve, x, y, stats), "\tdF/dZ: -5 nN/nm");
    EXPECT_EQ(force_text(curve, time, y, stats), "\tdF/dt: -5 nN/s");
    stats.zero_first = 4;
    stats.zero_last = 5;
    stats.min_index = 2;
    stats.allocate_valleys(1);
    stats.valleys[0] = {1, 4};
    // Trapezoids of 0, -4, -2, 0 below 0: (2 + 3 + 1) * 2 nm
    EXPECT_EQ(force_text(curve, x, y, stats), "\tdF/dZ: -5 nN/nm\tFmin: -4 nN\t\tS1: 12 nNxnm");
}

} // namespace
