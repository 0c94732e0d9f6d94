#include "primitives/simd.h"

#if defined(__x86_64__)
#include <algorithm>
#include <immintrin.h>

namespace vldv::primitives::simd {

namespace {

/// Adding the running sums up once a block counts block b (blocks - b) times: that saves the multiplication with the
/// index. `sums` and `running` are those of `Lanes` columns over `blocks` blocks, the first of them at index `first`.
template <std::size_t Lanes>
void add_block_sums(row_sums& total, const std::int32_t (&sums)[Lanes], const std::int32_t (&running)[Lanes],
                    std::int64_t blocks, std::int64_t first) noexcept
{
    for (std::size_t l = 0; l < Lanes; ++l) {
        const std::int64_t sum = sums[l], column = first + static_cast<std::int64_t>(l);
        total.sum += sum;
        total.moment += static_cast<std::int64_t>(Lanes) * (blocks * sum - running[l]) + column * sum;
    }
}

void add_rest(row_sums& total, std::span<const std::int16_t> row, std::size_t first) noexcept
{
    for (std::size_t i = first; i < row.size(); ++i) {
        total.sum += row[i];
        total.moment += static_cast<std::int64_t>(i) * row[i];
    }
}

flattened_range flatten_rest(std::span<const std::int16_t> row, std::size_t first, fitted_line line, float* out,
                             flattened_range range) noexcept
{
    for (std::size_t i = first; i < row.size(); ++i) {
        out[i] = static_cast<float>(row[i] - (line.offset + line.slope * static_cast<double>(i)));
        range = {std::min(range.minimum, out[i]), std::max(range.maximum, out[i])};
    }
    return range;
}

template <std::size_t Lanes>
flattened_range collected(const float (&low)[Lanes], const float (&high)[Lanes]) noexcept
{
    return {*std::min_element(low, low + Lanes), *std::max_element(high, high + Lanes)};
}

fitted_line line_of(const row_sums& sums, std::span<const std::int16_t> row) noexcept
{
    return fit_line(static_cast<double>(sums.sum), static_cast<double>(sums.moment), static_cast<int>(row.size()));
}

constexpr std::size_t mostBlocks = 256; // so many blocks of 16-bit numbers leave the running sums within 32 bits

} // namespace

__attribute__((target("avx512f,avx512bw"))) row_sums sum_row_avx512(std::span<const std::int16_t> row) noexcept
{
    constexpr std::size_t lanes = 16;
    const std::size_t blocks = row.size() / lanes;
    row_sums total;
    for (std::size_t block = 0; block < blocks; block += mostBlocks) {
        const std::size_t count = std::min(mostBlocks, blocks - block);
        const auto* at = reinterpret_cast<const __m256i*>(row.data() + block * lanes);
        __m512i sums = _mm512_setzero_si512(), running = sums;
        for (std::size_t b = 0; b < count; ++b) {
            sums = _mm512_add_epi32(sums, _mm512_cvtepi16_epi32(_mm256_loadu_si256(at + b)));
            running = _mm512_add_epi32(running, sums);
        }
        std::int32_t sum[lanes], run[lanes];
        _mm512_storeu_si512(sum, sums);
        _mm512_storeu_si512(run, running);
        add_block_sums(total, sum, run, static_cast<std::int64_t>(count), static_cast<std::int64_t>(block * lanes));
    }
    add_rest(total, row, blocks * lanes);
    return total;
}

__attribute__((target("avx2"))) row_sums sum_row_avx2(std::span<const std::int16_t> row) noexcept
{
    constexpr std::size_t lanes = 8;
    const std::size_t blocks = row.size() / lanes;
    row_sums total;
    for (std::size_t block = 0; block < blocks; block += mostBlocks) {
        const std::size_t count = std::min(mostBlocks, blocks - block);
        const auto* at = reinterpret_cast<const __m128i*>(row.data() + block * lanes);
        __m256i sums = _mm256_setzero_si256(), running = sums;
        for (std::size_t b = 0; b < count; ++b) {
            sums = _mm256_add_epi32(sums, _mm256_cvtepi16_epi32(_mm_loadu_si128(at + b)));
            running = _mm256_add_epi32(running, sums);
        }
        std::int32_t sum[lanes], run[lanes];
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(sum), sums);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(run), running);
        add_block_sums(total, sum, run, static_cast<std::int64_t>(count), static_cast<std::int64_t>(block * lanes));
    }
    add_rest(total, row, blocks * lanes);
    return total;
}

__attribute__((target("avx512f,avx512bw,avx512vl,avx512dq"))) flattened_range
flatten_row_avx512(std::span<const std::int16_t> row, float* out, const void* soon) noexcept
{
    constexpr std::size_t lanes = 8;
    const fitted_line line = line_of(sum_row_avx512(row), row);
    const __m512d offset = _mm512_set1_pd(line.offset), slope = _mm512_set1_pd(line.slope), step = _mm512_set1_pd(8.0);
    __m512d index = _mm512_setr_pd(0, 1, 2, 3, 4, 5, 6, 7);
    const auto first = static_cast<float>(row[0] - line.offset);
    __m256 low = _mm256_set1_ps(first), high = low;
    const auto* fetched = static_cast<const float*>(soon ? soon : out);
    std::size_t i = 0;
    for (; i + lanes <= row.size(); i += lanes) {
        const __m256i heights = _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(&row[i])));
        const __m512d fitted = _mm512_add_pd(offset, _mm512_mul_pd(slope, index));
        const __m256 values = _mm512_cvtpd_ps(_mm512_sub_pd(_mm512_cvtepi32_pd(heights), fitted));
        index = _mm512_add_pd(index, step);
        low = _mm256_min_ps(low, values);
        high = _mm256_max_ps(high, values);
        _mm256_storeu_ps(out + i, values);
        _mm_prefetch(fetched + i, _MM_HINT_T0);
    }
    float lowest[lanes], highest[lanes];
    _mm256_storeu_ps(lowest, low);
    _mm256_storeu_ps(highest, high);
    return flatten_rest(row, i, line, out, collected(lowest, highest));
}

__attribute__((target("avx2"))) flattened_range flatten_row_avx2(std::span<const std::int16_t> row, float* out) noexcept
{
    constexpr std::size_t lanes = 4;
    const fitted_line line = line_of(sum_row_avx2(row), row);
    const __m256d offset = _mm256_set1_pd(line.offset), slope = _mm256_set1_pd(line.slope), step = _mm256_set1_pd(4.0);
    __m256d index = _mm256_setr_pd(0, 1, 2, 3);
    const auto first = static_cast<float>(row[0] - line.offset);
    __m128 low = _mm_set1_ps(first), high = low;
    std::size_t i = 0;
    for (; i + lanes <= row.size(); i += lanes) {
        const __m128i heights = _mm_cvtepi16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(&row[i])));
        const __m256d fitted = _mm256_add_pd(offset, _mm256_mul_pd(slope, index));
        const __m128 values = _mm256_cvtpd_ps(_mm256_sub_pd(_mm256_cvtepi32_pd(heights), fitted));
        index = _mm256_add_pd(index, step);
        low = _mm_min_ps(low, values);
        high = _mm_max_ps(high, values);
        _mm_storeu_ps(out + i, values);
    }
    float lowest[lanes], highest[lanes];
    _mm_storeu_ps(lowest, low);
    _mm_storeu_ps(highest, high);
    return flatten_rest(row, i, line, out, collected(lowest, highest));
}

} // namespace vldv::primitives::simd
#endif
