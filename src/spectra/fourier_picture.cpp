#include "base/rounding.h"
#include "spectra/fourier.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace spectra {

namespace {

/// Both parts of a bin of a column that mirrors itself, row 0 … H / 2.
struct parts {
    float re, im;
};
parts mirrored_bin(const frame_spectrum& spectrum, int x, int row)
{
    const auto at = [&](int y) {
        return spectrum.packed[std::size_t(y) * std::size_t(spectrum.width) + std::size_t(x)];
    };
    if (row == 0) return {at(0), 0.0f};
    if (2 * row == spectrum.height) return {at(spectrum.height - 1), 0.0f};
    return {at(2 * row - 1), at(2 * row)};
}

float magnitude(parts bin, spectrum_mode mode)
{
    // As the square of the rounded magnitude, which is what the picture of powers is defined by.
    const float m = std::sqrt(bin.re * bin.re + bin.im * bin.im);
    return mode == spectrum_mode::power ? m * m : m;
}

/// Writes bin (c, r) and its mirror image.
void put_both(std::span<float> out, int width, int height, int column, int row, float value)
{
    const auto at = [&](int c, int r) -> float& { return out[std::size_t(r) * std::size_t(width) + std::size_t(c)]; };
    at(column, row) = value;
    at((width - column) % width, (height - row) % height) = value;
}

} // namespace

float spectrum_magnitudes(const frame_spectrum& spectrum, spectrum_mode mode, std::span<float> out)
{
    assert(out.size() == spectrum.packed.size());
    const int width = spectrum.width, height = spectrum.height;
    const auto put_mirrored = [&](int x, int column) {
        for (int row = 0; 2 * row <= height; ++row)
            put_both(out, width, height, column, row, magnitude(mirrored_bin(spectrum, x, row), mode));
    };
    if (out.empty()) return 1.0f;
    put_mirrored(0, 0);
    if (width % 2 == 0) put_mirrored(width - 1, width / 2);
    for (int row = 0; row < height; ++row) {
        const float* packed = spectrum.packed.data() + std::size_t(row) * std::size_t(width);
        for (int column = 1; 2 * column < width; ++column)
            put_both(out, width, height, column, row, magnitude({packed[2 * column - 1], packed[2 * column]}, mode));
    }
    const float largest = *std::max_element(out.begin(), out.end());
    return largest > 0.0f ? largest : 1.0f;
}

void draw_spectrum(std::span<const float> magnitudes, int width, int height, float largest, double contrast,
                   std::span<std::int16_t> out)
{
    assert(magnitudes.size() == out.size());
    const auto grey = [&](float m) {
        const double share = double(m) / double(largest);
        const double v = contrast == 0.5 ? std::sqrt(share) : std::pow(share, contrast);
        return static_cast<std::int16_t>(std::clamp(base::round_half_up(v * 65535.0 - 32768.0), -32768.0, 32767.0));
    };
    std::int16_t* to = out.data();
    for (int y = 0; y < height; ++y) {
        const int row = (height - zero_frequency(height) + y) % height;
        const float* from = magnitudes.data() + std::size_t(row) * std::size_t(width);
        for (int x = 0; x < width; ++x) *to++ = grey(from[(width - zero_frequency(width) + x) % width]);
    }
}

} // namespace spectra
