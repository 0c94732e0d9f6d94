#pragma once
#include "base/SPMVarList.h"
#include "curves/figures/display/section_marks.h"
#include "vldv_api.h"

#include <string>
#include <vector>

namespace vldv::curves {

/// A fraction of a curve or of its pane's height as people read it: the value at 0 and what is added up to 1, in
/// `units`.
struct typed_scale {
    double start = 0.0, span = 1.0;
    std::string units;
};

/// The marks that a mode shows as numbers that people type, in units in which these read well: X of both upright lines,
/// or X and Y of the crossbar.
class VLDV_INTERNAL_API typed_marks {
public:
    typed_marks(marks_mode mode_, typed_scale x_, typed_scale y_);

    std::vector<SPMVar> variables(const section_mark_set& marks) const;
    /// Puts the marks where the user has changed the variables; what lies beyond the curve goes to its end.
    void put(const std::vector<SPMVar>& variables, section_mark_set& marks) const;

private:
    struct place {
        int mark;
        bool isLevel; ///< its y, else its x
        const char *declaration, *label;
    };
    std::vector<place> places() const;

    marks_mode mode;
    typed_scale x, y;
};

} // namespace vldv::curves
