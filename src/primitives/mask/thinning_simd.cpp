#include "primitives/simd.h"

#if defined(__x86_64__)
#include "primitives/mask/thinning_rule.h"

#include <immintrin.h>

namespace vldv::primitives::simd {

namespace {

using four_words = std::uint64_t __attribute__((vector_size(32)));
using eight_words = std::uint64_t __attribute__((vector_size(64)));

} // namespace

__attribute__((target("avx2"))) bool thinning_step_avx2(const thinning_step& step) noexcept
{
    return thinning_rule::step_mask<four_words>(step);
}

__attribute__((target("avx512f,avx512bw,avx512vl"))) bool thinning_step_avx512(const thinning_step& step) noexcept
{
    return thinning_rule::step_mask<eight_words>(step);
}

} // namespace vldv::primitives::simd
#endif
