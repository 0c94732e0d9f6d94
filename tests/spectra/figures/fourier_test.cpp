// Spectra of frames whose transform is known, edits and the way back.
#include "spectra/figures/fourier.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <numeric>

namespace {

using namespace spectra;
using heights = std::vector<std::int16_t>;

constexpr double turn = 2.0 * std::numbers::pi;

template <class Height>
heights make_frame(int width, int height, Height at)
{
    heights samples;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) samples.push_back(static_cast<std::int16_t>(std::lround(at(x, y))));
    return samples;
}

heights rough_frame(int width, int height)
{
    std::uint32_t state = 99;
    return make_frame(width, height, [&](int x, int y) {
        state = state * 1664525u + 1013904223u;
        return 9000.0 * std::sin(x * 0.3) * std::cos(y * 0.2) + 30.0 * x - 20.0 * y + double(state >> 20);
    });
}

heights edited(const heights& samples, int width, int height, std::span<const CRect> drawn, selection_shape shape,
               std::initializer_list<spectrum_edit> edits)
{
    std::vector<CRect> parts;
    for (const CRect& rect : drawn) split_rect(rect, parts);
    frame_spectrum spectrum = transform_frame(samples, width, height);
    for (const spectrum_edit& edit : edits) EXPECT_TRUE(edit_spectrum(spectrum, parts, shape, edit));
    heights out(samples.size());
    restore_frame(spectrum, out);
    return out;
}

int largest_difference(const heights& a, const heights& b)
{
    int worst = 0;
    for (std::size_t i = 0; i < a.size(); ++i) worst = std::max(worst, std::abs(a[i] - b[i]));
    return worst;
}

TEST(FrameSpectrum, LeadsBackToTheSameSamples)
{
    for (const auto& [width, height] : {std::pair(64, 48), {51, 37}, {1, 9}, {9, 1}, {1, 1}, {2, 2}, {101, 64}}) {
        const heights samples = rough_frame(width, height);
        heights back(samples.size());
        restore_frame(transform_frame(samples, width, height), back);
        EXPECT_EQ(back, samples) << width << " x " << height;
    }
    heights extremes = make_frame(64, 64, [](int x, int y) { return (x + y) % 2 ? 32767 : -32768; }), back(64 * 64);
    restore_frame(transform_frame(extremes, 64, 64), back);
    EXPECT_EQ(back, extremes);
}

TEST(FrameSpectrum, OfASineHasTwoBinsOfHalfItsAmplitude)
{
    constexpr int width = 128, height = 96, u = 9, v = -7;
    const heights samples = make_frame(width, height, [](int x, int y) {
        return 500.0 + 8000.0 * std::cos(turn * (double(u) * x / width + double(v) * y / height));
    });
    const frame_spectrum spectrum = transform_frame(samples, width, height);
    std::vector<float> magnitudes(samples.size());
    const float largest = spectrum_magnitudes(spectrum, spectrum_mode::magnitude, magnitudes);
    const auto at = [&](int c, int r) {
        return magnitudes[static_cast<std::size_t>((r + height) % height * width + (c + width) % width)];
    };
    // The plane takes a little of the wave with it.
    EXPECT_NEAR(at(u, v), 4000.0, 40.0);
    EXPECT_EQ(at(u, v), at(-u, -v));
    EXPECT_EQ(largest, at(u, v));
    EXPECT_LT(at(u, -v), 40.0);
    EXPECT_LT(at(0, 0), 1e-2) << "the plane holds the mean";

    std::vector<float> powers(samples.size());
    EXPECT_EQ(spectrum_magnitudes(spectrum, spectrum_mode::power, powers), largest * largest);
    EXPECT_EQ(powers[5], magnitudes[5] * magnitudes[5]);

    heights picture(samples.size());
    draw_spectrum(magnitudes, width, height, largest, 1.0, picture);
    const auto shown = [&](int x, int y) { return picture[static_cast<std::size_t>(y * width + x)]; };
    EXPECT_EQ(shown(64 + u, 48 + v), 32767);
    EXPECT_EQ(shown(64 - u, 48 - v), 32767);
    // (m / largest)^contrast, by hand for one bin of the slope's rest.
    const double share = at(1, 0) / largest;
    for (const double contrast : {0.5, 0.3, 2.0}) {
        draw_spectrum(magnitudes, width, height, largest, contrast, picture);
        EXPECT_NEAR(shown(65, 48), std::pow(share, contrast) * 65535.0 - 32768.0, 0.51) << contrast;
    }
}

