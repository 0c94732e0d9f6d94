#include "curves/figures/measured_runs.h"

#include <utility>

namespace vldv::curves {

CMinMaxInfo measured_range(const profile& section)
{
    CMinMaxInfo range;
    bool isFirst = true;
    const auto add = [&](std::span<const std::int16_t> samples) {
        const auto count = static_cast<unsigned>(samples.size());
        if (std::exchange(isFirst, false))
            range.Readjust(samples.data(), count);
        else
            range.Adjust(samples.data(), count);
    };
    if (section.gaps.empty() && section.lengths.empty()) {
        add(section.all());
        return range;
    }
    for (unsigned k = 0; k < section.curves; ++k)
        for_each_measured_run(
            section, k, [&](std::size_t first, std::size_t end) { add(section.curve(k).subspan(first, end - first)); });
    return range;
}

} // namespace vldv::curves
