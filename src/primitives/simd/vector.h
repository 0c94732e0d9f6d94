// Included by the sources of the kernels alone, each of which sets VLDV_VECTOR_BYTES and its compiler's instruction
// set. Everything here, and in the kernels, has internal linkage and calls nothing inline that has not, so that no
// source ends up with functions of another instruction set.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#if defined(__x86_64__)
#include <immintrin.h>
#endif

/// Registers of numbers: the compiler's vectors, and by name what these cannot say, or only in more instructions.
namespace vldv::primitives::simd {
namespace {

template <class Number, int Count>
struct vector_of {
    typedef Number type __attribute__((vector_size(Count * sizeof(Number))));
};
/// Numbers in a register.
template <class Number>
constexpr int wide = VLDV_VECTOR_BYTES / static_cast<int>(sizeof(Number));
template <class Number, int Count = wide<Number>>
using vec = typename vector_of<Number, Count>::type;

template <class Number>
inline vec<Number> load(const Number* from)
{
    vec<Number> v;
    std::memcpy(&v, from, sizeof v);
    return v;
}

template <class Vector>
inline void store(void* to, Vector v)
{
    std::memcpy(to, &v, sizeof v);
}

/// The value in all places.
template <class Number>
inline vec<Number> all(Number value)
{
    return value - vec<Number>{};
}

/// The bits of a register read as other numbers.
template <class Number, class Vector>
inline vec<Number, sizeof(Vector) / sizeof(Number)> as(Vector v)
{
    return reinterpret_cast<vec<Number, sizeof(Vector) / sizeof(Number)>>(v);
}

// VLDV_INTRINSIC(madd_epi16) is the instruction of that name for the registers of the set; where there is none, the
// compiler's vectors must do.
#if VLDV_VECTOR_BYTES == 64
#define VLDV_INTRINSIC(name) _mm512_##name
using register_bits = __m512i;
#elif VLDV_VECTOR_BYTES == 32
#define VLDV_INTRINSIC(name) _mm256_##name
using register_bits = __m256i;
#elif defined(__SSE2__)
#define VLDV_INTRINSIC(name) _mm_##name
using register_bits = __m128i;
#endif
#if defined(VLDV_INTRINSIC)
template <class Vector>
inline register_bits bits(Vector v)
{
    return reinterpret_cast<register_bits>(v);
}
#endif

// Place by place; the second where the two do not compare, as the processor has it.
template <class Vector>
inline Vector lower(Vector a, Vector b)
{
    return a < b ? a : b;
}
template <class Vector>
inline Vector higher(Vector a, Vector b)
{
    return a > b ? a : b;
}

#if defined(VLDV_INTRINSIC)
// Beside a constant the compiler does not find these.
inline vec<float> lower(vec<float> a, vec<float> b) { return VLDV_INTRINSIC(min_ps)(a, b); }
inline vec<float> higher(vec<float> a, vec<float> b) { return VLDV_INTRINSIC(max_ps)(a, b); }
#endif

/// Place i of the result is place `From(i)` of the two, one behind the other.
template <auto From, class Vector>
inline Vector shuffled(Vector a, Vector b)
{
    constexpr int count = sizeof(Vector) / sizeof a[0];
    return [&]<int... I>(std::integer_sequence<int, I...>) -> Vector {
        return __builtin_shufflevector(a, b, From(I)...);
    }(std::make_integer_sequence<int, count>{});
}

/// Places 0, 2, 4 … of the two.
template <class Vector>
inline Vector even_places(Vector a, Vector b)
{
    return shuffled<[](int i) { return 2 * i; }>(a, b);
}

/// The two in turn, within each 16 bytes: of their lower or of their upper halves.
template <bool Upper, class Vector>
inline Vector interleaved(Vector a, Vector b)
{
    constexpr int count = sizeof(Vector) / sizeof a[0], block = 16 / static_cast<int>(sizeof a[0]);
    return shuffled<[](int i) {
        return i / block * block + (Upper ? block / 2 : 0) + i % block / 2 + (i % 2 != 0 ? count : 0);
    }>(a, b);
}

/// All places taken together, two by two, until so many are left.
template <int Left = 1, class Vector, class Join>
inline auto folded(Vector v, Join join)
{
    constexpr int half = sizeof(Vector) / sizeof v[0] / 2;
    if constexpr (half < Left) {
        return v;
    } else if constexpr (half == 1) {
        return join(v[0], v[1]);
    } else {
        return [&]<int... I>(std::integer_sequence<int, I...>) {
            return folded<Left>(join(__builtin_shufflevector(v, v, I...), __builtin_shufflevector(v, v, (I + half)...)),
                                join);
        }(std::make_integer_sequence<int, half>{});
    }
}

/// Sums of pairs of heights times others.
inline vec<std::int32_t> pair_products(vec<std::int16_t> a, vec<std::int16_t> b)
{
#if defined(VLDV_INTRINSIC)
    return as<std::int32_t>(VLDV_INTRINSIC(madd_epi16)(bits(a), bits(b)));
#else
    // Sums without a sign: two products may come to 2^31.
    const auto odd = [](vec<std::int16_t> v) { return as<std::int32_t>(v) >> 16; };
    const auto even = [](vec<std::int16_t> v) { return as<std::int32_t>(v) << 16 >> 16; };
    return as<std::int32_t>(as<std::uint32_t>(odd(a) * odd(b)) + as<std::uint32_t>(even(a) * even(b)));
#endif
}

// Whole numbers as wider ones, as many as fill a register; the compiler's conversions take three instructions.
#if VLDV_VECTOR_BYTES == 64
inline vec<std::int32_t> load_widened(const std::int16_t* from)
{
    return as<std::int32_t>(_mm512_cvtepi16_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(from))));
}
inline vec<double> load_doubles(const std::int32_t* from)
{
    return _mm512_cvtepi32_pd(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(from)));
}
inline vec<double> load_doubles(const std::int16_t* from)
{
    return _mm512_cvtepi32_pd(_mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))));
}
#elif VLDV_VECTOR_BYTES == 32
inline vec<std::int32_t> load_widened(const std::int16_t* from)
{
    return as<std::int32_t>(_mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))));
}
inline vec<double> load_doubles(const std::int32_t* from)
{
    return _mm256_cvtepi32_pd(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
}
inline vec<double> load_doubles(const std::int16_t* from)
{
    return _mm256_cvtepi32_pd(_mm_cvtepi16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from))));
}
#else
inline vec<std::int32_t> load_widened(const std::int16_t* from)
{
    vec<std::int16_t, wide<std::int32_t>> v;
    std::memcpy(&v, from, sizeof v);
    return __builtin_convertvector(v, vec<std::int32_t>);
}
template <class Whole>
inline vec<double> load_doubles(const Whole* from)
{
    vec<double> v;
    for (int i = 0; i < wide<double>; ++i) v[i] = from[i];
    return v;
}
#endif

/// 0, 1, 2 …
inline vec<double> counted()
{
    vec<double> v;
    for (int i = 0; i < wide<double>; ++i) v[i] = i;
    return v;
}

/// One bit a byte, 1 where it is 0.
inline std::uint64_t zeros_of(vec<std::uint8_t> bytes)
{
#if VLDV_VECTOR_BYTES == 64
    return _mm512_testn_epi8_mask(bits(bytes), bits(bytes));
#elif defined(VLDV_INTRINSIC)
    return static_cast<std::uint32_t>(VLDV_INTRINSIC(movemask_epi8)(bits(bytes == 0)));
#else
    std::uint64_t zeros = 0;
    for (int i = 0; i < wide<std::uint8_t>; ++i) zeros |= static_cast<std::uint64_t>(bytes[i] == 0) << i;
    return zeros;
#endif
}

} // namespace
} // namespace vldv::primitives::simd
