#pragma once
#include "curves/figures/display/section_text.h"
#include "platform/draw/geometry.h"
#include "platform/draw/shown_part.h"
#include "vldv_api.h"

#include <array>
#include <set>

namespace vldv::curves {

/// A mark of a section: fractions of the curve's length and, from below, of the pane's height.
struct section_mark {
    double x = 0.5, y = 0.5;
};

/// Numbers of the marks.
enum section_mark_number : int {
    firstMark = 0,
    secondMark = 1,
    spectrumMark = 2,
    levelMark = 3,    ///< the crossbar's level line: only its y counts
    positionMark = 4, ///< the crossbar's upright line: its y follows the curve
    noMark = -1,
};

/// Where the marks can be taken hold of, client pixels. Without a spectrum its pane is empty.
struct mark_panes {
    CRect curve, spectrum;
    platform::shown_part part{}; ///< of the curve in its pane
};

/// The marks of a section, and which of them the mouse holds.
struct VLDV_INTERNAL_API section_mark_set {
    std::array<section_mark, 5> marks;
    int hovered = noMark, dragged = noMark;

    section_mark_set() { reset(); }
    section_mark& operator[](int number) noexcept { return marks[static_cast<std::size_t>(number)]; }
    const section_mark& operator[](int number) const noexcept { return marks[static_cast<std::size_t>(number)]; }
    /// The upright lines and the spectrum's go back to where they began.
    void reset() noexcept;

    /// The mark within 4 pixels of a point, by the lines that the mode shows; `noMark` where there is none.
    int under(CPoint at, marks_mode mode, const mark_panes& panes) const noexcept;
    /// Takes hold of the mark under the pointer; without one the upright lines jump to it, and the second is held.
    /// \return which is held now
    int press(CPoint at, marks_mode mode, const mark_panes& panes) noexcept;
    /// Puts a mark where the pointer is. \return it has moved
    bool move(int number, CPoint at, const mark_panes& panes) noexcept;
};

/// The marks whose place on the curve counts: those that the surface below shows, too.
std::set<int> active_marks(marks_mode mode);

} // namespace vldv::curves
