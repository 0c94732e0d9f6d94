#pragma once
#include "curves/figures/display/typed_marks.h"
#include "curves/figures/pairs/pair_marks.h"

#include <vector>

namespace vldv::curves {

/// The marks over a curve of pairs as numbers that people type: X of both lines or crosses, X and Y of the crossbar.
class VLDV_INTERNAL_API typed_pair_marks {
public:
    typed_pair_marks(pair_marks_mode mode, const pair_pane& pane, const VLAxis& x, const VLAxis& y);

    std::vector<SPMVar> variables(const pair_mark_set& marks) const;
    /// Puts the marks where the user has changed the variables; they are to be settled on their pairs then.
    void put(const std::vector<SPMVar>& variables, pair_mark_set& marks) const;

private:
    typed_marks typed;
};

} // namespace vldv::curves
