#pragma once
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <vector>

class VLAxis;

namespace vldv::curves {

/// "spectrum_mode"
enum class spectrum_mode { power = 0, magnitude = 1 };

/// The spectrum of a curve without its trend: bin i has i periods over the curve.
struct curve_spectrum {
    std::vector<float> values; ///< n / 2 + 1 of them
    std::vector<float> phase;  ///< radians
    float max = 1.0f;          ///< of the values; 1 when all are 0
};
/// The transform is divided by the number of samples. Memory of `out` is used again. An empty curve has no spectrum.
VLDV_INTERNAL_API void evaluate_spectrum(std::span<const std::int16_t> curve, const VLAxis& values, spectrum_mode mode,
                                         curve_spectrum& out);

} // namespace vldv::curves
