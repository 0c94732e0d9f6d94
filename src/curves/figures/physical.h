#pragma once
#include <cstdint>
#include <span>
#include <vector>

class VLAxis;

namespace vldv::curves {

/// The values of raw samples: raw * scale + start, all in single precision.
std::vector<float> physical_floats(std::span<const std::int16_t> raw, const VLAxis& values);
/// The values of raw samples in double precision.
std::vector<double> physical_values(std::span<const std::int16_t> raw, const VLAxis& values);

} // namespace vldv::curves
