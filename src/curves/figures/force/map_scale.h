#pragma once
#include "curves/figures/force/force_map.h"
#include "curves/figures/math_function.h"

#include <cstdint>
#include <span>
#include <string>

namespace vldv::curves {

/// How the numbers of a map become samples.
struct map_scale {
    double step = 1.0; ///< physical units of a number
    bool isPlain = true;
    packing packed{}; ///< of physical values, unless a sample is a number
    double least = 0.0, most = 0.0;

    double samplesPerNumber() const noexcept { return isPlain ? 1.0 : step / packed.step; }
    double exactSample(double number) const noexcept
    {
        return isPlain ? number : (number * step - packed.zero) / packed.step;
    }
    std::int16_t sample(double number) const noexcept;
};

/// Numbers stay samples while they fit 16 bits, else their physical values lie on the finest axis that a container
/// keeps, of six digits. What is not finite does not count.
/// \param step      physical units of a number
/// \param coarsest  a map that never reaches this sample has too few steps
map_scale choose_map_scale(std::span<const double> numbers, double step, double coarsest);

/// Samples of the numbers; those that are not finite take their median and are counted.
force_map make_map(std::span<const double> numbers, const map_scale& scale, const std::string& units);

} // namespace vldv::curves
