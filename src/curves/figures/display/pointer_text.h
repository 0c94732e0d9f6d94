#pragma once
#include "base/VLAxis.h"
#include "vldv_api.h"

#include <string>

namespace vldv::curves {

/// "X: 12 nm  Y: 3 nN", in the units in which both read well.
VLDV_INTERNAL_API std::string pointer_text(double x, const char* xUnits, double y, const char* yUnits);
/// Where the curve holds nothing that was measured: "X: 12 nm  not measured".
VLDV_INTERNAL_API std::string unmeasured_text(double x, const char* xUnits);

} // namespace vldv::curves
