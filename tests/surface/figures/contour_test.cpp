// Lines traced on samples: isolines, ridges, and what is measured along them.
#include "surface/figures/measure/isoline.h"
#include "surface/figures/measure/lengthy_object.h"
#include "surface/figures/measure/ridge_path.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace {

using points = std::vector<CPoint>;

/// A frame from a picture, its first row the highest; "#" is high.
struct picture {
    std::vector<std::int16_t> samples;
    int width = 0, height = 0;

    explicit picture(const std::vector<std::string>& rows)
        : width(static_cast<int>(rows[0].size())), height(static_cast<int>(rows.size()))
    {
        for (auto row = rows.rbegin(); row != rows.rend(); ++row)
            for (const char each : *row) samples.push_back(each == '#' ? 10 : 0);
    }
    surface::sample_frame frame() const { return {samples, width, height}; }
};

TEST(Isoline, GoesAroundWithTheLowSideOnTheRight)
{
    const picture block({"....", ".##.", ".##.", "...."});
    // East along the lower edge, north, west, south.
    EXPECT_EQ(surface::trace_isoline(block.frame(), {1, 1}), points({{1, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 1}}));
    const picture line({"....", "###.", "...."});
    EXPECT_EQ(surface::trace_isoline(line.frame(), {0, 1}), points({{0, 1}, {1, 1}, {2, 1}, {1, 1}, {0, 1}}));
    const picture all({"##", "##"});
    EXPECT_EQ(surface::trace_isoline(all.frame(), {0, 0}), points({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}}))
        << "the edge of the image bounds it";
}

TEST(Isoline, IsNothingWhereThereIsNoLine)
{
    const picture alone({"...", ".#.", "..."}), flat({"...", "...", "..."});
    const picture single({"#"});
    const std::string lower = "No isoline: all samples around are lower",
                      level = "No isoline: all samples around are at least as high",
                      outside = "No isoline: the sample lies outside of the image";
    const struct {
        surface::sample_frame frame;
        CPoint seed;
        std::string reason;
    } cases[] = {{alone.frame(), {1, 1}, lower},
                 {single.frame(), {0, 0}, lower},
                 {flat.frame(), {1, 1}, level},
                 {flat.frame(), {3, 1}, outside},
                 {{}, {0, 0}, outside}};
    for (const auto& each : cases) {
        EXPECT_TRUE(surface::trace_isoline(each.frame, each.seed).empty());
        EXPECT_EQ(surface::why_no_isoline(each.frame, each.seed), each.reason);
    }
}

TEST(Isoline, BeginsBesideASeedThatTouchesLowerSamplesByACornerAlone)
{
    const picture pocket({"#####", "###.#", "#####", "#####", "#####"}); // the hole is 3, 3
    EXPECT_EQ(surface::trace_isoline(pocket.frame(), {2, 3}).size(), 5u);
    // From 2, 2 a turn from the east passes the hole in the north-east and leads north, and from there around the hole.
    EXPECT_EQ(surface::trace_isoline(pocket.frame(), {2, 2}), points({{2, 3}, {3, 4}, {4, 3}, {3, 2}, {2, 3}}));
    EXPECT_STREQ(surface::why_no_isoline(pocket.frame(), {2, 2}), "");
    const picture notch({"#####", "#####", "#####", "####."}); // the outside, by the corner of the image
    const points line = surface::trace_isoline(notch.frame(), {3, 1});
    EXPECT_EQ(line.front(), (CPoint{4, 1}));
    EXPECT_EQ(line.size(), 14u) << "12 straight steps and one aslant, and the start";
    EXPECT_TRUE(surface::is_closed(line));
}

TEST(Isoline, LeavesOutWhatWasNotMeasured)
{
    // Two by two measured samples of the lowest height, which the others hold as well.
    const std::vector<std::int16_t> samples(16, 3);
    const std::vector<primitives::sample_run> unmeasured{{0, 5}, {7, 2}, {11, 5}}, allButOne{{0, 5}, {6, 10}};
    const surface::sample_frame frame{samples, 4, 4, unmeasured};
    EXPECT_EQ(surface::trace_isoline(frame, {1, 1}), points({{1, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 1}}));
    EXPECT_TRUE(surface::trace_isoline(frame, {0, 0}).empty());
    EXPECT_STREQ(surface::why_no_isoline(frame, {0, 0}), "No isoline: the sample was not measured");
    EXPECT_TRUE(surface::trace_isoline({samples, 4, 4, allButOne}, {1, 1}).empty());
}

