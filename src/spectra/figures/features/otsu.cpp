#include "spectra/figures/features/otsu.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace vldv::spectra {

namespace {

constexpr int lowest = -32768, heightCount = 65536;

} // namespace

short otsu_threshold(primitives::const_height_block heights)
{
    if (heights.width <= 0 || heights.height <= 0) return 0;
    std::vector<std::uint32_t> counts(heightCount);
    for (int y = 0; y < heights.height; ++y)
        for (int x = 0; x < heights.width; ++x) ++counts[static_cast<std::size_t>(heights.row(y)[x] - lowest)];

    const double all = static_cast<double>(heights.width) * heights.height;
    std::int64_t total = 0;
    for (int i = 0; i < heightCount; ++i) total += std::int64_t{counts[static_cast<std::size_t>(i)]} * i;
    std::int64_t below = 0, sumBelow = 0;
    double best = -1.0;
    int first = 0, last = 0;
    for (int i = 0; i < heightCount; ++i) {
        const std::int64_t count = counts[static_cast<std::size_t>(i)];
        below += count;
        sumBelow += count * i;
        if (below == 0) continue;
        const double above = all - static_cast<double>(below);
        if (above == 0.0 && best >= 0.0) break;
        const double share = static_cast<double>(below);
        // w0 w1 (mean1 - mean0)^2, up to a factor; no height is above in the end.
        const double apart =
            above > 0.0 ? static_cast<double>(total - sumBelow) / above - static_cast<double>(sumBelow) / share : 0.0;
        const double between = share * above * apart * apart;
        if (between > best) {
            best = between;
            first = i;
        }
        if (between == best) last = i; // heights that do not occur part the samples just as well
        if (above == 0.0) break;
    }
    return static_cast<short>((first + last) / 2 + lowest);
}

} // namespace vldv::spectra
