#define VLDV_VECTOR_BYTES 32
#include "primitives/fft/fft_kernel.h"

namespace vldv::primitives::fft {

template <class Number>
tile_kernels<Number> avx2_kernels() noexcept
{
    return {transform_rows<Number>, transform_columns<Number>};
}

template tile_kernels<float> avx2_kernels() noexcept;
template tile_kernels<double> avx2_kernels() noexcept;

} // namespace vldv::primitives::fft
