// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/fft/fft_kernel.h"
#include "primitives/fit/line_fit_kernel.h"
#include "primitives/fit/plane_moments_kernel.h"
#include "primitives/map/byte_mask_kernel.h"
#include "primitives/map/color_map_kernel.h"
#include "primitives/map/range_kernel.h"
#include "primitives/map/threshold_kernel.h"
#include "primitives/mask/thinning_kernel.h"
#include "primitives/resample/resample_kernel.h"
#include "primitives/simd/kernels.h"

namespace vldv::primitives::simd {
namespace {

inline kernel_table all_kernels(const char* name)
{
    return {
        .name = name,
        .find_range = find_range,
        .threshold_row = threshold_row,
        .sum_run = sum_run,
        .pack_bytes = pack_bytes,
        .keep_bytes = keep_bytes,
        .map_heights = map_samples<std::int16_t>,
        .map_floats = map_samples<float>,
        .paint_32 = paint_32,
        .paint_24 = paint_24,
        .sum_row = sum_row,
        .take_line = take_line,
        .add_powers = add_powers,
        .add_rows = add_rows,
        .write_means = write_means,
        .thinning_step = run_thinning_step,
        .floatTransforms = fft::kernels_of_set<float>,
        .doubleTransforms = fft::kernels_of_set<double>,
    };
}

} // namespace
} // namespace vldv::primitives::simd
