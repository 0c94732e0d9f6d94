#pragma once
#include <cstddef>

namespace vldv::bench {

/// Does for so many samples what no form of a force map can do without: one conversion to a physical value, the
/// products and sums of the spline's fit and of its value, the step, the comparisons of a median, and the sums of the
/// spread. All on numbers in registers, as wide as the machine has them.
double force_arithmetic(std::size_t samples);

} // namespace vldv::bench
