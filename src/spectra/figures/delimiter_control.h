#pragma once
#include "platform/draw/geometry.h"
#include "spectra/figures/bar_chart.h"
#include "spectra/figures/histogram.h"
#include "vldv_api.h"

#include <optional>

namespace vldv::spectra {

/// The two delimiters of a chart under the mouse: a press on one of them takes it along, a press elsewhere in the chart
/// takes both, which keep their distance. Places are client pixels.
class VLDV_INTERNAL_API delimiter_control {
public:
    static constexpr int none = -1, both = 2;

    const delimiters& shares() const noexcept { return at; }
    void reset() noexcept { *this = {}; }
    /// The one less than 4 pixels beside the pointer, the first of both; `none` outside of the pane.
    int under(CPoint pointer, const CRect& pane, const platform::shown_part& part) const noexcept;
    int hovered() const noexcept { return over; }
    int held() const noexcept { return grip; }
    bool isHeld() const noexcept { return grip != none; }

    void hover(CPoint pointer, const CRect& pane, const platform::shown_part& part) noexcept
    {
        over = under(pointer, pane, part);
    }
    /// \return something is held now
    bool press(CPoint pointer, const CRect& pane, const platform::shown_part& part) noexcept;
    /// \return what is held has moved
    bool drag(CPoint pointer, const CRect& pane, const platform::shown_part& part) noexcept;
    void release() noexcept { grip = over = none; }
    /// Puts one elsewhere, within the chart. \return it has moved
    bool put(int number, double share) noexcept;
    double share(int number) const noexcept { return number == 0 ? at.f1 : at.f2; }

private:
    delimiters at;
    int over = none, grip = none;
    double gripShare = 0.0; ///< where both were taken hold of
    delimiters before;      ///< and where they stood then
};

/// The column of a share in a pane, client pixels.
int column_of(double share, const CRect& pane, const platform::shown_part& part) noexcept;

} // namespace vldv::spectra
