#pragma once
#include "primitives/fit/line_fit.h"
#include "primitives/fit/plane_moments.h"
#include "primitives/map/byte_mask.h"
#include "primitives/map/color_map.h"
#include "primitives/map/range.h"
#include "primitives/map/threshold.h"
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
height_range find_range_avx2(std::span<const std::int16_t> heights) noexcept;
height_range find_range_avx512(std::span<const std::int16_t> heights) noexcept;

void map_heights_avx2(std::span<const std::int16_t> heights, byte_window window, std::uint8_t* out) noexcept;
void map_floats_avx2(std::span<const float> values, byte_window window, std::uint8_t* out) noexcept;
void paint_32_avx2(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept;
void map_heights_avx512(std::span<const std::int16_t> heights, byte_window window, std::uint8_t* out) noexcept;
void map_floats_avx512(std::span<const float> values, byte_window window, std::uint8_t* out) noexcept;
void paint_32_vbmi(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept;
void paint_24_vbmi(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept;

row_sums sum_row_avx2(std::span<const std::int16_t> row) noexcept;
row_sums sum_row_avx512(std::span<const std::int16_t> row) noexcept;

void threshold_row_avx2(std::span<const std::int16_t> heights, std::int16_t threshold, std::uint64_t* bits) noexcept;
void threshold_row_avx512(std::span<const std::int16_t> heights, std::int16_t threshold, std::uint64_t* bits) noexcept;
run_sums sum_run_avx2(std::span<const std::int16_t> heights) noexcept;
run_sums sum_run_avx512(std::span<const std::int16_t> heights) noexcept;

/// One step on a whole mask. \return whether something was taken away
bool thinning_step_avx2(const thinning_step& step) noexcept;
bool thinning_step_avx512(const thinning_step& step) noexcept;
void pack_bytes_avx2(const std::uint8_t* bytes, int width, std::uint64_t* words, std::size_t stride) noexcept;
void pack_bytes_avx512(const std::uint8_t* bytes, int width, std::uint64_t* words, std::size_t stride) noexcept;
void keep_bytes_avx2(const std::uint64_t* words, std::size_t stride, std::uint8_t* bytes, int width) noexcept;
void keep_bytes_avx512(const std::uint64_t* words, std::size_t stride, std::uint8_t* bytes, int width) noexcept;

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
