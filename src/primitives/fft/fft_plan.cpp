#include "primitives/fft/fft_plan.h"

#include <bit>
#include <cmath>
#include <complex>
#include <cstdint>
#include <numbers>
#include <stdexcept>

namespace vldv::primitives::fft {

namespace {

using complex = std::complex<double>;

/// exp(-2 pi i index / count), from an angle of at most an eighth of the circle, so that it is good to the last bit.
complex root(std::int64_t index, std::int64_t count)
{
    index %= count;
    const std::int64_t quarter = (index * 8 / count + 1) / 2; // nearest multiple of a quarter turn
    // index / count is quarter / 4 of a turn and `rest`. The sine and cosine of the rest alone are computed; each
    // quarter turn multiplies by -i, which only swaps the parts and their signs.
    const double rest = static_cast<double>(4 * index - quarter * count) / static_cast<double>(4 * count);
    const double angle = 2.0 * std::numbers::pi * rest, c = std::cos(angle), s = -std::sin(angle);
    switch (quarter % 4) {
    case 0:
        return {c, s};
    case 1:
        return {s, -c};
    case 2:
        return {-c, -s};
    default:
        return {-s, c};
    }
}

/// The radices of the passes; empty where a prime factor is too large for them.
std::vector<int> radices_of(int length)
{
    std::vector<int> found;
    // The largest powers of two first: fewer passes move the numbers less often.
    for (const int radix : {8, 4, 2, 3, 5, 7, 11, 13})
        for (; length % radix == 0; length /= radix) found.push_back(radix);
    if (length != 1) found.clear();
    return found;
}

bool has_passes(int length) { return length == 1 || !radices_of(length).empty(); }

/// Tables and tiles of longer lines would not fit any memory, and their sizes no int.
constexpr int longestLine = 1 << 28;

int checked(int length)
{
    if (length > longestLine) throw std::length_error("the image is too long to be transformed");
    return length;
}

/// A power of two that holds the convolution of a line with a chirp without wrapping round.
int convolution_length(int length) { return static_cast<int>(std::bit_ceil(static_cast<unsigned>(2 * length - 1))); }

/// Plain transform of a power of two of elements.
std::vector<complex> transformed(std::vector<complex> z)
{
    if (z.size() < 2) return z;
    const std::size_t half = z.size() / 2;
    std::vector<complex> even(half), odd(half);
    for (std::size_t i = 0; i < half; ++i) {
        even[i] = z[2 * i];
        odd[i] = z[2 * i + 1];
    }
    even = transformed(std::move(even));
    odd = transformed(std::move(odd));
    for (std::size_t i = 0; i < half; ++i) {
        const complex turned = odd[i] * root(static_cast<std::int64_t>(i), static_cast<std::int64_t>(z.size()));
        z[i] = even[i] + turned;
        z[i + half] = even[i] - turned;
    }
    return z;
}

template <class Number>
void append(std::vector<Number>& pairs, complex value)
{
    pairs.push_back(static_cast<Number>(value.real()));
    pairs.push_back(static_cast<Number>(value.imag()));
}

} // namespace

template <class Number>
plan<Number>::plan(int length_)
    : length(checked(length_)), rows(has_passes(length_) ? length_ : convolution_length(length_))
{
    addPasses();
    if (rows != length) addChirp();
}

template <class Number>
void plan<Number>::addPasses()
{
    // Each pass splits every block of radix * stride elements: sums over the elements that lie `stride` apart, turned
    // by the twiddles, leave `radix` shorter transforms of length `stride`, which the next pass goes on with.
    const std::vector<int> radices = radices_of(rows);
    tables.reserve(2 * radices.size());
    int block = rows;
    for (const int radix : radices) {
        const int stride = block / radix;
        std::vector<Number>& roots = tables.emplace_back();
        for (int q = 0; q < radix; ++q) append(roots, root(q, radix));
        std::vector<Number>& twiddles = tables.emplace_back();
        for (std::int64_t j = 0; j < stride; ++j)
            for (int p = 1; p < radix; ++p) append(twiddles, root(j * p, block));
        passes.push_back({radix, stride, twiddles.data(), roots.data()});
        block = stride;
    }
    // Each pass sorts the results by their remainder.
    position.assign(static_cast<std::size_t>(rows), 0);
    for (int i = 0; i < rows; ++i) {
        int rest = i;
        for (const pass<Number>& each : passes) {
            position[static_cast<std::size_t>(i)] += rest % each.radix * each.stride;
            rest /= each.radix;
        }
    }
}

template <class Number>
void plan<Number>::addChirp()
{
    // Bluestein: with j k = (j^2 + k^2 - (k - j)^2) / 2 and w(j) = exp(-pi i j^2 / length) the transform sum_j x(j)
    // exp(-2 pi i j k / length) becomes w(k) times the convolution of x(j) w(j) with conj(w(j)). The convolution is
    // done by transforms of a length that has passes; that of conj(w), which is the same for all lines, is made here
    // once and holds the 1 / rows of the way back.
    std::vector<complex> other(static_cast<std::size_t>(rows));
    for (std::int64_t j = 0; j < length; ++j) {
        const complex value = root(j * j, std::int64_t{2} * length);
        append(chirp, value);
        other[static_cast<std::size_t>(j)] = std::conj(value);
        if (j > 0) other[static_cast<std::size_t>(rows - j)] = std::conj(value);
    }
    other = transformed(std::move(other));
    response.resize(2 * other.size());
    for (std::size_t i = 0; i < other.size(); ++i) {
        const auto at = 2 * static_cast<std::size_t>(position[i]);
        response[at] = static_cast<Number>(other[i].real() / rows);
        response[at + 1] = static_cast<Number>(other[i].imag() / rows);
    }
}

template <class Number>
transform<Number> plan<Number>::view() const noexcept
{
    const bool convolves = !chirp.empty();
    return {length,
            rows,
            static_cast<int>(passes.size()),
            passes.data(),
            position.data(),
            convolves ? chirp.data() : nullptr,
            convolves ? response.data() : nullptr};
}

template <class Number>
std::size_t plan<Number>::tileNumbers() const noexcept
{
    return static_cast<std::size_t>(rows) * rowNumbers<Number> * (chirp.empty() ? 1 : 2);
}

template class plan<float>;
template class plan<double>;

} // namespace vldv::primitives::fft
