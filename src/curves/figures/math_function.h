#pragma once
#include "base/SPMDataStream.h"
#include "curves/figures/curve_functions.h"
#include "curves/figures/profile.h"
#include "primitives/map/sample_runs.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vldv::curves {

/// Curves in physical units, one behind the other.
struct physical_curves {
    std::vector<float> values;
    std::uint32_t length = 0; ///< of one curve, with its padding
    std::string units;
    std::vector<std::uint32_t> lengths; ///< of the curves without padding; empty when all are whole

    std::uint32_t lengthOf(unsigned index) const noexcept { return lengths.empty() ? length : lengths[index]; }
    std::span<const float> curve(unsigned index) const noexcept
    {
        return {values.data() + std::size_t{index} * length, lengthOf(index)};
    }
};
/// The curves that were not measured throughout, each as the run of all its samples in the image of the results: what
/// looks at neighbours or pairs of samples computes nothing of them.
VLDV_INTERNAL_API std::vector<primitives::sample_run> curves_with_gaps(const profile& section);
/// Applies a function to each curve of a section that was measured throughout; padding repeats its last value, curves
/// with gaps have no length and hold some value of the others.
VLDV_INTERNAL_API physical_curves call_function(const profile& section, const VLAxis& values, const VLAxis& positions,
                                                curve_function function, void* parameter);

/// Numbers as 16-bit samples: value = zero + sample * step.
struct packed_curves {
    std::vector<std::int16_t> samples;
    double zero = 0.0, step = 1.0;
};
/// Packs numbers around their mean with one step for all, the power of two with which the number farthest from the
/// mean takes 2^14 to 2^15 steps; zero is a whole number of steps. Halves go to even. NaN becomes zero. Equal numbers
/// are kept exactly: zero is what they are.
packed_curves pack_curves(std::span<const float> values);

/// A step and a zero for numbers between `least` and `most` with this mean, by the same rule.
struct packing {
    double zero = 0.0, step = 1.0;
    /// The sample of a number.
    std::int16_t operator()(double value) const noexcept;
};
packing choose_packing(double mean, double least, double most) noexcept;

/// The image of curves that were computed from one: named "img0", with its label.
SPMDataStream curves_stream(const SPMDataStream& source, const physical_curves& curves, const VLAxis& positions);

} // namespace vldv::curves
