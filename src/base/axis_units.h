#pragma once
#include "base/VLAxis.h"

/// The unit in which a height, written with six digits, reads well: 999.9999 nm are 1 µm, not 1000 nm.
/// \return static storage, or `units` itself
const char* readable_units(const char* units, double value);

/// The axis in the unit in which the range of values from one raw number to another reads well, or, where they are
/// equal, the value itself. An axis without a known unit stays as it is.
VLAxis readable_axis(const VLAxis& axis, double lowest, double highest);
