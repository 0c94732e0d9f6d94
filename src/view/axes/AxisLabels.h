#pragma once
#include <string>

namespace vldv::view {

/// Text of a tick without a format: so many digits that neighbours differ, at least 3; numbers below 1e-06 read "0".
/// \param step  from tick to tick, of either sign
std::string axis_label(double value, double step);
/// Text by a printf format with one number in it, UTF-8. A null format, or one that does not ask for exactly one
/// floating-point number, gives the text without format.
std::string axis_label(double value, double step, const char* format);
/// "%lg", or with as many digits as tell neighbouring ticks of the axis apart.
std::string label_format(double start, double end, int ticNumber);

} // namespace vldv::view
