// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/fft/fft_vector.h"

namespace vldv::primitives::fft {
namespace {

/// x times -i.
template <class Number>
inline complex_vec<Number> quarter_back(complex_vec<Number> x)
{
    return {x.im, -x.re};
}

template <class Number>
inline complex_vec<Number> operator+(complex_vec<Number> a, complex_vec<Number> b)
{
    return {a.re + b.re, a.im + b.im};
}

template <class Number>
inline complex_vec<Number> operator-(complex_vec<Number> a, complex_vec<Number> b)
{
    return {a.re - b.re, a.im - b.im};
}

template <class Number>
inline void butterfly4(complex_vec<Number>& a, complex_vec<Number>& b, complex_vec<Number>& c, complex_vec<Number>& d)
{
    const auto s0 = a + c, s1 = a - c, s2 = b + d, s3 = quarter_back(b - d);
    a = s0 + s2;
    b = s1 + s3;
    c = s0 - s2;
    d = s1 - s3;
}

/// Transform of 8 by two of 4.
template <class Number>
inline void butterfly8(complex_vec<Number> (&x)[8])
{
    constexpr auto half = static_cast<Number>(0.70710678118654752440);
    auto a0 = x[0] + x[4], a1 = x[1] + x[5], a2 = x[2] + x[6], a3 = x[3] + x[7];
    auto b0 = x[0] - x[4];
    const auto d1 = x[1] - x[5], d3 = x[3] - x[7];
    auto b2 = quarter_back(x[2] - x[6]);
    complex_vec<Number> b1{(d1.re + d1.im) * half, (d1.im - d1.re) * half};
    complex_vec<Number> b3{(d3.im - d3.re) * half, (d3.re + d3.im) * -half};
    butterfly4(a0, a1, a2, a3);
    butterfly4(b0, b1, b2, b3);
    x[0] = a0;
    x[2] = a1;
    x[4] = a2;
    x[6] = a3;
    x[1] = b0;
    x[3] = b1;
    x[5] = b2;
    x[7] = b3;
}

/// Transform of an odd number: elements the same way from both ends share their products.
template <int Radix, class Number>
inline void butterfly_odd(complex_vec<Number> (&x)[Radix], const Number* roots)
{
    constexpr int half = Radix / 2;
    complex_vec<Number> sum[half], difference[half], first = x[0];
    for (int q = 0; q < half; ++q) {
        sum[q] = x[q + 1] + x[Radix - 1 - q];
        difference[q] = x[q + 1] - x[Radix - 1 - q];
        first = first + sum[q];
    }
    for (int p = 1; p <= half; ++p) {
        complex_vec<Number> even = x[0], odd{};
        for (int q = 1; q <= half; ++q) {
            const Number* root = roots + 2 * (p * q % Radix);
            even = even + complex_vec<Number>{sum[q - 1].re * root[0], sum[q - 1].im * root[0]};
            odd = odd + complex_vec<Number>{difference[q - 1].re * root[1], difference[q - 1].im * root[1]};
        }
        const complex_vec<Number> turned{-odd.im, odd.re};
        x[p] = even + turned;
        x[Radix - p] = even - turned;
    }
    x[0] = first;
}

template <int Radix, class Number>
inline void butterfly(complex_vec<Number> (&x)[Radix], const Number* roots)
{
    if constexpr (Radix == 8) {
        butterfly8(x);
    } else if constexpr (Radix == 4) {
        butterfly4(x[0], x[1], x[2], x[3]);
    } else if constexpr (Radix == 2) {
        const auto sum = x[0] + x[1];
        x[1] = x[0] - x[1];
        x[0] = sum;
    } else {
        butterfly_odd<Radix>(x, roots);
    }
}

/// One pass over `count` blocks, one behind the other.
template <int Radix, class Number>
void split(Number* block, const pass<Number>& how, int count)
{
    const std::ptrdiff_t row = rowNumbers<Number>, step = how.stride * row;
    for (int b = 0; b < count; ++b, block += Radix * step) {
        const Number* twiddles = how.twiddles;
        for (int j = 0; j < how.stride; ++j, twiddles += 2 * (Radix - 1))
            for (int h = 0; h < lanes<Number>; h += wide<Number>) {
                Number* const at = block + j * row + h;
                complex_vec<Number> x[Radix];
                for (int q = 0; q < Radix; ++q) x[q] = {load(at + q * step), load(at + q * step + lanes<Number>)};
                butterfly<Radix>(x, how.roots);
                for (int p = 0; p < Radix; ++p) {
                    // The first twiddles are 1: the last pass has no others.
                    if (p > 0 && j > 0) x[p] = times(x[p], twiddles + 2 * (p - 1));
                    store(at + p * step, x[p].re);
                    store(at + p * step + lanes<Number>, x[p].im);
                }
            }
    }
}

template <class Number>
void split_any(Number* block, const pass<Number>& how, int count)
{
    switch (how.radix) {
    case 2:
        return split<2>(block, how, count);
    case 3:
        return split<3>(block, how, count);
    case 4:
        return split<4>(block, how, count);
    case 5:
        return split<5>(block, how, count);
    case 7:
        return split<7>(block, how, count);
    case 8:
        return split<8>(block, how, count);
    case 11:
        return split<11>(block, how, count);
    default:
        return split<13>(block, how, count);
    }
}

/// All passes, block by block, so that the later ones find theirs in the nearest cache.
template <class Number>
void run_passes(Number* block, const pass<Number>* passes, int count)
{
    if (count == 0) return;
    split_any(block, passes[0], 1);
    if (count == 2) return split_any(block, passes[1], passes[0].radix);
    for (int p = 0; p < passes[0].radix; ++p)
        run_passes(block + std::ptrdiff_t{p} * passes[0].stride * rowNumbers<Number>, passes + 1, count - 1);
}

template <class Number>
inline complex_vec<Number> load_complex(const Number* at)
{
    return {load(at), load(at + lanes<Number>)};
}

/// Bluestein: the lines times a chirp, convolved with the chirp's mirror image, times the chirp.
/// \return the result, in the second half of the work space
template <class Number>
Number* convolve(const transform<Number>& how, Number* tile)
{
    const std::ptrdiff_t row = rowNumbers<Number>;
    Number* const other = tile + how.rows * row;
    for (int j = 0; j < how.length; ++j)
        for (int h = 0; h < lanes<Number>; h += wide<Number>) {
            Number* const at = tile + j * row + h;
            const auto x = times(load_complex(at), how.chirp + 2 * std::ptrdiff_t{j});
            store(at, x.re);
            store(at + lanes<Number>, x.im);
        }
    std::memset(tile + how.length * row, 0, sizeof(Number) * static_cast<std::size_t>((how.rows - how.length) * row));
    run_passes(tile, how.passes, how.passCount);
    // Real and imaginary parts change places before and after: that makes it the way back.
    for (int i = 0; i < how.rows; ++i)
        for (int h = 0; h < lanes<Number>; h += wide<Number>) {
            const std::ptrdiff_t from = how.position[i];
            const auto x = times(load_complex(tile + from * row + h), how.response + 2 * from);
            store(other + i * row + h, x.im);
            store(other + i * row + h + lanes<Number>, x.re);
        }
    run_passes(other, how.passes, how.passCount);
    for (int i = 0; i < how.length; ++i)
        for (int h = 0; h < lanes<Number>; h += wide<Number>) {
            Number* const at = other + how.position[i] * row + h;
            const complex_vec<Number> swapped = load_complex(at);
            const auto x = times(complex_vec<Number>{swapped.im, swapped.re}, how.chirp + 2 * std::ptrdiff_t{i});
            store(at, x.re);
            store(at + lanes<Number>, x.im);
        }
    return other;
}

/// Transforms the lines of a tile. \return where the result stands
template <class Number>
Number* transform_lines(const transform<Number>& how, Number* tile)
{
    if (how.chirp) return convolve(how, tile);
    run_passes(tile, how.passes, how.passCount);
    return tile;
}

/// Where the parts of a number stand in a row of a tile. They change places on the way back, which makes the forward
/// transform the inverse one.
template <class Number>
struct part_order {
    explicit part_order(bool inverse) : re(inverse ? lanes<Number> : 0), im(lanes<Number> - re) {}
    int re, im;
};

} // namespace
} // namespace vldv::primitives::fft
