#include "curves/figures/force/force_curve.h"
#include "curves/figures/force/force_map.h"

#include "base/text/six_digits.h"
#include "curves/figures/force/force_analysis.h"
#include "curves/figures/force/force_packs.h"
#include "curves/figures/physical.h"
#include "document/fixtures.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <random>

namespace {

/// Curves of n samples with contacts of different slope, length and depth, and noise.
std::vector<std::int16_t> force_curves(int count, int n)
{
    std::mt19937 random(static_cast<unsigned>(n));
    std::normal_distribution<double> rough(0.0, 20.0);
    std::vector<std::int16_t> out;
    for (int c = 0; c < count; ++c) {
        const int contact = n / 8 + static_cast<int>(random() % static_cast<unsigned>(n / 4 + 1));
        const double slope = static_cast<double>(random() % 16000) / n, depth = static_cast<double>(random() % 3000);
        const double drift = static_cast<double>(random() % 1000) / n;
        for (int i = 0; i < n; ++i)
            out.push_back(static_cast<std::int16_t>(
                (i < contact ? slope * (contact - i) - depth : drift * (i - contact)) + rough(random)));
    }
    return out;
}

/// The rule as it stands, one curve after the other: thousandths of slopes and steps of the samples, NaN without a
/// line.
struct expected_numbers {
    std::vector<double> rigidity, adhesion;
};

expected_numbers found_one_by_one(const curves::force_volume& volume)
{
    expected_numbers out;
    const auto n = static_cast<std::size_t>(volume.length);
    for (std::size_t i = 0; i < volume.curves(); ++i) {
        const std::size_t held = volume.lengthOf(i);
        const std::vector<double> y = curves::physical_values(volume.samples.subspan(i * n, held), volume.values);
        force_curve_stats stats;
        if (held > 0) get_force_curve_stats(y.data(), static_cast<int>(held), 1.0, 1.0, stats);
        out.rigidity.push_back(stats.hasSlant() ? (stats.slant_b - stats.zero_b) * 1000.0 / volume.position.scale
                                                : NAN);
        out.adhesion.push_back(stats.hasZero() ? curves::force_minimum(y.data(), stats) / std::fabs(volume.values.scale)
                                               : NAN);
    }
    return out;
}

/// \param step  of a sample when it is a number as it is
void expect_map(const curves::force_map& map, const std::vector<double>& numbers, double step)
{
    ASSERT_EQ(map.samples.size(), numbers.size());
    const bool isPlain = map.values.start == 0.0 && map.values.scale == step;
    std::vector<double> finite;
    std::ranges::copy_if(numbers, std::back_inserter(finite), [](double each) { return std::isfinite(each); });
    std::ranges::sort(finite);
    const double middle = finite.empty() ? 0.0 : finite[(finite.size() - 1) / 2] * step;
    // A container keeps six digits: nothing may move when it does.
    EXPECT_DOUBLE_EQ(map.values.start, base::six_digits(map.values.start));
    EXPECT_DOUBLE_EQ(map.values.scale, base::six_digits(map.values.scale));
    std::size_t voids = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (!std::isfinite(numbers[i])) {
            ++voids;
            EXPECT_NEAR(map.values.at(map.samples[i]), middle, 0.500001 * map.values.scale) << i;
        } else if (isPlain) {
            EXPECT_EQ(map.samples[i], std::floor(numbers[i] + 0.5)) << i;
        } else {
            EXPECT_NEAR(map.values.at(map.samples[i]), numbers[i] * step, 0.500001 * map.values.scale) << i;
        }
    }
    EXPECT_EQ(map.voids, voids);
}

void expect_maps(const curves::force_volume& volume, unsigned threads = 0)
{
    const expected_numbers expected = found_one_by_one(volume);
    const curves::force_maps maps = curves::map_forces(volume, {threads, {}});
    expect_map(maps.rigidity, expected.rigidity, 0.001);
    expect_map(maps.adhesion, expected.adhesion, std::fabs(volume.values.scale));
}

TEST(ForceMap, IsTheAnalysisOfEachCurve)
{
    for (const int n : {3, 7, 8, 40, 64, 65, 200, 256, 257, 300, 1000})
        for (const double scale : {0.004, -0.01}) {
            SCOPED_TRACE(std::to_string(n) + " " + std::to_string(scale));
            const std::vector<std::int16_t> samples = force_curves(n < 300 ? 150 : 37, n); // no whole number of packs
            const curves::force_volume volume{samples, n, VLAxis(0.0, 0.3, "nm"), VLAxis(-5.0, scale, "nN")};
            for (const unsigned threads : {1u, 3u}) expect_maps(volume, threads);
        }
}

TEST(ForceMap, OfCurvesTooLongForPacksIsTheSame)
{
    constexpr int n = (1 << 16) + 10;
    const std::vector<std::int16_t> samples = force_curves(2, n);
    expect_maps({samples, n, VLAxis(0.0, 0.001, "nm"), VLAxis(0.0, 0.01, "nN")});
}

