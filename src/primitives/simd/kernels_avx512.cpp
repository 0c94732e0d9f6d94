#define VLDV_VECTOR_BYTES 64
#include "primitives/simd/all_kernels.h"

namespace vldv::primitives {

kernel_table avx512_kernels() noexcept { return simd::all_kernels("AVX-512"); }

} // namespace vldv::primitives
