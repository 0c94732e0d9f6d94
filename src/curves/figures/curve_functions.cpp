#include "curves/figures/curve_functions.h"

#include "curves/figures/correlation.h"

#include <algorithm>
#include <vector>

namespace vldv::curves {

namespace {

std::span<float> span_of(float* samples, int count) noexcept
{
    return {samples, static_cast<std::size_t>(std::max(count, 0))};
}

} // namespace

const float differenceKernel[3] = {1.0f, 0.0f, -1.0f};

int convolve(float* samples, int count, const VLAxis&, const VLAxis&, std::string&, void* parameter)
{
    const convolution_kernel kernel = *static_cast<const convolution_kernel*>(parameter);
    const std::span<float> out = span_of(samples, count);
    const std::vector<float> y(out.begin(), out.end());
    const std::size_t half = kernel.size() / 2;
    if (y.size() < kernel.size() || y.size() <= 2 * half) {
        std::ranges::fill(out, 0.0f);
        return 0;
    }
    // Where the kernel would reach beyond an end, the nearest result from inside is repeated.
    for (std::size_t i = half; i + half < y.size(); ++i) {
        out[i] = 0.0f;
        for (std::size_t m = 0; m < kernel.size(); ++m) out[i] += kernel[m] * y[i + half - m];
    }
    std::fill_n(out.begin(), half, out[half]);
    std::fill(out.end() - static_cast<std::ptrdiff_t>(half), out.end(), out[y.size() - half - 1]);
    return 0;
}

int autocorrelation_function(float* samples, int count, const VLAxis&, const VLAxis&, std::string& units, void*)
{
    autocorrelate(span_of(samples, count), span_of(samples, count));
    units.clear();
    return 0;
}

int cyclic_autocorrelation_function(float* samples, int count, const VLAxis&, const VLAxis&, std::string& units, void*)
{
    autocorrelate_cyclic(span_of(samples, count), span_of(samples, count));
    units.clear();
    return 0;
}

int structure_function(float* samples, int count, const VLAxis&, const VLAxis&, std::string& units, void*)
{
    structure(span_of(samples, count), span_of(samples, count));
    units += "^2";
    return 0;
}

int cyclic_structure_function(float* samples, int count, const VLAxis&, const VLAxis&, std::string& units, void*)
{
    structure_cyclic(span_of(samples, count), span_of(samples, count));
    units += "^2";
    return 0;
}

} // namespace vldv::curves
