#define VLDV_VECTOR_BYTES 64
#include "primitives/map/color_map_kernel.h"
#include "primitives/simd/kernels.h"

namespace vldv::primitives {

/// The kernels of AVX-512, but those of tables of bytes.
kernel_table vbmi_kernels() noexcept
{
    kernel_table all = avx512_kernels();
    all.name = "AVX-512 VBMI";
    all.paint32 = simd::paint_32;
    all.paint24 = simd::paint_24;
    return all;
}

} // namespace vldv::primitives
