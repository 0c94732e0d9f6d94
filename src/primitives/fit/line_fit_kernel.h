// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/fit/line_fit.h"
#include "primitives/simd/vector.h"

namespace vldv::primitives::simd {
namespace {

/// Adding the running sums up once a block counts block b (blocks - b) times: that saves the multiplication with the
/// index. Both are those of neighbouring columns over `blocks` blocks, the first of them at index `first`.
inline void add_block_sums(row_sums& total, vec<std::int32_t> sums, vec<std::int32_t> running, std::int64_t blocks,
                           std::int64_t first)
{
    for (int lane = 0; lane < wide<std::int32_t>; ++lane) {
        const std::int64_t sum = sums[lane];
        total.sum += sum;
        total.moment += wide<std::int32_t> * (blocks * sum - running[lane]) + (first + lane) * sum;
    }
}

row_sums sum_row(const std::int16_t* row, std::size_t count) noexcept
{
    constexpr std::size_t lanes = wide<std::int32_t>;
    constexpr std::size_t most = 256 * lanes; // so many blocks of 16-bit numbers leave the running sums within 32 bits
    row_sums total{0, 0};
    const std::size_t whole = count / lanes * lanes;
    for (std::size_t first = 0; first < whole; first += most) {
        const std::size_t end = whole - first < most ? whole : first + most;
        vec<std::int32_t> sums{}, running{};
        for (std::size_t i = first; i < end; i += lanes) {
            sums += load_widened(row + i);
            running += sums;
        }
        add_block_sums(total, sums, running, static_cast<std::int64_t>((end - first) / lanes),
                       static_cast<std::int64_t>(first));
    }
    for (std::size_t i = whole; i < count; ++i) {
        total.sum += row[i];
        total.moment += static_cast<std::int64_t>(i) * row[i];
    }
    return total;
}

flattened_range take_line(const std::int16_t* row, std::size_t count, fitted_line line, float* out,
                          const void* soon) noexcept
{
    constexpr int lanes = wide<double>;
    using floats = vec<float, lanes>;
    auto index = counted();
    floats low = static_cast<float>(row[0] - line.offset) - floats{}, high = low;
    const auto* fetched = static_cast<const float*>(soon ? soon : out);
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const auto values = __builtin_convertvector(load_doubles(row + i) - (line.offset + line.slope * index), floats);
        index += lanes;
        low = lower(low, values);
        high = higher(high, values);
        store(out + i, values);
        if (lanes == 8) __builtin_prefetch(fetched + i); // narrower ones would ask too often for a line of the cache
    }
    const auto lesser = [](auto a, auto b) { return a < b ? a : b; };
    const auto larger = [](auto a, auto b) { return a > b ? a : b; };
    flattened_range range{folded(low, lesser), folded(high, larger)};
    for (; i < count; ++i) {
        out[i] = static_cast<float>(row[i] - (line.offset + line.slope * static_cast<double>(i)));
        range = {lesser(range.minimum, out[i]), larger(range.maximum, out[i])};
    }
    return range;
}

} // namespace
} // namespace vldv::primitives::simd
