#include "primitives/fit/line_fit.h"

#include "primitives/numeric.h"
#include "primitives/simd/kernels.h"

#include <algorithm>

namespace vldv::primitives {

row_sums sum_row(std::span<const std::int16_t> row) noexcept { return kernels().sumRow(row.data(), row.size()); }

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

flattened_range flatten_row(std::span<const std::int16_t> row, float* out, const void* soon) noexcept
{
    // Up to here all sums are whole numbers below 2^53: neither their order nor their type matters. Beyond, the order
    // of the definition counts.
    constexpr std::size_t exactWidth = std::size_t{1} << 19;
    if (row.size() > exactWidth) return flatten_row_reference(row, out);
    const row_sums sums = sum_row(row);
    const fitted_line line =
        fit_line(static_cast<double>(sums.sum), static_cast<double>(sums.moment), static_cast<int>(row.size()));
    return kernels().takeLine(row.data(), row.size(), line, out, soon);
}

} // namespace vldv::primitives
