// Skeletons: what they keep of an area, and that every form gives the same.
#include "primitives/kernel_forms.h"
#include "primitives/map/byte_mask.h"
#include "primitives/mask/boundary.h"
#include "primitives/mask/thinning.h"
#include "primitives/mask/thinning_rule.h"
#include "primitives/numeric.h"

#include <gtest/gtest.h>
#include <random>

namespace {

struct field {
    std::vector<unsigned char> samples;
    int width = 0, height = 0;

    field(int width_, int height_) : samples(static_cast<std::size_t>(width_ * height_)), width(width_), height(height_)
    {
    }
    /// From a picture: "#" is set.
    explicit field(const std::vector<std::string>& rows)
        : field(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()))
    {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                at(x, y) = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#';
    }
    unsigned char& at(int x, int y) { return samples[static_cast<std::size_t>(y * width + x)]; }
    bool has(int x, int y) const
    {
        return x >= 0 && y >= 0 && x < width && y < height && samples[static_cast<std::size_t>(y * width + x)] != 0;
    }
    int count() const
    {
        return static_cast<int>(std::count_if(samples.begin(), samples.end(), [](int v) { return v; }));
    }
    field thinned() const
    {
        field out = *this;
        findSkeletonByThinning(out.samples.data(), width, width, height, 2);
        return out;
    }
};

/// Pieces of what is set (over sides and corners) or clear (over sides only), the outside included in the latter.
int pieces(const field& of, bool isSet)
{
    const int width = of.width + 2, height = of.height + 2;
    std::vector<char> open(static_cast<std::size_t>(width * height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) open[static_cast<std::size_t>(y * width + x)] = of.has(x - 1, y - 1) == isSet;
    int count = 0;
    for (int first = 0; first < width * height; ++first) {
        if (open[static_cast<std::size_t>(first)] == 0) continue;
        ++count;
        open[static_cast<std::size_t>(first)] = 0;
        std::vector<int> left{first};
        while (!left.empty()) {
            const int at = left.back();
            left.pop_back();
            for (int way = 0; way < 8; way += isSet ? 1 : 2) {
                const int x = at % width + primitives::boundarySteps[way].x;
                const int y = at / width + primitives::boundarySteps[way].y;
                if (x < 0 || y < 0 || x >= width || y >= height || open[static_cast<std::size_t>(y * width + x)] == 0)
                    continue;
                open[static_cast<std::size_t>(y * width + x)] = 0;
                left.push_back(y * width + x);
            }
        }
    }
    return count;
}

/// A sample that no connection needs and that is no end: clearing it changes neither pieces, and it has two neighbours
/// at a right angle over its sides.
bool has_idle_corner(const field& skeleton)
{
    for (int y = 0; y < skeleton.height; ++y)
        for (int x = 0; x < skeleton.width; ++x) {
            const bool isCorner = (skeleton.has(x - 1, y) || skeleton.has(x + 1, y)) &&
                                  (skeleton.has(x, y - 1) || skeleton.has(x, y + 1));
            if (!skeleton.has(x, y) || !isCorner) continue;
            field without = skeleton;
            without.at(x, y) = 0;
            if (pieces(without, true) == pieces(skeleton, true) && pieces(without, false) == pieces(skeleton, false))
                return true;
        }
    return false;
}

void expect_skeleton(const field& area, const field& skeleton)
{
    for (std::size_t i = 0; i < area.samples.size(); ++i)
        ASSERT_TRUE(skeleton.samples[i] == 0 || skeleton.samples[i] == area.samples[i]);
    ASSERT_EQ(pieces(skeleton, true), pieces(area, true));
    ASSERT_EQ(pieces(skeleton, false), pieces(area, false));
    ASSERT_FALSE(has_idle_corner(skeleton));
}

TEST(Thinning, KeepsConnectionsOfEverySmallPattern)
{
    for (unsigned pattern = 0; pattern < 1u << 16; pattern += 1) {
        field area(4, 4);
        for (unsigned i = 0; i < 16; ++i) area.samples[i] = static_cast<unsigned char>(pattern >> i & 1);
        const field skeleton = area.thinned();
        ASSERT_EQ(pieces(skeleton, true), pieces(area, true)) << pattern;
        ASSERT_EQ(pieces(skeleton, false), pieces(area, false)) << pattern;
    }
}

TEST(Thinning, KeepsConnectionsOfAnyArea)
{
    std::mt19937 random(5);
    for (int round = 0; round < 150; ++round) {
        field area(3 + static_cast<int>(random() % 90), 3 + static_cast<int>(random() % 25));
        for (int blob = 0; blob < 12; ++blob) {
            const int cx = static_cast<int>(random() % 90), cy = static_cast<int>(random() % 25);
            const int rx = 1 + static_cast<int>(random() % 12), ry = 1 + static_cast<int>(random() % 6);
            for (int y = cy - ry; y <= cy + ry; ++y)
                for (int x = cx - rx; x <= cx + rx; ++x)
                    if (x >= 0 && y >= 0 && x < area.width && y < area.height) area.at(x, y) = blob % 4 != 3 ? 200 : 0;
        }
        for (int i = 0; i < 40; ++i)
            area.samples[random() % area.samples.size()] = static_cast<unsigned char>(random() % 2);
        ASSERT_NO_FATAL_FAILURE(expect_skeleton(area, area.thinned())) << round;
    }
}

TEST(Thinning, LinesStayAndBarsBecomeTheirMiddle)
{
    const field line({".......", ".#####.", ".......", "..#....", "...#...", "....#.."});
    EXPECT_EQ(line.thinned().samples, line.samples);
    field bar(60, 9);
    for (int y = 2; y <= 6; ++y)
        for (int x = 3; x < 57; ++x) bar.at(x, y) = 255;
    const field skeleton = bar.thinned();
    for (int x = 8; x < 52; ++x) EXPECT_TRUE(skeleton.has(x, 4)) << "the middle row is the line of symmetry";
    EXPECT_LE(skeleton.count(), 54);
    field disc(41, 41);
    for (int y = 0; y < 41; ++y)
        for (int x = 0; x < 41; ++x) disc.at(x, y) = (x - 20) * (x - 20) + (y - 20) * (y - 20) <= 300;
    EXPECT_LE(disc.thinned().count(), 4) << "a disc is symmetric about one point";
}

TEST(Thinning, IsTheSameWhereverTheAreaLies)
{
    std::mt19937 random(6);
    for (int round = 0; round < 20; ++round) {
        field area(70, 20), moved(200, 60);
        const int dx = static_cast<int>(random() % 130), dy = static_cast<int>(random() % 40);
        for (int y = 1; y < 19; ++y)
            for (int x = 1; x < 69; ++x) moved.at(x + dx, y + dy) = area.at(x, y) = random() % 8 != 0;
        const field skeleton = area.thinned(), other = moved.thinned();
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 70; ++x) ASSERT_EQ(skeleton.has(x, y), other.has(x + dx, y + dy));
    }
}

