#define VLDV_VECTOR_BYTES 64
#include "primitives/simd/all_kernels.h"

namespace vldv::primitives {

kernel_table vbmi_kernels() noexcept { return simd::all_kernels("AVX-512-VBMI"); }

} // namespace vldv::primitives
