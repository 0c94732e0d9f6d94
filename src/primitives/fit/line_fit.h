#pragma once
#include <cstdint>
#include <span>

namespace vldv::primitives {

/// offset + slope * i.
struct fitted_line {
    double offset, slope;
};

/// The least-squares line through `width` values from their sum and their first moment sum(i * z[i]).
inline fitted_line fit_line(double sum, double moment, int width) noexcept
{
    const double count = width, centre = 0.5 * (count - 1.0), mean = sum / count;
    // sum((i - c)^2) = n (n^2 - 1) / 12
    const double spread = count * (count * count - 1.0) / 12.0;
    const double slope = width > 1 ? (moment - centre * sum) / spread : 0.0;
    return {mean - slope * centre, slope};
}

/// Sum of the values and of each value times its index.
struct row_sums {
    std::int64_t sum = 0, moment = 0;
};
row_sums sum_row(std::span<const std::int16_t> row) noexcept;
/// The plain form that defines the answer.
row_sums sum_row_reference(std::span<const std::int16_t> row) noexcept;

/// The limits of a row without its line.
struct flattened_range {
    float minimum, maximum;
};
/// Writes the row as floats with its line taken out, equal in every bit to `planefit_line_32f` on the same numbers.
/// `out` has room for as many; the row must not be empty.
/// \param soon  memory that the caller works on next, 4 bytes a value: its way into the cache is hidden behind the
/// arithmetic. Never read or written; may be null
flattened_range flatten_row(std::span<const std::int16_t> row, float* out, const void* soon = nullptr) noexcept;
/// The plain form that defines the answer.
flattened_range flatten_row_reference(std::span<const std::int16_t> row, float* out) noexcept;

} // namespace vldv::primitives
