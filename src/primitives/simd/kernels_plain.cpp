#define VLDV_VECTOR_BYTES 16
#include "primitives/simd/all_kernels.h"

namespace vldv::primitives {

kernel_table plain_kernels() noexcept { return simd::all_kernels("plain"); }

} // namespace vldv::primitives
