#pragma once
#include "platform/draw/geometry.h"
#include "spectra/figures/spectrum_curves.h"

#include <span>
#include <string>

namespace vldv::spectra {

/// A row for each mark: its bin, period, frequency and direction, or both frequencies where the units differ, and what
/// the spectrum is there; columns parted by tabs, below their names with units.
std::string marks_table(const spectrum_curve_source& source, std::span<const CPoint> marks);

} // namespace vldv::spectra
