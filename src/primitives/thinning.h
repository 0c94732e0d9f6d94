#pragma once
#include "primitives/bit_strips.h"

#include <cstdint>
#include <vector>

namespace primitives {

/// Thins masks to their skeletons, lines one sample wide: the parallel rule of Z. Guo and R. W. Hall (Communications of
/// the ACM 32 (1989) 359, algorithm A1), which takes layers off in turn from two sides, and at its end the corners that
/// no connection needs. Areas stay connected over sides and corners as they were, holes stay open, ends stay.
/// Keeps its memory from call to call.
class thinner {
public:
    /// In place.
    void thin(bit_strips& mask);

private:
    bit_strips other;                 ///< what the step before left, and then what this one leaves
    std::vector<std::uint32_t> awake; ///< of each tile with a border: the last step that may change it
};
/// The plain form that defines the answer: samples of rows, 1 set and 0 clear.
void thin_reference(std::uint8_t* samples, int width, int height);

/// One step of the rule on a whole mask.
struct thinning_step {
    const bit_strips* from;
    bit_strips* to;
    std::uint32_t* awake; ///< of the first tile of the border: (strips + 2) times (tiles + 2), strip by strip
    std::uint32_t number; ///< from 1 on; the rule's two sides alternate
};

} // namespace primitives
