#pragma once
#include "primitives/fit/line_fit.h"
#include "primitives/fit/plane_moments.h"
#include "primitives/mask/thinning.h"
#include "primitives/resample/resample.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// Forms of the kernels for one instruction set each; only to be called where the processor has it.
namespace vldv::primitives::simd {

/// Adds the powers of a row without the line offset + slope * column, for as many as fill all lanes; see the forms
/// below, which give the same in every bit. \return how many that were
std::size_t add_powers_plain(power_sums& total, std::span<const std::int16_t> row, double offset,
                             double slope) noexcept;

#if defined(__x86_64__)
row_sums sum_row_avx2(std::span<const std::int16_t> row) noexcept;
row_sums sum_row_avx512(std::span<const std::int16_t> row) noexcept;

/// One step on a whole mask. \return whether something was taken away
bool thinning_step_avx2(const thinning_step& step) noexcept;
bool thinning_step_avx512(const thinning_step& step) noexcept;

/// Exact for rows of at most 2^19 values.
flattened_range flatten_row_avx2(std::span<const std::int16_t> row, float* out) noexcept;
flattened_range flatten_row_avx512(std::span<const std::int16_t> row, float* out, const void* soon = nullptr) noexcept;

/// Sums of at most 65535 rows, column by column. \return the range of the rows
height_range add_rows_avx2(const_height_block rows, std::int32_t* sums) noexcept;
height_range add_rows_avx512(const_height_block rows, std::int32_t* sums) noexcept;
/// int(sum * share + shift) - 32768 for as many as fill whole vectors. \return how many that were
std::size_t write_means_avx2(std::span<const std::int32_t> sums, const double* share, const double* shift,
                             std::int16_t* out) noexcept;
std::size_t write_means_avx512(std::span<const std::int32_t> sums, const double* share, const double* shift,
                               std::int16_t* out) noexcept;

std::size_t add_powers_avx2(power_sums& total, std::span<const std::int16_t> row, double offset, double slope) noexcept;
std::size_t add_powers_avx512(power_sums& total, std::span<const std::int16_t> row, double offset,
                              double slope) noexcept;
#endif

} // namespace vldv::primitives::simd