TEST(Isoline, IsClosedAndConnectedOnAnySamples)
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        const int width = 1 + static_cast<int>(random() % 12), height = 1 + static_cast<int>(random() % 12);
        std::vector<std::int16_t> samples(static_cast<std::size_t>(width * height));
        for (std::int16_t& each : samples) each = static_cast<std::int16_t>(random() % 3);
        const surface::sample_frame frame{samples, width, height};
        const CPoint seed{static_cast<int>(random() % static_cast<unsigned>(width)),
                          static_cast<int>(random() % static_cast<unsigned>(height))};
        const points contour = surface::trace_isoline(frame, seed);
        EXPECT_EQ(contour.empty(), *surface::why_no_isoline(frame, seed) != '\0');
        if (contour.empty()) continue;
        EXPECT_TRUE(surface::is_closed(contour));
        const CSize first = contour.front() - seed;
        EXPECT_LE(std::max(std::abs(first.cx), std::abs(first.cy)), 1);
        for (std::size_t i = 0; i < contour.size(); ++i) {
            ASSERT_TRUE(frame.contains(contour[i]));
            EXPECT_GE(frame.at(contour[i]), frame.at(seed));
            if (i == 0) continue;
            const CSize step = contour[i] - contour[i - 1];
            EXPECT_EQ(std::max(std::abs(step.cx), std::abs(step.cy)), 1);
            bool isAtEdge = false;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) {
                    const CPoint near{contour[i].x + dx, contour[i].y + dy};
                    isAtEdge |= !frame.contains(near) || frame.at(near) < frame.at(seed);
                }
            EXPECT_TRUE(isAtEdge) << "a sample inside";
        }
    }
}

TEST(RidgePath, FollowsTheHighGround)
{
    const picture bend(
        {"..........", ".#######..", ".#.....#..", ".#.....#..", ".#.....#..", "..........", ".........."});
    const points path = surface::ridge_path(bend.frame(), {1, 2}, {7, 2});
    ASSERT_FALSE(path.empty());
    EXPECT_EQ(path.front(), (CPoint{1, 2}));
    EXPECT_EQ(path.back(), (CPoint{7, 2}));
    for (const CPoint& at : path) EXPECT_EQ(bend.frame().at(at), 10);
    const points flat = surface::ridge_path(picture({".....", ".....", "....."}).frame(), {0, 0}, {4, 2});
    EXPECT_EQ(flat.size(), 5u) << "the shortest way where all is level";
    EXPECT_EQ(surface::ridge_path(bend.frame(), {3, 3}, {3, 3}), points({{3, 3}}));
    EXPECT_TRUE(surface::ridge_path(bend.frame(), {3, 3}, {10, 3}).empty());
}

TEST(LengthyObject, ObjectsOfAnImageShareOneMask)
{
    document::decorations kept;
    const VLAxis x(100, 2, "nm"), y(0, 3, "nm");
    const auto store = [&](const points& path, CSize image) {
        surface::lengthy_mask mask(&kept, {x, y, image});
        mask.add(path);
        const VLPluginDecoration record = mask.record(x, y);
        kept.set(surface::lengthyMaskKey, &record, 1, DEC_IMAGE_SURFACE);
    };
    store({{0, 0}, {1, 0}}, {4, 3});
    store({{3, 2}, {4, 2}}, {4, 3}); // the last lies outside
    const document::decoration& mask = kept.all().at(surface::lengthyMaskKey).members.at(0);
    EXPECT_EQ(mask.coordinates, std::vector<double>({100, 0, 108, 9}));
    EXPECT_EQ(mask.elements.at(0).bytes, std::vector<unsigned char>({1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
}

TEST(LengthyObject, ObjectsStayWhereTheyAreOnOtherSamples)
{
    const VLAxis x(100, 2, "nm"), y(0, 3, "nm");
    surface::lengthy_mask traced(nullptr, {x, y, {4, 3}});
    traced.add(points{{0, 0}, {1, 0}, {3, 2}});
    document::decorations kept;
    const VLPluginDecoration record = traced.record(x, y);
    kept.set(surface::lengthyMaskKey, &record, 1, DEC_IMAGE_SURFACE);
    const struct {
        const char* what;
        VLAxis x, y;
        CSize size;
        std::string rows; ///< row 0 first
    } cases[] = {
        {"as it was", x, y, {4, 3}, "##.. .... ...#"},
        {"calibrated anew", {400, 8, "nm"}, {0, 3, "um"}, {4, 3}, "##.. .... ...#"},
        {"finer", {100, 1, "nm"}, {0, 1.5, "nm"}, {8, 6}, "####.... ####.... ........ ........ ......## ......##"},
        {"coarser", {100, 4, "nm"}, {0, 4.5, "nm"}, {2, 2}, "#. .#"},
        {"a part", {104, 2, "nm"}, {3, 3, "nm"}, {2, 2}, ".. .#"},
        {"elsewhere", {200, 2, "nm"}, {3, 3, "nm"}, {2, 1}, ".."},
        {"from the right", {108, -2, "nm"}, y, {5, 3}, "..##. ..... #...."},
    };
    for (const auto& each : cases) {
        const surface::lengthy_mask mask(&kept, {each.x, each.y, each.size});
        std::string rows;
        for (std::size_t i = 0; i < mask.bytes().size(); ++i) {
            if (i && i % static_cast<std::size_t>(each.size.cx) == 0) rows += ' ';
            rows += mask.bytes()[i] ? '#' : '.';
        }
        EXPECT_EQ(rows, each.rows) << each.what;
    }
}

} // namespace
