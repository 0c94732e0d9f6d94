#pragma once
#include "platform/draw/geometry.h"
#include "platform/draw/shown_part.h"
#include "spectra/figures/histogram.h"
#include "vldv_api.h"

#include <cstdint>
#include <vector>

namespace vldv::spectra {

/// How many rows of a pane a count takes: all of them for the fullest bin.
struct VLDV_INTERNAL_API count_scale {
    std::uint32_t peak = 0;
    bool isLogarithmic = false; ///< by log(1 + count), so that a single sample is still seen

    /// 0 without samples, 1 for the fullest bin.
    double share(std::uint32_t count) const noexcept;
    /// Rows above the lowest one, halves up.
    int rows(std::uint32_t count, int height) const noexcept;
};

/// The bars of a histogram, each an upright line from the lowest row of the pane up to a point: a line for each column
/// where there are fewer bins than columns, else a line for each bin. Column 0 stands at the left, row 0 at the top.
VLDV_INTERNAL_API std::vector<CPoint> bar_tops(const height_histogram& histogram, CSize pane, const count_scale& scale,
                                               const platform::shown_part& part = {});

/// The share of all samples up to each bin, from the lower left corner of the pane to its upper right one.
VLDV_INTERNAL_API std::vector<CPoint> cumulative_line(const height_histogram& histogram, CSize pane,
                                                      const platform::shown_part& part = {});

} // namespace vldv::spectra
