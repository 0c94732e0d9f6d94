#include "curves/figures/display/typed_marks.h"

#include "base/text.h"
#include "base/units.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vldv::curves {

namespace {

/// The same scale in the unit in which its larger end reads well.
typed_scale readable(const typed_scale& scale)
{
    double most = std::max(std::fabs(scale.start), std::fabs(scale.start + scale.span));
    const double before = most;
    const char* const units = default_units(scale.units.c_str(), &most);
    const double factor = before == 0.0 ? 1.0 : most / before;
    return {scale.start * factor, scale.span * factor, units};
}

} // namespace

typed_marks::typed_marks(marks_mode mode_, typed_scale x_, typed_scale y_)
    : mode(mode_), x(readable(x_)), y(readable(y_))
{
}

std::vector<typed_marks::place> typed_marks::places() const
{
    switch (mode) {
    case marks_mode::verticalLines:
        return {{firstMark, false, "mark.first(Mark),double", "First mark"},
                {secondMark, false, "mark.second(Mark),double", "Second mark"}};
    case marks_mode::crossbar:
        return {{positionMark, false, "mark.x(Mark),double", "X"}, {levelMark, true, "mark.y(Mark),double", "Y"}};
    case marks_mode::none:
        break;
    }
    return {};
}

std::vector<SPMVar> typed_marks::variables(const section_mark_set& marks) const
{
    constexpr int digits = 9; // without the last bits' noise
    std::vector<SPMVar> made;
    for (const place& each : places()) {
        const typed_scale& scale = each.isLevel ? y : x;
        const double share = each.isLevel ? marks[each.mark].y : marks[each.mark].x;
        SPMVar& variable = made.emplace_back();
        variable.Init(each.declaration);
        variable.set_description((each.label + (scale.units.empty() ? "" : ", " + scale.units)).c_str());
        variable.from_string(base::general(scale.start + scale.span * share, digits).c_str());
    }
    return made;
}

void typed_marks::put(const std::vector<SPMVar>& variables, section_mark_set& marks) const
{
    const std::vector<place> all = places();
    const std::vector<SPMVar> before = this->variables(marks);
    for (std::size_t i = 0; i < std::min(all.size(), variables.size()); ++i) {
        const typed_scale& scale = all[i].isLevel ? y : x;
        const double typed = static_cast<double>(variables[i]);
        if (scale.span == 0.0 || typed == static_cast<double>(before[i])) continue;
        double& share = all[i].isLevel ? marks[all[i].mark].y : marks[all[i].mark].x;
        share = std::clamp((typed - scale.start) / scale.span, 0.0, 1.0);
    }
}

} // namespace vldv::curves