TEST(ForceMap, StopsAtTheEndOfEachCurve)
{
    constexpr int n = 120;
    const std::vector<std::int16_t> samples = force_curves(20, n);
    curves::force_volume volume{samples, n, VLAxis(0.0, 0.3, "nm"), VLAxis(-5.0, 0.01, "nN")};
    for (std::size_t i = 0; i < 20; ++i) volume.lengths.push_back(i % 3 == 0 ? n : i % 3 == 1 ? 70 : 0);
    expect_maps(volume);
    EXPECT_GE(curves::map_forces(volume).adhesion.voids, 6u); // every third curve was not measured
}

TEST(ForceMap, KeepsSixteenBitsWhateverTheUnits)
{
    constexpr int n = 200;
    const std::vector<std::int16_t> samples = force_curves(40, n);
    for (const double unit : {1e-12, 1e-9, 1.0, 1e6}) { // forces in N, nN, … over positions in the same length
        const curves::force_volume volume{samples, n, VLAxis(0.0, 0.3, "nm"), VLAxis(unit, 0.01 * unit, "nN")};
        expect_maps(volume);
        const curves::force_maps maps = curves::map_forces(volume);
        const auto [low, high] = std::ranges::minmax(maps.rigidity.samples);
        EXPECT_GT(high - low, 90) << unit; // neither all zero nor wrapped
        EXPECT_STREQ(maps.rigidity.values.get_units(), "nN/nm");
    }
}

TEST(ForceMap, GoesOverPositionsThatFall)
{
    constexpr int n = 150;
    const std::vector<std::int16_t> samples = force_curves(12, n);
    std::vector<std::int16_t> places; // one sub-image for all
    for (int i = 0; i < 12 * n; ++i) places.push_back(static_cast<std::int16_t>(-3 * (i % n)));
    curves::force_volume over{samples, n, VLAxis(9.0, 0.1, "nm"), VLAxis(-5.0, 0.01, "nN"), places};
    const curves::force_volume along{samples, n, VLAxis(9.0, -0.3, "nm"), VLAxis(-5.0, 0.01, "nN")};
    const curves::force_maps found = curves::map_forces(over), expected = curves::map_forces(along);
    EXPECT_EQ(found.rigidity.samples, expected.rigidity.samples);
    EXPECT_EQ(found.adhesion.samples, expected.adhesion.samples);
    EXPECT_GT(std::ranges::max(found.rigidity.samples), 0); // the force falls where the position falls
}

TEST(ForceMap, GoesNoFurtherThanItsPositions)
{
    constexpr int n = 120, placed = 100;
    SPMDataStream volume = heights("Force", {n, 3, 2}), sensor = heights("Sensor", {placed, 3, 2});
    const std::vector<std::int16_t> samples = force_curves(6, n);
    volume.set_array(samples.data(), 6 * n, 0);
    auto* place = static_cast<std::int16_t*>(sensor.array_data());
    for (int i = 0; i < 6 * placed; ++i) place[i] = static_cast<std::int16_t>(4 * (i % placed) + i / placed);
    const curves::force_volume cut = curves::volume_of(volume, 0, &sensor);
    EXPECT_EQ(cut.lengths, std::vector<std::size_t>(6, placed));
    const curves::force_maps maps = curves::map_forces(cut);
    for (std::size_t i = 0; i < 6; ++i) {
        const auto curve = std::span(samples).subspan(i * n, placed);
        const auto x = std::span(place, 6 * placed).subspan(i * placed, placed);
        const auto found = curves::analyse_force({curve, volume.values.get_axis(0), x, sensor.values.get_axis(0)});
        ASSERT_TRUE(found.minimum) << i;
        EXPECT_NEAR(maps.adhesion.values.at(maps.adhesion.samples[i]), *found.minimum, maps.adhesion.values.scale) << i;
    }
}

TEST(ForceMap, FindsSlopesAndAdhesion)
{
    // 20 raw steps of 0.5 nN over 2000 nm: -5 thousandths. 300 raw steps below the free line before the probe leaves.
    constexpr int n = 250;
    std::vector<std::int16_t> samples;
    for (int i = 0; i < n; ++i) samples.push_back(static_cast<std::int16_t>(i < 100 ? 20 * (85 - i) - 20 : 0));
    const curves::force_volume volume{samples, n, VLAxis(0.0, 2000.0, "nm"), VLAxis(7.0, 0.5, "nN")};
    const curves::force_maps maps = curves::map_forces(volume);
    ASSERT_EQ(maps.rigidity.samples.size(), 1u);
    // A handful of thousandths is too coarse: the slope comes as it is.
    EXPECT_NEAR(maps.rigidity.values.at(maps.rigidity.samples[0]), -0.005, 0.0005);
    // The first sample of the zero stretch still lies in the jump, which tilts the line a little.
    EXPECT_NEAR(maps.adhesion.samples[0], -300, 15);
}

