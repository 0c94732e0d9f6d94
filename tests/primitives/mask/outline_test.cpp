// Walks around areas, against a walk along the sides between samples, and the position that areas are thinned in.
#include "primitives/mask/boundary.h"
#include "primitives/mask/mask_position.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

namespace {

using primitives::bit_strips;
using primitives::mask_position;

/// From a picture whose first row is row 0: "#" is set.
bit_strips mask_of(const std::vector<std::string>& rows)
{
    bit_strips mask;
    mask.assign(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()));
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x)
            if (rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#') mask.set(y, x, x + 1);
    return mask;
}

/// How many steps of a walk lie along rows, along columns, and aslant.
using steps = std::array<int, 3>;

std::pair<int, int> first_of(const bit_strips& mask)
{
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x)
            if (mask.test(x, y)) return {x, y};
    return {-1, -1};
}

steps walked(const bit_strips& mask)
{
    const auto [startX, startY] = first_of(mask);
    steps count{};
    int lastX = startX, lastY = startY;
    primitives::walk_outline(
        startX, startY, [&mask](int x, int y) { return mask.neighbours(x, y); },
        [&](int x, int y) {
            EXPECT_TRUE(mask.test(x, y));
            EXPECT_LE(std::max(std::abs(x - lastX), std::abs(y - lastY)), 1);
            if (x != lastX || y != lastY) ++count[y == lastY ? 0 : x == lastX ? 1 : 2];
            lastX = x;
            lastY = y;
        });
    EXPECT_EQ(std::pair(lastX, lastY), std::pair(startX, startY)) << "it ends where it began";
    return count;
}

/// Follows the sides between set and clear samples around the outside, from the lower side of the first sample, with
/// the set samples on the left. From side to side the walk from sample to sample goes on by one where the sides lie in
/// a line, stays where they turn left around a sample, and goes aslant where they turn right.
steps followed_sides(const bit_strips& mask)
{
    const auto [startX, startY] = first_of(mask);
    steps count{};
    int x = startX, y = startY, dx = 1, dy = 0; // the sample on the left and the way ahead
    do {
        const int rightX = dy, rightY = -dx;
        if (mask.test(x + dx + rightX, y + dy + rightY)) {
            x += dx + rightX;
            y += dy + rightY;
            std::tie(dx, dy) = std::pair(rightX, rightY);
            ++count[2];
        } else if (mask.test(x + dx, y + dy)) {
            x += dx;
            y += dy;
            ++count[dy != 0];
        } else {
            std::tie(dx, dy) = std::pair(-rightX, -rightY);
        }
    } while (x != startX || y != startY || dx != 1);
    return count;
}

TEST(Outline, OfAPictureIsWhatOneCountsByHand)
{
    const struct {
        std::vector<std::string> rows;
        steps expected;
    } cases[] = {
        {{"#"}, {0, 0, 0}},
        {{"####"}, {6, 0, 0}},
        {{"##", "##"}, {2, 2, 0}},
        {{".#.", "#.#", ".#."}, {0, 0, 4}},                // a ring: not into its hole
        {{"###", "#.#", "###"}, {4, 4, 0}},                // the same where the hole lies beside the start
        {{"..#..", ".#.#.", "#...#"}, {0, 0, 8}},          // both arms of a roof
        {{"#...#", ".#.#.", "..#..", "..#.."}, {0, 2, 8}}, // both arms of a fork, from the end of one
        {{"#.#", ".#.", "#.#"}, {0, 0, 8}},                // four arms that meet in one sample
        {{".#.", "###", ".#."}, {0, 0, 4}},
    };
    for (const auto& each : cases) EXPECT_EQ(walked(mask_of(each.rows)), each.expected) << each.rows[0];
}

