#pragma once
#include "primitives/mask/thinning.h"
#include "primitives/resample/resample.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// Forms of the kernels for one instruction set each; only to be called where the processor has it.
namespace vldv::primitives::simd {

#if defined(__x86_64__)
/// One step on a whole mask. \return whether something was taken away
bool thinning_step_avx2(const thinning_step& step) noexcept;
bool thinning_step_avx512(const thinning_step& step) noexcept;

/// Sums of at most 65535 rows, column by column. \return the range of the rows
height_range add_rows_avx2(const_height_block rows, std::int32_t* sums) noexcept;
height_range add_rows_avx512(const_height_block rows, std::int32_t* sums) noexcept;
/// int(sum * share + shift) - 32768 for as many as fill whole vectors. \return how many that were
std::size_t write_means_avx2(std::span<const std::int32_t> sums, const double* share, const double* shift,
                             std::int16_t* out) noexcept;
std::size_t write_means_avx512(std::span<const std::int32_t> sums, const double* share, const double* shift,
                               std::int16_t* out) noexcept;
#endif

} // namespace vldv::primitives::simd
