#pragma once
#include "base/SPMVar.h"

namespace vldv::base {

/// What an array's elements span, in double precision.
struct element_range {
    double lowest = 0.0; ///< of the finite elements
    double highest = 0.0;
    bool anyFinite = false;
    bool allWhole = true; ///< every element is a finite whole number
};

/// One pass over a typed array; an empty range for any other variable.
element_range find_element_range(const SPMVar& array);

/// Smallest and largest number of an integer element type; false for the others.
bool integer_limits(SPMVarArrayType type, double& lowest, double& highest) noexcept;

/// A linear map between element numbers; results are rounded halves up and clamped to the target type.
struct element_map {
    double from = 0.0; ///< the source number that becomes `to`
    double to = 0.0;
    double factor = 1.0; ///< target numbers a source number
};

/// Rewrites a typed array in another type through `map`, or number by number when `map` is null.
/// \throws std::bad_alloc with the array unchanged
void rewrite_elements(SPMVar& array, SPMVarArrayType target, const element_map* map);

} // namespace vldv::base
