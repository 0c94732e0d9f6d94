#include "base/axis_units.h"

#include "base/text.h"
#include "base/units.h"

const char* readable_units(const char* units, double value)
{
    double rounded = base::leading_number(base::general(value)).value_or(value);
    return default_units_z(units, &rounded);
}

VLAxis readable_axis(const VLAxis& axis, double lowest, double highest)
{
    const double range = (highest - lowest) * axis.scale;
    const char* const units = readable_units(axis.get_units(), range != 0.0 ? range : axis.at(highest));
    return {convert_size(axis.get_units(), units, axis.start), convert_size(axis.get_units(), units, axis.scale),
            units};
}