TEST(FrameSpectrum, PutsTheZeroFrequencyAtTheUpperHalf)
{
    // 3 x 5: column 2 and row 3 are the first of the spectrum.
    std::vector<float> magnitudes(15);
    std::iota(magnitudes.begin(), magnitudes.end(), 0.0f);
    heights picture(15);
    draw_spectrum(magnitudes, 3, 5, 14.0f, 1.0, picture);
    EXPECT_EQ(picture[3 * 3 + 2], -32768);
    EXPECT_EQ(picture[3 * 3 + 0], static_cast<std::int16_t>(std::lround(65535.0 / 14.0) - 32768)) << "column 1";
    EXPECT_EQ(picture[2 * 3 + 1], 32767) << "the last row and column come before the first";
}

TEST(FrameSpectrum, IsTheFullOneForOddAndEvenSizes)
{
    // Against the sum of the definition.
    for (const auto& [width, height] : {std::pair(6, 4), {5, 4}, {6, 5}, {5, 3}, {1, 4}, {4, 1}, {2, 2}}) {
        frame_spectrum spectrum = transform_frame(rough_frame(width, height), width, height);
        const primitives::fitted_plane plane = spectrum.planeFit;
        const heights samples = rough_frame(width, height);
        std::vector<float> magnitudes(samples.size());
        spectrum_magnitudes(spectrum, spectrum_mode::magnitude, magnitudes);
        for (int r = 0; r < height; ++r)
            for (int c = 0; c < width; ++c) {
                double re = 0.0, im = 0.0;
                for (int y = 0; y < height; ++y)
                    for (int x = 0; x < width; ++x) {
                        const double rest = samples[static_cast<std::size_t>(y * width + x)] -
                                            (plane.offset + plane.slopeX * x + plane.slopeY * y);
                        const double angle = turn * (double(c) * x / width + double(r) * y / height);
                        re += rest * std::cos(angle);
                        im -= rest * std::sin(angle);
                    }
                EXPECT_NEAR(magnitudes[static_cast<std::size_t>(r * width + c)], std::hypot(re, im) / (width * height),
                            1e-2)
                    << width << " x " << height << ": " << c << ", " << r;
            }
    }
}

TEST(FrameSpectrum, OfAFlatFrameIsNothing)
{
    const heights flat(20 * 10, 77);
    frame_spectrum spectrum = transform_frame(flat, 20, 10);
    std::vector<float> magnitudes(flat.size());
    EXPECT_EQ(spectrum_magnitudes(spectrum, spectrum_mode::power, magnitudes), 1.0f);
    heights picture(flat.size());
    draw_spectrum(magnitudes, 20, 10, 1.0f, 0.5, picture);
    EXPECT_EQ(picture, heights(flat.size(), -32768));
    heights back(flat.size());
    restore_frame(spectrum, back);
    EXPECT_EQ(back, flat);
}

/// Two waves that leave the plane alone: even functions around the middle of their periods, whole periods in the frame.
double slow_wave(int x) { return 3000.0 * std::cos(turn * 3.0 * (x + 0.5) / 60.0); }
double fast_wave(int x, int y)
{
    return 1000.0 * std::cos(turn * 12.0 * (x + 0.5) / 60.0) * std::cos(turn * 5.0 * (y + 0.5) / 40.0);
}

