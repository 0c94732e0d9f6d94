#include "curves/force_curve.h"
#include "curves/force_map.h"
#include "curves/force_packs.h"
#include "curves/physical.h"
#include "document/fixtures.h"
#include "primitives/cpu.h"

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

/// The rule as it stands, one curve after the other.
curves::force_maps mapped_one_by_one(const curves::force_volume& volume)
{
    curves::force_maps out;
    const auto n = static_cast<std::size_t>(volume.length);
    const auto as_16_bits = [](double value) {
        return static_cast<std::int16_t>(static_cast<long long>(std::floor(value + 0.5)));
    };
    for (std::size_t i = 0; i < volume.samples.size() / n; ++i) {
        const std::vector<double> y = curves::physical_values(volume.samples.subspan(i * n, n), volume.values);
        force_curve_stats stats;
        get_force_curve_stats(y.data(), volume.length, 1.0, 1.0, stats);
        out.rigidity.push_back(as_16_bits((stats.slant_b - stats.zero_b) * 1000.0 / volume.position.scale));
        out.adhesion.push_back(as_16_bits(curves::force_minimum(y.data(), stats) / volume.values.scale));
    }
    return out;
}

TEST(ForceMap, IsTheAnalysisOfEachCurve)
{
    for (const int n : {3, 7, 8, 40, 64, 65, 200, 256, 257, 300, 1000})
        for (const double scale : {0.004, -0.01}) {
            const std::vector<std::int16_t> samples = force_curves(n < 300 ? 150 : 37, n); // no whole number of packs
            const curves::force_volume volume{samples, n, VLAxis(0.0, 0.3, "nm"), VLAxis(-5.0, scale, "nN")};
            const curves::force_maps expected = mapped_one_by_one(volume);
            for (const unsigned threads : {1u, 3u}) {
                const curves::force_maps maps = curves::map_forces(volume, {threads, {}});
                EXPECT_EQ(maps.rigidity, expected.rigidity) << n << ' ' << scale;
                EXPECT_EQ(maps.adhesion, expected.adhesion) << n << ' ' << scale;
            }
        }
}

TEST(ForceMap, OfCurvesTooLongForPacksIsTheSame)
{
    constexpr int n = (1 << 16) + 10;
    const std::vector<std::int16_t> samples = force_curves(2, n);
    const curves::force_volume volume{samples, n, VLAxis(0.0, 0.001, "nm"), VLAxis(0.0, 0.01, "nN")};
    EXPECT_EQ(curves::map_forces(volume).rigidity, mapped_one_by_one(volume).rigidity);
}

TEST(ForceMap, FindsSlopesAndAdhesion)
{
    // 20 raw steps of 0.5 nN over 2000 nm: -5 thousandths. 300 raw steps below the free line before the probe leaves.
    constexpr int n = 250;
    std::vector<std::int16_t> samples;
    for (int i = 0; i < n; ++i) samples.push_back(static_cast<std::int16_t>(i < 100 ? 20 * (85 - i) - 20 : 0));
    const curves::force_volume volume{samples, n, VLAxis(0.0, 2000.0, "nm"), VLAxis(7.0, 0.5, "nN")};
    const curves::force_maps maps = curves::map_forces(volume);
    ASSERT_EQ(maps.rigidity.size(), 1u);
    EXPECT_NEAR(maps.rigidity[0], -5, 1);
    // The first sample of the zero stretch still lies in the jump, which tilts the line a little.
    EXPECT_NEAR(maps.adhesion[0], -300, 15);
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
    EXPECT_TRUE(curves::map_forces({}).rigidity.empty());
    EXPECT_TRUE(curves::map_forces({std::span<const std::int16_t>(), 5}).rigidity.empty());
    const curves::force_volume flat{samples, 16, VLAxis(0, 0, ""), VLAxis(0, 0, "")};
    EXPECT_EQ(curves::map_forces(flat).adhesion.size(), 1000u); // no scale: no number, but no harm
}

TEST(ForcePacks, MarkTheSameStepsInEachForm)
{
    using form = void (*)(const curves::pack_source&, const curves::pack_thresholds&, curves::pack_work&) noexcept;
    std::vector<form> forms{curves::mark_steps_plain, curves::mark_steps};
#if defined(__x86_64__)
    if (primitives::has_avx2()) forms.push_back(curves::mark_steps_avx2);
    if (primitives::has_avx512()) forms.push_back(curves::mark_steps_avx512);
#endif
    const curves::pack_thresholds thresholds{0.7, 1.5};
    for (const int n : {8, 9, 15, 63, 64, 65, 129, 256, 257, 320, 777, 1024}) {
        const std::vector<std::int16_t> samples = force_curves(curves::packLanes, n);
        const curves::curve_smoother smoother(n);
        curves::pack_source source{{}, 0.37, 12.5};
        for (int lane = 0; lane < curves::packLanes; ++lane) source.curves[lane] = samples.data() + lane * n;
        for (const form each : forms) {
            curves::pack_work work(smoother);
            each(source, thresholds, work);
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
    SPMDataStream::dimension along = volume.get_dimension(0);
    along.set_axis(0, VLAxis(0, 1, "V"));
    volume.set_dimension(0, along);
    EXPECT_EQ(curves::volume_of(volume, 0).values.scale, 2.0);

    const std::vector<std::int16_t> map{1, 2, 3, 4, 5, 6};
    const SPMDataStream image = curves::map_stream(volume, map, "img7", "Rigidity1", VLAxis(0, 0.5, "N/m"));
    EXPECT_STREQ(image.get_name(), "img7");
    EXPECT_EQ(image.get_dimension(0), volume.get_dimension(1));
    EXPECT_EQ(image.get_dimension(1), volume.get_dimension(2));
    EXPECT_EQ(image.array_length(), 6u);
    EXPECT_EQ(image.array_type(), SPM_ARRAY_INT16);
}

} // namespace
