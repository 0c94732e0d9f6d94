#include "base/streams/axis_units.h"

#include "base/text.h"
#include "base/units.h"

namespace vldv {

const char* readable_units(const char* units, double value, int digits)
{
    double rounded = base::leading_number(base::general(value, digits)).value_or(value);
    return default_units_z(units, &rounded);
}

readable_number read_well(const char* units, double value, int digits)
{
    const char* const chosen = readable_units(units, value, digits);
    return {convert_size(units, chosen, value), chosen};
}

VLAxis readable_axis(const VLAxis& axis, double lowest, double highest)
{
    const double range = (highest - lowest) * axis.scale;
    const char* const units = readable_units(axis.get_units(), range != 0.0 ? range : axis.at(highest));
    return {convert_size(axis.get_units(), units, axis.start), convert_size(axis.get_units(), units, axis.scale),
            units};
}

} // namespace vldv