TEST(SpectrumEdits, TakeAwayWhatIsSelectedOnBothSidesOfTheOrigin)
{
    const heights both = make_frame(60, 40, [](int x, int y) { return slow_wave(x) + fast_wave(x, y); });
    const heights slow = make_frame(60, 40, [](int x, int) { return slow_wave(x); });
    const heights fast = make_frame(60, 40, [](int x, int y) { return fast_wave(x, y); });
    const struct {
        CRect drawn;
        spectrum_edit edit;
        const heights& left;
    } cases[] = {{{2, -1, 4, 1}, zeroInner, fast},   {{-4, -1, -2, 1}, zeroInner, fast},
                 {{2, -1, 4, 1}, zeroOuter, slow},   {{-3, 0, -3, 0}, zeroOuter, slow},
                 {{10, -7, 14, 7}, zeroInner, slow}, {{-14, -7, 14, 7}, zeroOuter, both}};
    for (const auto& [drawn, edit, left] : cases)
        EXPECT_LE(
            largest_difference(edited(both, 60, 40, std::vector{drawn}, selection_shape::rectangular, {edit}), left), 1)
            << drawn.left << (edit.outside ? " outer" : " inner");
}

TEST(SpectrumEdits, DoNothingWithoutASelection)
{
    frame_spectrum spectrum = transform_frame(rough_frame(16, 16), 16, 16);
    const std::vector<float> before = spectrum.packed;
    for (const spectrum_edit edit : {zeroInner, zeroOuter, increase, decrease})
        EXPECT_FALSE(edit_spectrum(spectrum, {}, selection_shape::elliptic, edit));
    EXPECT_EQ(spectrum.packed, before);
}

TEST(SpectrumEdits, IncreaseThenDecreaseRestoresTheFrame)
{
    for (const auto& [width, height] : {std::pair(64, 48), {51, 37}}) {
        const heights samples = rough_frame(width, height);
        const std::vector<CRect> drawn = {{-9, -5, 4, 8}, {3, 3, 20, 12}};
        const heights back = edited(samples, width, height, drawn, selection_shape::elliptic, {increase, decrease});
        EXPECT_EQ(back, samples);
        EXPECT_NE(edited(samples, width, height, drawn, selection_shape::elliptic, {increase}), samples);
    }
}

TEST(SpectrumEdits, KeepWhatLeavesSixteenBitsAtTheirEnds)
{
    const heights samples = make_frame(60, 40, [](int x, int) { return 8.0 * slow_wave(x); });
    const heights made =
        edited(samples, 60, 40, std::vector{CRect(3, 0, 3, 0)}, selection_shape::rectangular, {increase});
    EXPECT_EQ(made[0], 32767);
    EXPECT_EQ(*std::min_element(made.begin(), made.end()), -32768);
}

TEST(SpectrumEdits, StandScalingBeyondAllMeasure)
{
    const heights samples = rough_frame(24, 20);
    frame_spectrum spectrum = transform_frame(samples, 24, 20);
    const std::vector<CRect> part = {{1, 1, 2, 2}};
    for (int i = 0; i < 200; ++i) edit_spectrum(spectrum, part, selection_shape::rectangular, increase);
    std::vector<float> magnitudes(samples.size());
    const float largest = spectrum_magnitudes(spectrum, spectrum_mode::power, magnitudes);
    heights picture(samples.size());
    draw_spectrum(magnitudes, 24, 20, largest, 0.5, picture);
    EXPECT_EQ(picture[11 * 24 + 13], 32767);
    EXPECT_EQ(picture[10 * 24 + 20], -32768);
    restore_frame(spectrum, picture);
}

TEST(FrameSpectrum, DoesNotDependOnTheNumberOfThreads)
{
    const heights samples = rough_frame(203, 117);
    const frame_spectrum one = transform_frame(samples, 203, 117), several = transform_frame(samples, 203, 117, 4);
    EXPECT_EQ(one.packed, several.packed);
    heights a(samples.size()), b(samples.size());
    restore_frame(one, a);
    restore_frame(several, b, 4);
    EXPECT_EQ(a, b);
}

} // namespace
