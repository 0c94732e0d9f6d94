// Which numbers of a packed spectrum rectangles select, against the definition on the full spectrum.
#include "spectra/figures/fourier_selection.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <set>

namespace {

using namespace spectra;

std::vector<CRect> parts_of(CRect rect)
{
    std::vector<CRect> list;
    split_rect(rect, list);
    return list;
}

TEST(SelectionParts, LieInTheRightHalfPlaneOnOneSideOfRow0)
{
    const struct {
        CRect rect;
        std::vector<CRect> parts;
    } cases[] = {
        {{1, 2, 3, 4}, {{1, 2, 3, 4}}},
        {{3, 4, 1, 2}, {{1, 2, 3, 4}}},                    // corners in another order
        {{0, -3, 5, 2}, {{0, -3, 5, -1}, {0, 0, 5, 2}}},   // crosses row 0
        {{-4, 1, -2, 3}, {{2, -3, 4, -1}}},                // left: through the origin
        {{-4, -2, -1, 3}, {{1, -3, 4, -1}, {1, 0, 4, 2}}}, // left, and crosses row 0
        {{-2, 1, 3, 4}, {{1, -4, 2, -1}, {0, 1, 3, 4}}},   // crosses column 0
        {{-1, -1, 1, 1}, {{1, -1, 1, -1}, {1, 0, 1, 1}, {0, -1, 1, -1}, {0, 0, 1, 1}}},
        {{0, 0, 0, 0}, {{0, 0, 0, 0}}},
    };
    for (const auto& [rect, parts] : cases) EXPECT_EQ(parts_of(rect), parts) << rect.left << ", " << rect.top;
}

int wrapped(int value, int count) { return (value % count + count) % count; }

/// Where the packed form keeps a bin of the full spectrum, or its mirror image: one number or two.
std::set<std::pair<int, int>> places_of(int c, int r, int width, int height)
{
    if (2 * c > width) return places_of(width - c, (height - r) % height, width, height);
    if (c > 0 && 2 * c < width) return {{2 * c - 1, r}, {2 * c, r}};
    if (2 * r > height) return places_of(c, height - r, width, height);
    const int x = c == 0 ? 0 : width - 1;
    if (r == 0) return {{x, 0}};
    if (2 * r == height) return {{x, height - 1}};
    return {{x, 2 * r - 1}, {x, 2 * r}};
}

bool inside(const CRect& part, int x, int y, selection_shape shape)
{
    if (x < part.left || x > part.right || y < part.top || y > part.bottom) return false;
    const double dx = (x - 0.5 * (part.left + part.right)) / (0.5 * (part.right - part.left + 1));
    const double dy = (y - 0.5 * (part.top + part.bottom)) / (0.5 * (part.bottom - part.top + 1));
    return shape == selection_shape::rectangular || dx * dx + dy * dy < 1.0 + 1e-12;
}

/// All bins of the centred picture that lie in a stored part or whose mirror image does.
std::vector<std::uint8_t> expected_mask(std::span<const CRect> parts, selection_shape shape, int width, int height)
{
    std::vector<std::uint8_t> mask(static_cast<std::size_t>(width * height));
    const int left = (width + 1) / 2, top = (height + 1) / 2;
    for (int v = -top; v < height - top; ++v)
        for (int u = -left; u < width - left; ++u)
            for (const CRect& part : parts)
                if (inside(part, u, v, shape) || inside(part, -u, -v, shape))
                    for (const auto& [x, y] : places_of(wrapped(u, width), wrapped(v, height), width, height))
                        mask[static_cast<std::size_t>(y * width + x)] = 1;
    return mask;
}

TEST(SelectionMask, HoldsBinsAndTheirMirrorImages)
{
    // Drawn in the picture: no rectangle leaves it.
    const CRect rects[] = {{0, 0, 0, 0},   {1, 1, 1, 1},    {-1, -1, 1, 1},  {-2, 0, -1, 1},  {-99, -99, 99, 99},
                           {1, -2, 2, -1}, {-3, -99, 0, 0}, {0, -99, 0, 99}, {-99, 1, 99, 2}, {-99, -1, -99, 1}};
    for (int height = 1; height <= 11; ++height)
        for (int width = 1; width <= 11; ++width)
            for (const CRect& rect : rects)
                for (const auto shape : {selection_shape::rectangular, selection_shape::elliptic}) {
                    const int left = (width + 1) / 2, top = (height + 1) / 2;
                    const CRect drawn(std::max<int>(rect.left, -left), std::max<int>(rect.top, -top),
                                      std::min<int>(rect.right, width - left - 1),
                                      std::min<int>(rect.bottom, height - top - 1));
                    if (drawn.left > drawn.right || drawn.top > drawn.bottom) continue;
                    const std::vector<CRect> parts = parts_of(drawn);
                    std::vector<std::uint8_t> mask(static_cast<std::size_t>(width * height), 77);
                    fill_selection_mask(parts, shape, width, height, mask.data(), static_cast<std::size_t>(width));
                    ASSERT_EQ(mask, expected_mask(parts, shape, width, height))
                        << width << " x " << height << ": " << drawn.left << ", " << drawn.top << " … " << drawn.right
                        << ", " << drawn.bottom;
                }
}

TEST(SelectionMask, KeepsTheBorderOfTheEllipse)
{
    // A circle of 5 bins around (10, 10): the corners fall out, (±1.5 … ±2) on the border stay.
    const CRect circle(8, 8, 12, 12);
    std::vector<std::uint8_t> mask(64 * 64);
    fill_selection_mask(std::vector{circle}, selection_shape::elliptic, 64, 64, mask.data(), 64);
    const char* const rows[] = {" ### ", "#####", "#####", "#####", " ### "};
    for (int y = 8; y <= 12; ++y)
        for (int x = 8; x <= 12; ++x)
            EXPECT_EQ(mask[static_cast<std::size_t>(y * 64 + 2 * x)] == 1, rows[y - 8][x - 8] == '#') << x << ' ' << y;
    // Rows and sides far outside cost no time and select what lies inside.
    const std::vector<CRect> huge = {{0, 0, 1 << 30, 1 << 30}};
    fill_selection_mask(huge, selection_shape::rectangular, 64, 64, mask.data(), 64);
    EXPECT_EQ(mask[0], 1);
    EXPECT_EQ(mask[64 * 33 + 40], 0) << "a negative row";
}

} // namespace
