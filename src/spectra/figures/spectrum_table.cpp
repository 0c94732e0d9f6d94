#include "spectra/figures/spectrum_table.h"

#include "base/text.h"

#include <cmath>

namespace vldv::spectra {

std::string marks_table(const spectrum_curve_source& source, std::span<const CPoint> marks)
{
    const wave step = wave_at(source.grid, 1.0, 1.0);
    const bool isPower = source.mode == spectrum_mode::power;
    const double scale = std::fabs(source.heights.scale), toUnit = isPower ? scale * scale : scale;
    std::string unit = source.heights.get_units();
    if (isPower && !unit.empty()) unit += "^2";
    std::string text = "N\tU\tV\t";
    text += step.hasLength() ? "Period, " + step.unitX + "\tFrequency, 1/" + step.unitX + "\tDirection, \xC2\xB0"
                             : "Fx, 1/" + step.unitX + "\tFy, 1/" + step.unitY;
    text += std::string(isPower ? "\tPower, " : "\tMagnitude, ") + unit + "\r\n";
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const wave at = wave_at(source.grid, marks[i].x, marks[i].y);
        text += base::formatted("%d\t%d\t%d\t", static_cast<int>(i) + 1, marks[i].x, marks[i].y);
        const double frequency = at.frequency();
        text += at.hasLength() ? base::formatted("%G\t%G\t%.2f", frequency > 0.0 ? 1.0 / frequency : 0.0, frequency,
                                                 at.direction())
                               : base::formatted("%G\t%G", at.fx, at.fy);
        text += base::formatted("\t%G\r\n", source.spectrum.at(marks[i]) * toUnit);
    }
    return text;
}

} // namespace vldv::spectra