TEST(Thinning, EqualsThePlainFormAtEverySize)
{
    std::mt19937 random(7);
    for (const int height : {1, 2, 7, 8, 9, 17, 40})
        for (int width = 1; width < 200; width += width < 68 ? 1 : 23) {
            field area(width, height);
            for (unsigned char& each : area.samples) each = random() % 6 != 0;
            field plain = area;
            primitives::thin_reference(plain.samples.data(), width, height);
            ASSERT_EQ(area.thinned().samples, plain.samples) << width << " x " << height;
        }
}

/// The rule on one sample.
bool is_taken(const primitives::bit_strips& mask, int x, int y, bool isOdd)
{
    const unsigned neighbours = mask.neighbours(x, y);
    const auto at = [neighbours](int way) -> std::uint64_t { return neighbours >> way & 1; };
    std::uint64_t out = 0;
    primitives::thinning_rule::taken_away<std::uint64_t>(
        mask.test(x, y) ? 1 : 0, {at(2), at(1), at(0), at(7), at(6), at(5), at(4), at(3)}, isOdd, out);
    return out != 0;
}

TEST(Thinning, AStepTakesInEveryFormWhatTheRuleTakes)
{
    std::mt19937 random(8);
    primitives::bit_strips mask;
    mask.assign(300, 77);
    for (int y = 0; y < 77; ++y)
        for (int x = 0; x < 300; ++x)
            if (random() % 7 != 0) mask.set(y, x, x + 1);
    for (const auto& form : forms_of(&primitives::kernel_table::thinningStep))
        for (const std::uint32_t number : {1u, 2u}) {
            primitives::bit_strips out = mask;
            std::vector<std::uint32_t> awake(static_cast<std::size_t>((mask.strips() + 2) * (mask.tilesOfStrip() + 2)),
                                             2);
            std::vector<std::uint64_t> scratch(primitives::thinning_step::scratchWords(mask), ~0ull);
            EXPECT_TRUE(form.run({out, scratch.data(), awake.data(), number}));
            for (int y = 0; y < 77; ++y)
                for (int x = 0; x < 300; ++x)
                    ASSERT_EQ(out.test(x, y), mask.test(x, y) && !is_taken(mask, x, y, number == 1))
                        << form.name << ' ' << x << ", " << y;
        }
}

TEST(Thinning, HonoursTheStride)
{
    field area({"###..", "###..", "###.."});
    findSkeletonByThinning(area.samples.data(), 5, 3, 3, 2);
    field alone({"###", "###", "###"});
    alone = alone.thinned();
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) EXPECT_EQ(area.has(x, y), alone.has(x, y));
    findSkeletonByThinning(nullptr, 0, 0, 0, 2);
}

TEST(ByteMask, EveryFormPacksAndKeeps)
{
    std::mt19937 random(9);
    std::vector<std::uint8_t> bytes(300);
    for (std::uint8_t& each : bytes) each = random() % 3 == 0 ? 0 : static_cast<std::uint8_t>(random());
    const auto packers = forms_of(&primitives::kernel_table::packBytes, primitives::pack_bytes_reference);
    const auto keepers = forms_of(&primitives::kernel_table::keepBytes, primitives::keep_bytes_reference);
    for (int width = 0; width < 290; ++width) {
        for (const auto& form : packers) {
            std::uint64_t words[15] = {};
            form.run(bytes.data() + 3, width, words, 3);
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(words[x / 64 * 3] >> x % 64 & 1, bytes[static_cast<std::size_t>(x + 3)] != 0 ? 1u : 0u)
                    << form.name;
        }
        const std::uint64_t words[9] = {0x123456789ABCDEF0, 0, 0x8000000000000001, 0, ~0ull, 0, 5, 0, 0xFF00FF00FF00FF};
        for (const auto& form : keepers) {
            std::vector<std::uint8_t> kept = bytes;
            form.run(words, 2, kept.data() + 3, width);
            for (int x = 0; x < 290; ++x) {
                const bool stays = x >= width || (words[x / 64 * 2] >> x % 64 & 1) != 0;
                ASSERT_EQ(kept[static_cast<std::size_t>(x + 3)], stays ? bytes[static_cast<std::size_t>(x + 3)] : 0)
                    << form.name;
            }
        }
    }
}

} // namespace
