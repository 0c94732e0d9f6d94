// From heights to connected areas: masks, runs, sums.
#include "primitives/kernel_forms.h"
#include "primitives/mask/boundary.h"
#include "primitives/mask/connected_runs.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using heights = std::vector<std::int16_t>;
using rectangle = std::array<int, 4>;

heights random_heights(std::size_t count, std::uint32_t seed)
{
    std::mt19937 random(seed);
    heights out(count);
    for (std::int16_t& each : out) each = static_cast<std::int16_t>(random());
    return out;
}

TEST(Threshold, EveryFormTakesWhatIsStrictlyAbove)
{
    const heights all = random_heights(400, 1);
    const auto reference = [](const std::int16_t* row, std::size_t count, std::int16_t threshold,
                              std::uint64_t* bits) noexcept {
        primitives::threshold_row_reference({row, count}, threshold, bits);
    };
    for (const auto& form : forms_of(&primitives::kernel_table::thresholdRow, reference))
        for (std::size_t offset = 0; offset < 33; offset += 3)
            for (std::size_t count = 0; count < 260; count += count < 70 ? 1 : 19) {
                const std::span row(all.data() + offset, count);
                const std::int16_t threshold = count % 5 == 0 ? 32767 : count % 5 == 1 ? -32768 : row[count / 2];
                std::uint64_t bits[6] = {}, expected[6] = {};
                form.run(row.data(), row.size(), threshold, bits);
                for (std::size_t i = 0; i < count; ++i)
                    expected[i / 64] |= static_cast<std::uint64_t>(row[i] > threshold) << i % 64;
                for (int i = 0; i < 6; ++i)
                    ASSERT_EQ(bits[i], expected[i]) << form.name << ' ' << offset << ' ' << count;
            }
}

TEST(RunSums, EveryFormEqualsThePlainOne)
{
    heights all = random_heights(300, 2);
    std::fill_n(all.begin(), 90, std::int16_t{-32768}); // the largest squares there are
    const auto reference = [](const std::int16_t* run, std::size_t count) noexcept {
        return primitives::sum_run_reference({run, count});
    };
    for (const auto& form : forms_of(&primitives::kernel_table::sumRun, reference))
        for (std::size_t offset = 0; offset < 100; offset += 9)
            for (std::size_t count = 0; count < 140; ++count) {
                const std::span run(all.data() + offset, count);
                primitives::run_sums expected;
                for (const std::int16_t height : run) {
                    expected.sum += height;
                    expected.squares += height * height;
                    expected.highest = std::max(expected.highest, height);
                }
                ASSERT_EQ(form.run(run.data(), run.size()), expected) << form.name << ' ' << offset << ' ' << count;
            }
}

/// Areas by filling from sample to sample, in the order of their first.
std::vector<std::vector<int>> filled_areas(const std::vector<char>& set, int width, int height)
{
    std::vector<std::vector<int>> areas;
    std::vector<char> open = set;
    for (int first = 0; first < width * height; ++first) {
        if (open[static_cast<std::size_t>(first)] == 0) continue;
        std::vector<int> area{first};
        open[static_cast<std::size_t>(first)] = 0;
        for (std::size_t i = 0; i < area.size(); ++i)
            for (const auto [dx, dy] : primitives::boundarySteps) {
                const int x = area[i] % width + dx, y = area[i] / width + dy;
                if (x < 0 || y < 0 || x >= width || y >= height || open[static_cast<std::size_t>(y * width + x)] == 0)
                    continue;
                open[static_cast<std::size_t>(y * width + x)] = 0;
                area.push_back(y * width + x);
            }
        std::sort(area.begin(), area.end());
        areas.push_back(std::move(area));
    }
    return areas;
}

std::vector<int> samples_of(const primitives::connected_runs& found, const primitives::connected_runs::area& area,
                            int width)
{
    std::vector<int> samples;
    for (std::uint32_t i = area.firstRun; i != primitives::connected_runs::none; i = found.runs()[i].next)
        for (int x = found.runs()[i].left; x < found.runs()[i].right; ++x)
            samples.push_back(found.runs()[i].row * width + x);
    return samples;
}

