#define VLDV_VECTOR_BYTES 32
#include "primitives/simd/all_kernels.h"

namespace vldv::primitives {

kernel_table avx2_kernels() noexcept { return simd::all_kernels("AVX2"); }

} // namespace vldv::primitives
