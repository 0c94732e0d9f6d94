// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/map/range_kernel.h"
#include "primitives/resample/resample.h"

namespace vldv::primitives::simd {
namespace {

/// Sums of the columns that two registers have room for, and the range of their samples.
class column_sums {
public:
    /// Two rows: their numbers are interleaved, and a multiplication with ones adds neighbours in 32 bits.
    void add(vec<std::int16_t> a, vec<std::int16_t> b)
    {
        const auto ones = all<std::int16_t>(1);
        lower += pair_products(interleaved<false>(a, b), ones);
        upper += pair_products(interleaved<true>(a, b), ones);
    }
    void store(std::int32_t* sums) const
    {
        simd::store(sums, ordered<0>());
        simd::store(sums + wide<std::int32_t>, ordered<1>());
    }

private:
    /// Columns come out in the order of the interleaving: four by four of the lower and of the upper.
    template <int Half>
    vec<std::int32_t> ordered() const
    {
        constexpr int count = wide<std::int32_t>;
        return shuffled<[](int i) {
            const int four = (Half * count + i) / 4;
            return four / 2 * 4 + i % 4 + (four % 2 != 0 ? count : 0);
        }>(lower, upper);
    }
    vec<std::int32_t> lower{}, upper{};
};

inline const std::int16_t* sample_at(const_height_block rows, int x, int y)
{
    return reinterpret_cast<const std::int16_t*>(reinterpret_cast<const char*>(rows.data + x) +
                                                 std::ptrdiff_t{y} * rows.step);
}

height_range add_rows(const_height_block rows, std::int32_t* sums) noexcept
{
    constexpr int lanes = wide<std::int16_t>;
    place_ranges ranges;
    int x = 0;
    for (; x + lanes <= rows.width; x += lanes) {
        column_sums columns;
        int y = 0;
        for (; y + 2 <= rows.height; y += 2) {
            const auto a = load(sample_at(rows, x, y)), b = load(sample_at(rows, x, y + 1));
            ranges.include(a);
            ranges.include(b);
            columns.add(a, b);
        }
        if (y < rows.height) {
            const auto a = load(sample_at(rows, x, y));
            ranges.include(a);
            columns.add(a, vec<std::int16_t>{});
        }
        columns.store(sums + x);
    }
    height_range found = ranges.joined();
    for (; x < rows.width; ++x) {
        sums[x] = 0;
        for (int y = 0; y < rows.height; ++y) {
            const std::int16_t sample = *sample_at(rows, x, y);
            sums[x] += sample;
            include(found, sample);
        }
    }
    return found;
}

/// Stores numbers that fit 16 bits.
inline void store_narrowed(std::int16_t* to, vec<std::int32_t, wide<double>> numbers)
{
#if VLDV_VECTOR_BYTES == 32
    const auto four = reinterpret_cast<__m128i>(numbers);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_packs_epi32(four, four));
#else
    store(to, __builtin_convertvector(numbers, vec<std::int16_t, wide<double>>));
#endif
}

std::size_t write_means(const std::int32_t* sums, std::size_t count, const double* share, const double* shift,
                        std::int16_t* out) noexcept
{
    constexpr int lanes = wide<double>;
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const auto mean = load_doubles(sums + i) * load(share + i) + load(shift + i);
        store_narrowed(out + i, __builtin_convertvector(mean, vec<std::int32_t, lanes>) - 32768);
    }
    return i;
}

} // namespace
} // namespace vldv::primitives::simd
