// What the bundled palettes promise, by the published formulas of colour science and not by those they were made with.
#include "view/scale/palette_folder.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <map>

namespace {

using three = std::array<double, 3>;

three linear_of(colorEntry color)
{
    three out{};
    for (int i = 0; i < 3; ++i) {
        const double level = (color >> 8 * i & 255u) / 255.0;
        out[static_cast<std::size_t>(i)] = level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
    }
    return out;
}

/// CIELAB under D65 of linear sRGB.
three lab_of(const three& rgb)
{
    constexpr double toXyz[3][3] = {
        {0.4124564, 0.3575761, 0.1804375}, {0.2126729, 0.7151522, 0.0721750}, {0.0193339, 0.1191920, 0.9503041}};
    constexpr double white[3] = {0.95047, 1.0, 1.08883}, edge = 6.0 / 29.0;
    three f{};
    for (std::size_t i = 0; i < 3; ++i) {
        const double t = (toXyz[i][0] * rgb[0] + toXyz[i][1] * rgb[1] + toXyz[i][2] * rgb[2]) / white[i];
        f[i] = t > edge * edge * edge ? std::cbrt(t) : t / (3 * edge * edge) + 4.0 / 29.0;
    }
    return {116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])};
}

/// What an eye without red or without green cones sees: Viénot, Brettel and Mollon, Color Res. Appl. 24, 243 (1999).
three without_cones(const three& rgb, bool isProtan)
{
    const double red = rgb[0], green = rgb[1], blue = rgb[2];
    if (isProtan) {
        const double yellow = 0.11238 * red + 0.88762 * green;
        return {yellow, yellow, 0.00401 * red - 0.00401 * green + blue};
    }
    const double yellow = 0.29275 * red + 0.70725 * green;
    return {yellow, yellow, -0.02234 * red + 0.02234 * green + blue};
}

double distance(const three& a, const three& b) { return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]); }

std::map<std::string, color_table> bundled()
{
    std::map<std::string, color_table> out;
    const auto folder = std::filesystem::path(VLDV_TEST_DATA).parent_path().parent_path().parent_path();
    for (view::file_palette& each : view::read_palette_folder(folder / "interface/palettes"))
        out[each.name] = std::move(each.table);
    return out;
}

TEST(BundledPalettes, LightnessRisesEvenly)
{
    auto palettes = bundled();
    ASSERT_EQ(palettes.size(), 5u);
    for (const char* name : {"Even gray", "Even fire", "Blue to yellow"}) {
        const color_table& table = palettes.at(name);
        ASSERT_EQ(table.size(), 256u) << name;
        const double first = lab_of(linear_of(table.front()))[0], last = lab_of(linear_of(table.back()))[0];
        EXPECT_GT(last - first, 80.0) << name;
        for (std::size_t i = 0; i < table.size(); ++i)
            EXPECT_NEAR(lab_of(linear_of(table[i]))[0], first + (last - first) * double(i) / 255.0, 0.4)
                << name << ' ' << i << ": as near as 8 bits allow";
    }
}

TEST(BundledPalettes, CubehelixIsThatOfItsPaper)
{
    // By hand, t = 0.5: angle 2 pi (1/6 + 1 - 0.75), its cosine -0.86603 and sine 0.5, amplitude 1/8; r = 0.5 +
    // (0.14861 * 0.86603 + 1.78277 * 0.5) / 8 = 0.62751, g = 0.47497, b = 0.28642; 255 levels, t = 127.5 / 255.
    const color_table table = bundled().at("Cubehelix");
    const three wanted = {0.62751 * 255, 0.47497 * 255, 0.28642 * 255};
    for (int i = 0; i < 3; ++i) {
        const auto channel = [i](colorEntry color) { return double(color >> 8 * i & 255u); };
        EXPECT_NEAR((channel(table[127]) + channel(table[128])) / 2, wanted[static_cast<std::size_t>(i)], 1.0);
    }
    EXPECT_EQ(table.front(), 0u);
    EXPECT_EQ(table.back(), 0xffffffu);
}

TEST(BundledPalettes, ColourBlindEyesTellHeightsApart)
{
    constexpr std::size_t apart = 64;         // a quarter of the heights
    constexpr double clearlyDifferent = 10.0; // just noticeable are 2.3
    for (const auto& [name, table] : bundled())
        for (const bool isProtan : {true, false})
            for (std::size_t i = 0; i < table.size(); ++i)
                for (std::size_t j = i + apart; j < table.size(); ++j)
                    ASSERT_GT(distance(lab_of(without_cones(linear_of(table[i]), isProtan)),
                                       lab_of(without_cones(linear_of(table[j]), isProtan))),
                              clearlyDifferent)
                        << name << ' ' << i << ' ' << j;
}

} // namespace