/// One connected area: what a random walk with a brush leaves, and then loses in a few places.
bit_strips random_area(std::mt19937& random, int width, int height)
{
    bit_strips all, area;
    all.assign(width, height);
    area.assign(width, height);
    int x = width / 2, y = height / 2;
    for (int i = 0; i < width * height / 3; ++i) {
        const auto& step = primitives::boundarySteps[random() % 8];
        x = std::clamp(x + step.x, 0, width - 1);
        y = std::clamp(y + step.y, 0, height - 1);
        all.set(y, x, std::min(x + 1 + static_cast<int>(random() % 2), width));
    }
    for (int i = 0; i < width * height / 12; ++i)
        all.clear(static_cast<int>(random() % static_cast<unsigned>(width)),
                  static_cast<int>(random() % static_cast<unsigned>(height)));
    std::vector<std::pair<int, int>> open{first_of(all)};
    while (!open.empty()) {
        const auto [atX, atY] = open.back();
        open.pop_back();
        if (!all.test(atX, atY)) continue;
        all.clear(atX, atY);
        area.set(atY, atX, atX + 1);
        for (const auto& step : primitives::boundarySteps)
            if (atX + step.x >= 0 && atX + step.x < width && atY + step.y >= 0 && atY + step.y < height)
                open.emplace_back(atX + step.x, atY + step.y);
    }
    return area;
}

bit_strips upright(const bit_strips& mask)
{
    bit_strips out;
    out.assign(mask.height(), mask.width());
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x)
            if (mask.test(x, y)) out.setUpright(y, x, x + 1);
    return out;
}

bit_strips laid(const bit_strips& mask, mask_position position)
{
    bit_strips out;
    primitives::lay_mask(mask, upright(mask), position, out);
    return out;
}

mask_position position_of(int number) { return {(number & 4) != 0, (number & 1) != 0, (number & 2) != 0}; }

TEST(Outline, IsAsLongAsTheSidesSayHoweverTheAreaLies)
{
    std::mt19937 random(11);
    for (int round = 0; round < 400; ++round) {
        const bit_strips area =
            random_area(random, 2 + static_cast<int>(random() % 80), 2 + static_cast<int>(random() % 30));
        const steps count = walked(area);
        ASSERT_EQ(count, followed_sides(area)) << round;
        for (int number = 1; number < 8; ++number) {
            steps turned = walked(laid(area, position_of(number)));
            if (number >= 4) std::swap(turned[0], turned[1]);
            ASSERT_EQ(turned, count) << round << ' ' << number;
        }
    }
}

std::string text_of(const bit_strips& mask)
{
    std::string text;
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) text += mask.test(x, y) ? '#' : '.';
        text += '\n';
    }
    return text;
}

TEST(MaskPosition, EightOfThemShowWhatOneCountsByHand)
{
    const bit_strips mask = mask_of({"##.", "#.."});
    const std::set<std::string> expected{"##.\n#..\n",   ".##\n..#\n",   "#..\n##.\n",   "..#\n.##\n",
                                         "##\n#.\n..\n", "##\n.#\n..\n", "..\n#.\n##\n", "..\n.#\n##\n"};
    std::set<std::string> made;
    for (int number = 0; number < 8; ++number) made.insert(text_of(laid(mask, position_of(number))));
    EXPECT_EQ(made, expected);
}

TEST(MaskPosition, TheStandardOneIsTheSameHoweverAnAreaLies)
{
    std::mt19937 random(12);
    for (int round = 0; round < 300; ++round) {
        const int width = 1 + static_cast<int>(random() % 150);
        const bit_strips area =
            random_area(random, width, round % 3 == 0 ? width : 1 + static_cast<int>(random() % 20));
        const bit_strips standard = laid(area, primitives::standard_position(area, upright(area)));
        for (int number = 0; number < 8; ++number) {
            const bit_strips turned = laid(area, position_of(number));
            const mask_position position = primitives::standard_position(turned, upright(turned));
            ASSERT_EQ(text_of(laid(turned, position)), text_of(standard)) << round << ' ' << number;
            const mask_position other = primitives::standard_position(turned, upright(turned), true);
            ASSERT_EQ(text_of(laid(turned, other)), text_of(standard)) << round << ' ' << number;
            for (int y = 0; y < standard.height(); ++y)
                for (int x = 0; x < standard.width(); ++x) {
                    const auto [fromX, fromY] = position.source(standard, x, y);
                    ASSERT_EQ(turned.test(fromX, fromY), standard.test(x, y));
                }
        }
    }
}

} // namespace
