#include "curves/figures/display/pointer_text.h"

#include "base/text.h"
#include "base/units.h"

namespace vldv::curves {

namespace {

std::string position_text(double x, const char* units)
{
    const char* const best = default_units(units, &x);
    return base::formatted("X: %G %s", x + 0.0, best); // 0 has no sign
}

} // namespace

std::string pointer_text(double x, const char* xUnits, double y, const char* yUnits)
{
    const char* const best = default_units_z(yUnits, &y);
    return position_text(x, xUnits) + base::formatted("  Y: %G %s", y + 0.0, best);
}

std::string unmeasured_text(double x, const char* xUnits) { return position_text(x, xUnits) + "  not measured"; }

} // namespace vldv::curves