TEST(ForceMap, TellsItsProgressAndSurvivesOddVolumes)
{
    const std::vector<std::int16_t> samples = force_curves(1000, 16);
    std::vector<std::size_t> told;
    curves::map_forces({samples, 16}, {2, [&](std::size_t done, std::size_t all) {
                                           EXPECT_EQ(all, 1000u);
                                           told.push_back(done);
                                       }});
    ASSERT_FALSE(told.empty());
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.back(), 1000u);
    EXPECT_TRUE(curves::map_forces({}).rigidity.samples.empty());
    const curves::force_volume flat{samples, 16, VLAxis(0, 0, ""), VLAxis(0, 0, "")};
    EXPECT_EQ(curves::map_forces(flat).adhesion.voids, 1000u); // no scale: no number, but no harm
    const std::vector<std::int16_t> constant(1600, 7);
    EXPECT_EQ(curves::map_forces({constant, 16, VLAxis(0, 1, "nm"), VLAxis(0, 1e-9, "N")}).rigidity.voids, 100u);
}

TEST(ForcePacks, MarkTheSameStepsInEachForm)
{
    const curves::pack_thresholds thresholds{0.7, 1.5};
    for (const int n : {8, 9, 15, 63, 64, 65, 129, 256, 257, 320, 777, 1024}) {
        std::vector<std::int16_t> samples = force_curves(curves::packLanes, n);
        std::fill_n(samples.begin() + n, n, samples[static_cast<std::size_t>(n)]); // the second is constant
        const curves::curve_smoother smoother(n);
        curves::pack_source source{{}, 0.37, 12.5};
        for (int lane = 0; lane < curves::packLanes; ++lane) source.curves[lane] = samples.data() + lane * n;
        for (const curves::pack_form each : curves::available_pack_forms()) {
            curves::pack_work work(smoother);
            curves::mark_steps(source, thresholds, work, each);
            for (int lane = 0; lane < curves::packLanes; ++lane) {
                const std::vector<double> y = curves::physical_values(
                    {source.curves[lane], static_cast<std::size_t>(n)}, VLAxis(source.start, source.scale, ""));
                std::vector<double> steps(y.size());
                smoother.smooth(y.data(), steps.data());
                curves::take_steps(steps.data(), n);
                curves::filter_spikes(steps.data(), n);
                const double spread = curves::spread_of(steps.data(), n);
                for (int i = 0; i < n; ++i) {
                    const double step = steps[static_cast<std::size_t>(i)];
                    EXPECT_EQ(work.steepOf(lane).next(i, true) == i, thresholds.slant * step <= -spread && step != 0.0)
                        << n << ' ' << i;
                    EXPECT_EQ(work.flatOf(lane).next(i, true) == i, std::fabs(step) <= spread * thresholds.zero)
                        << n << ' ' << i;
                }
                EXPECT_EQ(work.steps[static_cast<std::size_t>((n - 2) * curves::packLanes + lane)],
                          steps[static_cast<std::size_t>(n - 2)]);
            }
        }
    }
}

TEST(ForceVolume, TakesItsAxesFromTheImage)
{
    SPMDataStream volume = heights("Force", {4, 3, 2}, 2);
    volume.values.set_axis(0, VLAxis(0.0, 2.0, "nN"));
    volume.values.set_axis(1, VLAxis(1.0, 3.0, "nm")); // the units of the positions
    const curves::force_volume second = curves::volume_of(volume, 1);
    EXPECT_EQ(second.length, 4);
    EXPECT_EQ(second.samples.size(), 24u);
    EXPECT_EQ(second.samples[0], 24);
    EXPECT_EQ(second.values.scale, 3.0);
    EXPECT_EQ(second.position, volume.get_dimension(0).get_axis(0));
    volume.get_dimension(0).set_axis(0, VLAxis(0, 1, "V"));
    EXPECT_EQ(curves::volume_of(volume, 0).values.scale, 2.0);
    EXPECT_EQ(curves::volume_of(volume, 1, nullptr, "4 3 2 1 0 4 1 1 1 1 1 2").lengths,
              (std::vector<std::size_t>{1, 1, 1, 1, 1, 2}));
    const SPMDataStream sensor = heights("Sensor", {4, 3, 2}, 1);
    const curves::force_volume measured = curves::volume_of(volume, 1, &sensor, nullptr, "4 4 4 4 4 2");
    EXPECT_EQ(measured.places.size(), 24u);
    EXPECT_EQ(measured.position, sensor.values.get_axis(0));
    EXPECT_EQ(measured.lengths, (std::vector<std::size_t>{4, 4, 4, 4, 4, 2}));

    const curves::force_map map{{1, 2, 3, 4, 5, 6}, VLAxis(0, 0.5, "N/m"), 0};
    const SPMDataStream image = curves::map_stream(volume, map, "img7", "Rigidity1");
    EXPECT_EQ(image.get_dimension(0), volume.get_dimension(1));
    EXPECT_EQ(image.get_dimension(1), volume.get_dimension(2));
    EXPECT_EQ(image.array_length(), 6u);
    EXPECT_EQ(image.array_type(), SPM_ARRAY_INT16);
}

} // namespace
