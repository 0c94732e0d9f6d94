// Included by the sources of the kernels alone, each of which sets VLDV_VECTOR_BYTES and its compiler's instruction
// set. Everything here has internal linkage, so that no source ends up with functions of another instruction set.
#pragma once
#include "primitives/fft/fft_tiles.h"

#include <cstring>
#include <utility>

namespace vldv::primitives::fft {
namespace {

template <class Number>
struct vector_of {
    typedef Number type __attribute__((vector_size(VLDV_VECTOR_BYTES)));
};
template <class Number>
using vec = typename vector_of<Number>::type;
/// Numbers in a vector: half a register of small ones fits several times into the lanes of a tile.
template <class Number>
constexpr int wide = VLDV_VECTOR_BYTES / static_cast<int>(sizeof(Number));

template <class Number>
inline vec<Number> load(const Number* from)
{
    vec<Number> v;
    std::memcpy(&v, from, sizeof v);
    return v;
}

template <class Number>
inline void store(Number* to, vec<Number> v)
{
    std::memcpy(to, &v, sizeof v);
}

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
    return [&]<int... I>(std::integer_sequence<int, I...>) -> complex_vec<Number> {
        return {__builtin_shufflevector(a, b, (2 * I)...), __builtin_shufflevector(a, b, (2 * I + 1)...)};
    }(std::make_integer_sequence<int, wide<Number>>{});
}

template <class Number>
inline void store_pairs(Number* to, complex_vec<Number> x)
{
    constexpr int n = wide<Number>;
    [&]<int... I>(std::integer_sequence<int, I...>) {
        store(to, vec<Number>(__builtin_shufflevector(x.re, x.im, (I / 2 + (I % 2) * n)...)));
        store(to + n, vec<Number>(__builtin_shufflevector(x.re, x.im, (n / 2 + I / 2 + (I % 2) * n)...)));
    }(std::make_integer_sequence<int, n>{});
}

/// Swaps the parts off the diagonal of all blocks of 2 * Step, until the whole is transposed.
template <int Step, class Number>
inline void transpose_from(vec<Number>* v)
{
    constexpr int n = wide<Number>;
    if constexpr (Step < n) {
        [&]<int... I>(std::integer_sequence<int, I...>) {
            for (int i = 0; i < n; ++i)
                if ((i & Step) == 0) {
                    const vec<Number> a = v[i], b = v[i + Step];
                    v[i] = __builtin_shufflevector(a, b, ((I & Step) ? n + I - Step : I)...);
                    v[i + Step] = __builtin_shufflevector(a, b, ((I & Step) ? n + I : I + Step)...);
                }
        }(std::make_integer_sequence<int, n>{});
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
