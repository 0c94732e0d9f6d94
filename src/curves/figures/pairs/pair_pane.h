#pragma once
#include "base/VLAxis.h"
#include "curves/figures/pairs/pair_series.h"
#include "platform/draw/geometry.h"
#include "platform/draw/shown_part.h"
#include "vldv_api.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace vldv::curves {

/// The smallest and largest of raw numbers; without any, low is above high.
struct raw_span {
    double low = 1.0, high = 0.0;

    bool isEmpty() const noexcept { return low > high; }
    void add(double value) noexcept;
};

/// Ranges of the measured pairs of some curves.
struct VLDV_INTERNAL_API pair_ranges {
    raw_span x, y;
    void add(const pair_series& series);
};

/// Where pairs stand in a pane: column 0 at its left, row 0 at its top. Positions and values grow to the right and
/// upward, whichever sign their steps have. The ends of the ranges stand in the outermost columns and rows; where all
/// are equal, in the middle.
class VLDV_INTERNAL_API pair_pane {
public:
    pair_pane() = default;
    pair_pane(CSize size_, const VLAxis& x_, const VLAxis& y_, const pair_ranges& ranges);
    /// The same pane whose columns and rows are so many times as many, for devices that show more than pixels.
    pair_pane finer(int parts) const noexcept;
    /// Only this part of the positions from now on.
    void show(const platform::shown_part& part) noexcept;

    /// Of a physical position or value: 0 at the left or lower edge, 1 at the other one.
    double shareOfX(double position) const noexcept { return share(position, across); }
    double shareOfY(double value) const noexcept { return share(value, up); }
    double positionAt(double share) const noexcept { return across.low + (across.high - across.low) * share; }
    double valueAt(double share) const noexcept { return up.low + (up.high - up.low) * share; }
    /// Physical, low below high.
    raw_span positions() const noexcept { return across; }
    raw_span values() const noexcept { return up; }

    double position(const pair_series& series, std::size_t at) const noexcept { return x.at(series.x[at]); }
    double value(const pair_series& series, std::size_t at) const noexcept { return y.at(series.y[at]); }
    CPoint point(double position, double value) const noexcept;
    CPoint point(const pair_series& series, std::size_t at) const noexcept
    {
        return point(position(series, at), value(series, at));
    }
    /// The line through the pairs from `first` to before `end`, seen from `origin`; pairs in one pixel are one point.
    void line(const pair_series& series, std::size_t first, std::size_t end, CPoint origin,
              std::vector<CPoint>& out) const;

    /// The measured pair whose position is nearest to a share of the width, the first of equals; none without any.
    std::optional<std::size_t> nearestInX(const pair_series& series, double shareX) const;
    /// The measured pair that lies nearest to a place in the pane, by pixels.
    std::optional<std::size_t> nearest(const pair_series& series, double shareX, double shareY) const;

private:
    static raw_span physical(const raw_span& raw, const VLAxis& axis) noexcept;
    static double share(double value, const raw_span& span) noexcept;

    CSize size;
    VLAxis x, y;
    raw_span across, up;
};

} // namespace vldv::curves
