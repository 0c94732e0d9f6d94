#include "curves/figures/curve_spectrum.h"

#include "curves/figures/physical.h"
#include "primitives/fft/spectrum_1d.h"
#include "primitives/fit/linear_fit.h"

#include <algorithm>
#include <cmath>

namespace vldv::curves {

void evaluate_spectrum(std::span<const std::int16_t> curve, const VLAxis& values, spectrum_mode mode,
                       curve_spectrum& out)
{
    out.values.clear();
    out.phase.clear();
    out.max = 1.0f;
    if (curve.empty()) return;
    std::vector<float> y = physical_floats(curve, values);
    // Without its line: to the transform a curve goes on with its start behind its end, and a slope would be a jump
    // there, which shows up at all frequencies.
    remove_plane_32f(y.data(), 1, static_cast<int>(y.size()), nullptr);

    primitives::real_transform transform(y.size());
    std::ranges::copy(y, transform.values().begin());
    transform.forward();
    for (const std::complex<double>& bin : transform.bins()) {
        // Divided by the count, so that the amplitude of a sine does not depend on the length of the curve.
        const std::complex<double> c = bin / static_cast<double>(y.size());
        out.values.push_back(static_cast<float>(mode == spectrum_mode::power ? std::norm(c) : std::abs(c)));
        out.phase.push_back(static_cast<float>(std::arg(c)));
    }
    const float largest = *std::ranges::max_element(out.values);
    if (largest != 0.0f) out.max = largest;
}

} // namespace vldv::curves
