#pragma once
#include "primitives/mask/thinning.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// Forms of the kernels for one instruction set each; only to be called where the processor has it.
namespace vldv::primitives::simd {

#if defined(__x86_64__)
/// One step on a whole mask. \return whether something was taken away
bool thinning_step_avx2(const thinning_step& step) noexcept;
bool thinning_step_avx512(const thinning_step& step) noexcept;
#endif

} // namespace vldv::primitives::simd
