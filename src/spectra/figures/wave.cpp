#include "spectra/figures/wave.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "base/units.h"

#include <cmath>
#include <numbers>

namespace vldv::spectra {

namespace {

double cycles(double bins, int samples, double step)
{
    const double extent = samples * step;
    return extent != 0.0 ? bins / extent : 0.0;
}

std::string per(const std::string& unit) { return unit.empty() ? "" : " 1/" + unit; }

} // namespace

double wave::frequency() const noexcept { return std::hypot(fx, fy); }

double wave::direction() const noexcept
{
    const bool isBackward = fx < 0.0 || (fx == 0.0 && fy < 0.0);
    const double angle = isBackward ? std::atan2(-fy, -fx) : std::atan2(fy, fx);
    const double degrees = angle * 180.0 / std::numbers::pi;
    return degrees <= -90.0 ? degrees + 180.0 : degrees + 0.0; // no negative zero
}

wave wave_at(const spectrum_grid& grid, double u, double v)
{
    const char* const x = grid.x.get_units();
    const char* const y = grid.y.get_units();
    wave made{cycles(u, grid.width, grid.x.scale), cycles(v, grid.height, grid.y.scale), x, y};
    if (made.unitX == made.unitY || units_convertable(y, x) <= 0) return made;
    made.fy = cycles(v, grid.height, convert_size(y, x, grid.y.scale));
    made.unitY = made.unitX;
    return made;
}

std::string wave_text(const wave& at)
{
    if (at.fx == 0.0 && at.fy == 0.0) return "F: 0";
    if (!at.hasLength())
        return base::formatted("Fx: %lG%s  Fy: %lG%s", at.fx, per(at.unitX).c_str(), at.fy, per(at.unitY).c_str());
    const readable_number period = read_well(at.unitX.c_str(), 1.0 / at.frequency());
    const std::string unit = period.units;
    return base::formatted("T: %lG %s  F: %lG%s  A: %.2lf\xC2\xB0", period.value, unit.c_str(), 1.0 / period.value,
                           per(unit).c_str(), at.direction());
}

} // namespace vldv::spectra
