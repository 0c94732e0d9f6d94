#include "primitives/fit/line_fit.h"

#include "primitives/cpu.h"
#include "primitives/numeric.h"
#include "primitives/simd.h"

#include <algorithm>

namespace vldv::primitives {

row_sums sum_row(std::span<const std::int16_t> row) noexcept
{
#if defined(__x86_64__)
    if (has_avx512()) return simd::sum_row_avx512(row);
    if (has_avx2()) return simd::sum_row_avx2(row);
#endif
    return sum_row_reference(row);
}

row_sums sum_row_reference(std::span<const std::int16_t> row) noexcept
{
    row_sums total;
    std::int64_t index = 0;
    for (const std::int16_t height : row) {
        total.sum += height;
        total.moment += index++ * height;
    }
    return total;
}

flattened_range flatten_row_reference(std::span<const std::int16_t> row, float* out) noexcept
{
    std::copy(row.begin(), row.end(), out);
    planefit_line_32f(out, static_cast<int>(row.size()));
    const auto [low, high] = std::minmax_element(out, out + row.size());
    return {*low, *high};
}

flattened_range flatten_row(std::span<const std::int16_t> row, float* out, [[maybe_unused]] const void* soon) noexcept
{
#if defined(__x86_64__)
    // Up to here all sums are whole numbers below 2^53: neither their order nor their type matters. Beyond, the order
    // of the definition counts.
    constexpr std::size_t exactWidth = std::size_t{1} << 19;
    if (row.size() <= exactWidth) {
        if (has_avx512()) return simd::flatten_row_avx512(row, out, soon);
        if (has_avx2()) return simd::flatten_row_avx2(row, out);
    }
#endif
    return flatten_row_reference(row, out);
}

} // namespace vldv::primitives
