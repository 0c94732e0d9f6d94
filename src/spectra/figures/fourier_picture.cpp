#include "spectra/figures/fourier.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace vldv::spectra {

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

/// A row of the full spectrum and the one that it mirrors.
struct row_pair {
    float *row, *mirror;
    int width;
    void put(int column, float value) const
    {
        row[column] = value;
        mirror[column == 0 ? 0 : width - column] = value;
    }
};
row_pair rows_at(std::span<float> full, int width, int height, int row)
{
    float* const first = full.data();
    const std::size_t step = static_cast<std::size_t>(width);
    return {first + step * std::size_t(row), first + step * std::size_t(row == 0 ? 0 : height - row), width};
}

} // namespace

float spectrum_magnitudes(const frame_spectrum& spectrum, spectrum_mode mode, std::span<float> out)
{
    assert(out.size() == spectrum.packed.size());
    const int width = spectrum.width, height = spectrum.height;
    const auto putMirrored = [&](int x, int column) {
        for (int row = 0; 2 * row <= height; ++row)
            rows_at(out, width, height, row).put(column, magnitude(mirrored_bin(spectrum, x, row), mode));
    };
    if (out.empty()) return 1.0f;
    putMirrored(0, 0);
    if (width % 2 == 0) putMirrored(width - 1, width / 2);
    for (int row = 0; row < height; ++row) {
        const float* const packed = spectrum.packed.data() + std::size_t(row) * std::size_t(width);
        const row_pair pair = rows_at(out, width, height, row);
        // A real image has F(-c, -r) = conj F(c, r), so that one half of the magnitudes gives the other.
        for (int column = 1; 2 * column < width; ++column)
            pair.put(column, magnitude({packed[2 * column - 1], packed[2 * column]}, mode));
    }
    const float largest = *std::max_element(out.begin(), out.end());
    return largest > 0.0f ? largest : 1.0f;
}

void draw_spectrum(std::span<const float> magnitudes, int width, int height, float largest, double contrast,
                   std::span<std::int16_t> out)
{
    assert(magnitudes.size() == out.size());
    draw_spectrum(magnitudes, width, height, largest, contrast, CRect(0, 0, width, height), out);
}

void draw_spectrum(std::span<const float> magnitudes, int width, int height, float largest, double contrast,
                   const CRect& window, std::span<std::int16_t> out)
{
    assert(out.size() == std::size_t(window.Width()) * std::size_t(window.Height()));
    const auto grey = [&](float m) {
        const double share = double(m) / double(largest);
        const double v = contrast == 0.5 ? std::sqrt(share) : std::pow(share, contrast);
        // Spectra that were scaled beyond all measure have bins that are no numbers: they are among the brightest.
        return static_cast<std::int16_t>(static_cast<int>((v < 1.0 ? v : 1.0) * 65535.0 + 0.5) - 32768);
    };
    // The picture has frequency 0 in its middle: rows and columns begin with the negative frequencies, which the
    // transform numbers behind the positive ones.
    const int left = width - zero_frequency(width), top = height - zero_frequency(height);
    const int seam = std::clamp(width - left, window.left, window.right); // the first column of positive frequencies
    std::int16_t* to = out.data();
    for (int y = window.top; y < window.bottom; ++y) {
        const float* const from = magnitudes.data() + std::size_t((top + y) % height) * std::size_t(width);
        to = std::transform(from + left + window.left, from + left + seam, to, grey);
        to = std::transform(from + left + seam - width, from + left + window.right - width, to, grey);
    }
}

} // namespace vldv::spectra
