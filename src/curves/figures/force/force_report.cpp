#include "curves/figures/force/force_report.h"

#include "base/text.h"
#include "curves/figures/force/force_curve.h"

namespace vldv::curves {

std::string force_header(std::string_view units, std::string_view slope)
{
    const std::string shown(units);
    return "Curve\t" + std::string(slope) + "\tAng., deg\tLMS eq. A\t+B*X\tRMS, " + shown + "\tFmin, " + shown + "\r\n";
}

std::string force_row(const force_figures& figures, const force_curve_stats& stats)
{
    const auto cell = [](double value) { return base::general(value, 3) + '\t'; };
    std::string row = std::to_string(figures.curve + 1) + '\t';
    row += stats.hasSlant() ? cell(figures.slope) + cell(slope_angle(figures.slope)) : "can't evaluate\t\t";
    row += stats.zero_a != 0.0 && stats.zero_b != 0.0
               ? cell(stats.zero_a) + cell(stats.zero_b / figures.positionScale) + cell(stats.zero_rms)
               : "can't evaluate\t\t\t";
    return row + base::general(figures.minimum, 3);
}

} // namespace vldv::curves
