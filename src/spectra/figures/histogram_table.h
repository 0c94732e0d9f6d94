#pragma once
#include "spectra/figures/histogram.h"

#include <string>

namespace vldv::spectra {

/// A histogram as a table: a line of units, "X,nm<tab>Y,", then a line a bin of the value of its middle and its count,
/// 12 digits.
VLDV_INTERNAL_API std::string histogram_table(const height_histogram& histogram, const char* units);

} // namespace vldv::spectra
