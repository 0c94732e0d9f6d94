#pragma once
#include "spectra/figures/features/value_distribution.h"

#include <span>
#include <string>
#include <vector>

namespace vldv::spectra {

/// What stands below a table of numbers: how many there are, mean, deviation, sum, lowest and highest, a row each with
/// its name first.
std::vector<std::vector<std::wstring>> summary_rows(std::span<const value_summary> columns);

} // namespace vldv::spectra
