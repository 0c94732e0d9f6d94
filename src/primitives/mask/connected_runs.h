#pragma once
#include "primitives/growing_array.h"
#include "primitives/map/bit_image.h"
#include "primitives/map/threshold.h"
#include "primitives/resample/resample.h"

#include <cstdint>
#include <span>

namespace vldv::primitives {

/// What connects samples.
enum class neighbours { overSides, overSidesAndCorners };

/// The connected areas of a mask as runs along the rows: there is no image of labels.
class connected_runs {
public:
    static constexpr std::uint32_t none = ~std::uint32_t{0};

    /// Columns `left` to `right` - 1 of a row.
    struct run {
        std::int32_t row, left, right;
        std::uint32_t next; ///< the run of the same area that follows from row to row, or `none`
    };
    /// Right and bottom lie outside the box.
    struct area {
        std::int32_t left, top, right, bottom;
        std::uint32_t firstRun; ///< the one that a scan along the rows meets first
        std::int64_t pixels;
        run_sums heights;
    };

    /// Finds the areas of a mask, in the order in which a scan along the rows meets them, and sums the heights in them.
    /// The heights are as large as the mask; none at all (null): only the areas are found. Memory of an earlier call is
    /// used again. \throws std::bad_alloc
    void find(const bit_image& mask, const_height_block heights,
              neighbours connected = neighbours::overSidesAndCorners);
    /// Finds areas over sides and corners while the mask is made of the heights strictly above the threshold: each
    /// height is read once.
    void findAbove(const_height_block heights, std::int16_t threshold, bit_image& mask);

    const growing_array<area>& areas() const noexcept { return found; }
    const growing_array<run>& runs() const noexcept { return all; }

private:
    void begin(int width);
    void addRow(int y, const std::uint64_t* bits, const std::int16_t* heights);
    std::uint32_t rootOf(std::uint32_t label) noexcept;
    std::uint32_t unite(std::uint32_t a, std::uint32_t b) noexcept;
    void finish() noexcept;

    growing_array<run> all; ///< until `finish` each keeps its label in `next`
    growing_array<area> found;
    growing_array<std::uint32_t> parents; ///< of labels: an older one that means the same area, or itself
    std::vector<std::int32_t> edges;      ///< of the runs of a row
    std::size_t rowAbove = 0;             ///< its first run
    std::int32_t gap = 0;                 ///< what runs that touch have in common at least: 0 where corners count
};

} // namespace vldv::primitives
