#pragma once
#include "base/VLAxis.h"
#include "vldv_api.h"

namespace vldv {

/// The unit in which a number, written with so many digits, reads well: with six 999.9999 nm are 1 µm, not 1000 nm.
/// \return static storage, or `units` itself
VLDV_INTERNAL_API const char* readable_units(const char* units, double value, int digits = 6);

/// The number in that unit.
struct readable_number {
    double value = 0.0;
    const char* units = ""; ///< static storage, or what was given
};
VLDV_INTERNAL_API readable_number read_well(const char* units, double value, int digits = 6);

/// The axis in the unit in which the range of values from one raw number to another reads well, or, where they are
/// equal, the value itself. An axis without a known unit stays as it is.
VLAxis readable_axis(const VLAxis& axis, double lowest, double highest);

} // namespace vldv
