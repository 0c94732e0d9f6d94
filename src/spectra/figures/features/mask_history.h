#pragma once
#include "primitives/map/bit_image.h"

#include <deque>

namespace vldv::spectra {

/// Earlier states of a mask that is being painted, and those that were gone back from. The oldest ones are given up
/// beyond 64 MiB.
class mask_history {
public:
    /// Before a change.
    void keep(const primitives::bit_image& mask);
    bool canUndo() const noexcept { return !earlier.empty(); }
    bool canRedo() const noexcept { return !later.empty(); }
    /// Nothing happens where there is no such state.
    void undo(primitives::bit_image& mask) { step(mask, earlier, later); }
    void redo(primitives::bit_image& mask) { step(mask, later, earlier); }
    void clear() noexcept;

private:
    using states = std::deque<primitives::bit_image>;
    static void step(primitives::bit_image& mask, states& from, states& to);
    states earlier, later; ///< the newest behind
};

} // namespace vldv::spectra