TEST(ConnectedRuns, EqualAreasFilledFromSampleToSample)
{
    std::mt19937 random(3);
    primitives::connected_runs found, again;
    primitives::bit_image mask;
    for (int round = 0; round < 400; ++round) {
        const int width = 1 + static_cast<int>(random() % (round % 4 == 0 ? 150 : 20));
        const int height = 1 + static_cast<int>(random() % 30);
        const std::size_t density = 1 + random() % 9;
        heights samples(static_cast<std::size_t>(width * height));
        for (std::int16_t& each : samples)
            each = static_cast<std::int16_t>((random() % 10 < density ? 100 : -100) + static_cast<int>(random() % 50));
        const primitives::const_height_block block{samples.data(), width, height, width * 2};
        found.findAbove(block, 50, mask);
        again.find(mask, block);
        std::vector<char> set(samples.size());
        for (std::size_t i = 0; i < set.size(); ++i) set[i] = samples[i] > 50;
        const auto expected = filled_areas(set, width, height);
        ASSERT_EQ(found.areas().size(), expected.size());
        ASSERT_EQ(again.areas().size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const auto& area = found.areas()[i];
            ASSERT_EQ(samples_of(found, area, width), expected[i]);
            ASSERT_EQ(samples_of(again, again.areas()[i], width), expected[i]);
            ASSERT_EQ(area.pixels, static_cast<std::int64_t>(expected[i].size()));
            rectangle box{width, height, 0, 0};
            primitives::run_sums sums;
            for (const int at : expected[i]) {
                const int x = at % width, y = at / width;
                box = {std::min(box[0], x), std::min(box[1], y), std::max(box[2], x + 1), std::max(box[3], y + 1)};
                const std::int16_t z = samples[static_cast<std::size_t>(at)];
                sums.add({z, z * z, z});
            }
            ASSERT_EQ((rectangle{area.left, area.top, area.right, area.bottom}), box);
            ASSERT_EQ(area.heights, sums);
        }
    }
}

TEST(ConnectedRuns, CornersConnectOnlyWhereTheyCount)
{
    primitives::bit_image mask(6, 3);
    for (const auto& [x, y] : {std::pair{0, 0}, {1, 1}, {2, 2}, {4, 0}, {4, 1}, {5, 2}}) mask.fill(y, x, x + 1, true);
    primitives::connected_runs found;
    found.find(mask, {});
    EXPECT_EQ(found.areas().size(), 2u);
    found.find(mask, {}, primitives::neighbours::overSides);
    ASSERT_EQ(found.areas().size(), 5u);
    EXPECT_EQ(found.areas()[1].pixels, 2) << "one above the other";
}

TEST(ConnectedRuns, NothingGivesNothing)
{
    primitives::connected_runs found;
    primitives::bit_image mask;
    found.findAbove({nullptr, 0, 0, 0}, 0, mask);
    EXPECT_TRUE(found.areas().empty());
    const heights flat(64 * 3);
    found.findAbove({flat.data(), 64, 3, 128}, 0, mask);
    EXPECT_TRUE(found.areas().empty()) << "nothing is above its own height";
}

TEST(BitImage, FillsRangesAcrossWords)
{
    primitives::bit_image mask(200, 2);
    mask.fill(1, -5, 130, true);
    mask.fill(1, 60, 70, false);
    mask.fill(1, 190, 999, true);
    mask.fill(2, 0, 200, true);
    for (int x = -1; x <= 200; ++x) {
        EXPECT_EQ(mask.test(x, 1), (x >= 0 && x < 60) || (x >= 70 && x < 130) || (x >= 190 && x < 200)) << x;
        EXPECT_FALSE(mask.test(x, 0));
    }
    EXPECT_EQ(mask.row(1)[3] >> 8, 0u) << "bits past the width";
}

} // namespace
