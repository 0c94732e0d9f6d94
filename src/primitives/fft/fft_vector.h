// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/fft/fft_tiles.h"
#include "primitives/simd/vector.h"

namespace vldv::primitives::fft {
namespace {

using simd::load;
using simd::shuffled;
using simd::store;
using simd::vec;
/// Numbers in a register: half a register of small ones fits several times into the lanes of a tile.
using simd::wide;

template <class Number>
struct complex_vec {
    vec<Number> re, im;
};

template <class Number>
inline complex_vec<Number> times(complex_vec<Number> x, const Number* pair)
{
    return {x.re * pair[0] - x.im * pair[1], x.re * pair[1] + x.im * pair[0]};
}

/// Real and imaginary parts out of pairs in two vectors, and back.
template <class Number>
inline complex_vec<Number> split_pairs(vec<Number> a, vec<Number> b)
{
    return {shuffled<[](int i) { return 2 * i; }>(a, b), shuffled<[](int i) { return 2 * i + 1; }>(a, b)};
}

template <class Number>
inline void store_pairs(Number* to, complex_vec<Number> x)
{
    constexpr int n = wide<Number>;
    store(to, shuffled<[](int i) { return i / 2 + i % 2 * n; }>(x.re, x.im));
    store(to + n, shuffled<[](int i) { return (n + i) / 2 + i % 2 * n; }>(x.re, x.im));
}

/// Swaps the parts off the diagonal of all blocks of 2 * Step, until the whole is transposed.
template <int Step, class Number>
inline void transpose_from(vec<Number>* v)
{
    constexpr int n = wide<Number>;
    if constexpr (Step < n) {
        for (int i = 0; i < n; ++i)
            if ((i & Step) == 0) {
                const vec<Number> a = v[i], b = v[i + Step];
                v[i] = shuffled<[](int k) { return (k & Step) ? n + k - Step : k; }>(a, b);
                v[i + Step] = shuffled<[](int k) { return (k & Step) ? n + k : k + Step; }>(a, b);
            }
        transpose_from<2 * Step, Number>(v);
    }
}

template <class Number>
inline void transpose(vec<Number> (&v)[wide<Number>])
{
    transpose_from<1, Number>(v);
}

} // namespace
} // namespace vldv::primitives::fft
