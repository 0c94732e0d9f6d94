#pragma once
#include "vldv_api.h"

#include <span>
#include <string>

class VLAxis;

namespace vldv::curves {

/// A calculation on a curve, in place.
/// \param samples    physical values
/// \param units      of the values; may be changed
/// \param parameter  what the function takes
/// \return 0
using curve_function = int (*)(float* samples, int count, const VLAxis& values, const VLAxis& positions,
                               std::string& units, void* parameter);

/// Numbers that a curve is convolved with.
using convolution_kernel = std::span<const float>;
/// The differences of values two samples apart, which `convolve` gives.
VLDV_INTERNAL_API extern const float differenceKernel[3];

/// y[i] becomes sum(kernel[m] y[i + half - m]), half the length rounded down; the first and the last `half` samples
/// repeat the nearest of these. A curve that is shorter than the kernel becomes 0.
/// \param parameter  points to a `convolution_kernel`
VLDV_INTERNAL_API int convolve(float* samples, int count, const VLAxis& values, const VLAxis& positions,
                               std::string& units, void* parameter);
// See correlation.h; correlations have no units, structure functions those of a square. No parameter.
VLDV_INTERNAL_API int autocorrelation_function(float* samples, int count, const VLAxis& values, const VLAxis& positions,
                                               std::string& units, void* parameter);
VLDV_INTERNAL_API int cyclic_autocorrelation_function(float* samples, int count, const VLAxis& values,
                                                      const VLAxis& positions, std::string& units, void* parameter);
VLDV_INTERNAL_API int structure_function(float* samples, int count, const VLAxis& values, const VLAxis& positions,
                                         std::string& units, void* parameter);
VLDV_INTERNAL_API int cyclic_structure_function(float* samples, int count, const VLAxis& values,
                                                const VLAxis& positions, std::string& units, void* parameter);

} // namespace vldv::curves
