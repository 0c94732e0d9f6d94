#include "spectra/figures/features/measured_block.h"

#include <algorithm>
#include <limits>

namespace vldv::spectra {

measured_block::measured_block(primitives::const_height_block whole, const CRect& rect,
                               std::span<const primitives::sample_run> unmeasured)
    : shown{whole.row(rect.top) + rect.left, rect.Width(), rect.Height(), whole.step}
{
    if (unmeasured.empty()) return;
    const auto width = static_cast<std::size_t>(rect.Width());
    filled.assign(width * static_cast<std::size_t>(rect.Height()), std::numeric_limits<std::int16_t>::min());
    for (int y = 0; y < rect.Height(); ++y) {
        const std::size_t first = static_cast<std::size_t>(rect.top + y) * static_cast<std::size_t>(whole.width) +
                                  static_cast<std::size_t>(rect.left);
        primitives::for_each_kept(first, first + width, unmeasured, [&](std::size_t at, std::size_t count) {
            const std::int16_t* const from = shown.row(y) + (at - first);
            std::copy_n(from, count,
                        filled.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(y) * width + at - first));
            kept.insert(kept.end(), from, from + count);
        });
    }
    missing = filled.size() - kept.size();
    shown = {filled.data(), rect.Width(), rect.Height(), 2 * rect.Width()};
}

primitives::const_height_block measured_block::measured() const noexcept
{
    if (missing == 0) return shown;
    const auto count = static_cast<int>(kept.size());
    return {kept.data(), count, count == 0 ? 0 : 1, 2 * count};
}

} // namespace vldv::spectra
