#pragma once
#include "base/VLAxis.h"

/// The axis in the unit in which the range of values from one raw number to another reads well, or, where they are
/// equal, the value itself. An axis without a known unit stays as it is.
VLAxis readable_axis(const VLAxis& axis, double lowest, double highest);
