#define VLDV_VECTOR_BYTES 16
#include "primitives/fft/fft_kernel.h"

namespace vldv::primitives::fft {

template <class Number>
tile_kernels<Number> plain_kernels() noexcept
{
    return {transform_rows<Number>, transform_columns<Number>};
}

template tile_kernels<float> plain_kernels() noexcept;
template tile_kernels<double> plain_kernels() noexcept;

} // namespace vldv::primitives::fft
