#pragma once
#include "primitives/mask/bit_strips.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vldv::primitives {

/// Thins masks to their skeletons, lines one sample wide: the parallel rule of Z. Guo and R. W. Hall (Communications of
/// the ACM 32 (1989) 359, algorithm A1), which takes layers off in turn from two sides, and at its end the corners that
/// no connection needs. Areas stay connected over sides and corners as they were, holes stay open, ends stay.
/// Keeps its memory from call to call.
class thinner {
public:
    /// In place.
    void thin(bit_strips& mask);

private:
    bool takeCorners(bit_strips& mask);
    void findOccupied(const bit_strips& mask, int firstRow);

    std::vector<std::uint32_t> awake; ///< of each tile with a border: the last step that may change it
    std::vector<std::uint64_t> scratch, occupied;
};
/// The plain form that defines the answer: samples of rows, 1 set and 0 clear.
void thin_reference(std::uint8_t* samples, int width, int height);

/// One step of the rule on a whole mask, as the kernels see it.
struct thinning_step {
    std::uint64_t* rows;   ///< row 0 of the first strip
    std::ptrdiff_t stride; ///< words from a strip to the next
    std::ptrdiff_t strips, tiles;
    std::uint64_t* scratch;
    std::size_t scratchCount;
    std::uint32_t* awake; ///< (strips + 2) times (tiles + 2), strip by strip with the border
    std::uint32_t number; ///< from 1 on; the rule's two sides alternate

    /// \param scratch_  has room for `scratchWords`
    thinning_step(bit_strips& mask, std::uint64_t* scratch_, std::uint32_t* awake_, std::uint32_t number_) noexcept
        : rows(mask.strip(0)),
          stride(static_cast<std::ptrdiff_t>(mask.stride())),
          strips(mask.strips()),
          tiles(mask.tilesOfStrip()),
          scratch(scratch_),
          scratchCount(scratchWords(mask)),
          awake(awake_),
          number(number_)
    {
    }
    /// Room for two strips as they were, with a tile more before and behind each, and for the changes of a strip.
    static std::size_t scratchWords(const bit_strips& mask) noexcept
    {
        const auto tiles = static_cast<std::size_t>(mask.tilesOfStrip()) + 2;
        return 2 * tiles * bit_strips::tileRows + tiles;
    }
};

} // namespace vldv::primitives
