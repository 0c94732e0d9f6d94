#include "base/axis_units.h"

#include "base/units.h"

VLAxis readable_axis(const VLAxis& axis, double lowest, double highest)
{
    const double range = (highest - lowest) * axis.scale;
    double shown = range != 0.0 ? range : axis.at(highest);
    const char* const units = default_units_z(axis.get_units(), &shown);
    return {convert_size(axis.get_units(), units, axis.start), convert_size(axis.get_units(), units, axis.scale),
            units};
}
