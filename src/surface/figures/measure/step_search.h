#pragma once
#include "surface/figures/sample_frame.h"
#include "vldv_api.h"

#include <cstdint>
#include <deque>
#include <vector>

namespace vldv::surface {

/// Which way steps are met: from the left they go down as columns grow, from the right up.
enum class steps_direction { leftToRight = 0, rightToLeft = 1 };

/// What steps are looked for in an image whose rows are scan lines.
struct VLDV_INTERNAL_API step_settings {
    steps_direction direction = steps_direction::rightToLeft;
    double threshold = 1.0; ///< how many standard deviations above the mean a slope has to be
    int leftBorder = 0;     ///< columns to either side of a slope's middle in which no other may be steeper
    int searchRows = 1;     ///< rows from the first in which steps begin, and which a step is long at least, less one
    int gap = 1;            ///< rows that a step may be missing
    int startRow = 0;       ///< first row
    int endRow = 0;         ///< rows at the end that are left out

    /// What the dialog proposes for an image: parts of its sides, halves up.
    static step_settings proposed(int width, int height) noexcept;
    bool operator==(const step_settings&) const = default;
};

/// A place of a step.
struct step_point {
    std::int32_t row, column;
    bool operator==(const step_point&) const = default;
};
/// The places of a step, one a row from its first row to its last.
using surface_step = std::vector<step_point>;

/// Finds the places of steps row by row, where steps begin, and follows each from row to row; gaps are bridged by
/// straight lines. Sequences found twice are both there. Settings below their least value count as that. A sample that
/// was not measured has no slope, nor have its neighbours in the row.
/// \throws std::bad_alloc
VLDV_INTERNAL_API std::deque<surface_step> find_steps(const sample_frame& frame, const step_settings& settings);

/// The columns that hold more than `floor` and more than each of the `reach` before, and no less than the `reach`
/// behind; all of them with a reach of 0.
void find_first_maxima(std::span<const std::int32_t> values, std::int32_t floor, int reach,
                       std::vector<std::int32_t>& columns);

} // namespace vldv::surface
