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
        .findRange = find_range,
        .thresholdRow = threshold_row,
        .sumRun = sum_run,
        .packBytes = pack_bytes,
        .keepBytes = keep_bytes,
        .mapHeights = map_samples<std::int16_t>,
        .mapFloats = map_samples<float>,
        .paint32 = paint_32,
        .paint24 = paint_24,
        .sumRow = sum_row,
        .takeLine = take_line,
        .addPowers = add_powers,
        .addRows = add_rows,
        .writeMeans = write_means,
        .thinningStep = run_thinning_step,
        .floatTransforms = fft::kernelsOfSet<float>,
        .doubleTransforms = fft::kernelsOfSet<double>,
    };
}

} // namespace
} // namespace vldv::primitives::simd
