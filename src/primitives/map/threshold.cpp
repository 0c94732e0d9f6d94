#include "primitives/map/threshold.h"

#include "primitives/map/bit_image.h"
#include "primitives/simd/kernels.h"

#include <algorithm>

namespace vldv::primitives {

void threshold_row_reference(std::span<const std::int16_t> heights, std::int16_t threshold,
                             std::uint64_t* bits) noexcept
{
    constexpr std::size_t wordBits = bitsOfWord;
    for (std::size_t first = 0; first < heights.size(); first += wordBits) {
        std::uint64_t word = 0;
        const std::size_t count = std::min(wordBits, heights.size() - first);
        for (std::size_t i = 0; i < count; ++i) word |= static_cast<std::uint64_t>(heights[first + i] > threshold) << i;
        bits[first / wordBits] = word;
    }
}

void threshold_row(std::span<const std::int16_t> heights, std::int16_t threshold, std::uint64_t* bits) noexcept
{
    kernels().thresholdRow(heights.data(), heights.size(), threshold, bits);
}

run_sums sum_run_reference(std::span<const std::int16_t> heights) noexcept
{
    run_sums total;
    for (const std::int16_t height : heights) total.add({height, std::int64_t{height} * height, height});
    return total;
}

run_sums sum_run(std::span<const std::int16_t> heights) noexcept
{
    return kernels().sumRun(heights.data(), heights.size());
}

} // namespace vldv::primitives
