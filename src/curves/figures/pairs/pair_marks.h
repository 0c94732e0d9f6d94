#pragma once
#include "curves/figures/pairs/pair_pane.h"
#include "platform/draw/geometry.h"
#include "vldv_api.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace vldv::curves {

/// "marks_mode" of pairs: upright lines and crosses stand on the pair that is nearest in X, the crossbar on the one
/// that lies nearest in the pane.
enum class pair_marks_mode { verticalLines = 0, crosses = 1, crossbar = 2 };

/// A mark as fractions of the pane, y from below, and the pair that it stands on.
struct pair_mark {
    double x = 0.5, y = 0.5;
    std::optional<std::size_t> sample;
};

/// The marks over a curve of pairs, and which of them the mouse holds.
struct VLDV_INTERNAL_API pair_mark_set {
    static constexpr int none = -1;
    static constexpr int first = 0, second = 1, bar = 2; ///< two lines or crosses; the crossbar
    std::array<pair_mark, 4> marks;
    int active = none;
    bool isDragging = false;

    pair_mark& operator[](int number) noexcept { return marks[static_cast<std::size_t>(number)]; }
    const pair_mark& operator[](int number) const noexcept { return marks[static_cast<std::size_t>(number)]; }

    /// The marks that a mode shows.
    static std::span<const int> shownIn(pair_marks_mode mode) noexcept;
    /// The shown mark that is less than `tolerance` pixels away both ways; `none` without one.
    int under(CPoint at, int tolerance, pair_marks_mode mode, const CRect& pane) const noexcept;
    /// Puts a mark on the pair that its place leads to. \return it stands elsewhere now
    bool settle(int number, pair_marks_mode mode, const pair_pane& pane, const pair_series& series);
    /// Puts a mark where the pointer is, then on its pair. \return it stands elsewhere now
    bool move(int number, CPoint at, pair_marks_mode mode, const CRect& place, const pair_pane& pane,
              const pair_series& series);
    /// The marks keep their pairs in a pane that shows another part of them.
    void stay(const pair_pane& pane, const pair_series& series) noexcept;
    /// To the next measured pair along the curve, towards its right end where `by` is 1, to the left where it is -1.
    /// \return there was one
    bool step(int number, int by, const pair_pane& pane, const pair_series& series);

private:
    void stand(pair_mark& mark, std::size_t sample, const pair_pane& pane, const pair_series& series) noexcept;
};

} // namespace vldv::curves
