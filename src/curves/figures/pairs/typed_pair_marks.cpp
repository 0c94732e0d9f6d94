#include "curves/figures/pairs/typed_pair_marks.h"

#include <utility>

namespace vldv::curves {

namespace {

using pairs = pair_mark_set;
/// Where a section has what a curve of pairs has.
constexpr std::pair<int, int> sameMarks[] = {
    {pairs::first, firstMark}, {pairs::second, secondMark}, {pairs::bar, positionMark}};

typed_scale scale_of(const raw_span& span, const VLAxis& axis)
{
    return {span.low, span.high - span.low, axis.get_units()};
}

section_mark_set as_of_section(const pair_mark_set& marks)
{
    section_mark_set made;
    for (const auto& [own, other] : sameMarks) made[other].x = marks[own].x;
    made[levelMark].y = marks[pairs::bar].y;
    return made;
}

} // namespace

typed_pair_marks::typed_pair_marks(pair_marks_mode mode, const pair_pane& pane, const VLAxis& x, const VLAxis& y)
    : typed(mode == pair_marks_mode::crossbar ? marks_mode::crossbar : marks_mode::verticalLines,
            scale_of(pane.positions(), x), scale_of(pane.values(), y))
{
}

std::vector<SPMVar> typed_pair_marks::variables(const pair_mark_set& marks) const
{
    return typed.variables(as_of_section(marks));
}

void typed_pair_marks::put(const std::vector<SPMVar>& variables, pair_mark_set& marks) const
{
    section_mark_set placed = as_of_section(marks);
    typed.put(variables, placed);
    for (const auto& [own, other] : sameMarks) marks[own].x = placed[other].x;
    marks[pairs::bar].y = placed[levelMark].y;
}

} // namespace vldv::curves
