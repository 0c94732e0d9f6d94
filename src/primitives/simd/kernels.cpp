#include "primitives/simd/kernels.h"

#include "primitives/cpu.h"

namespace vldv::primitives {

std::span<const kernel_table> available_kernels() noexcept
{
#if defined(__x86_64__)
    static const kernel_table all[] = {plain_kernels(), avx2_kernels(), avx512_kernels(), vbmi_kernels()};
#else
    static const kernel_table all[] = {plain_kernels()};
#endif
    return runnable(all);
}

} // namespace vldv::primitives
