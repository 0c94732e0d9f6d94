#pragma once
#include "base/VLAxis.h"
#include "document/MinMaxInfo.h"
#include "platform/draw/geometry.h"
#include "platform/draw/shown_part.h"
#include "vldv_api.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vldv::curves {

/// A vertical range that the user gives, in units of his own.
struct fixed_heights {
    std::string units;
    double range = 1.0;
    std::optional<double> start; ///< at the lower edge; nothing: the lowest value of the curves
};

/// Where the samples of curves stand in a pane: column 0 at its left, row 0 at its top. The first sample stands in the
/// first column and the last one in the last while the whole curve is shown; so do the lowest and the highest row of
/// the range.
struct VLDV_INTERNAL_API curve_pane {
    CSize size;
    std::uint32_t samples = 0;   ///< of a curve
    double pixelsPerStep = 1.0;  ///< rows for one step of the raw samples
    double offset = 0.0;         ///< rows that the lowest sample lies below the pane's lower edge
    int lowest = 0;              ///< raw sample
    bool isFixed = false;        ///< the range is the user's
    platform::shown_part part{}; ///< of the curve, along X

    /// The same pane whose columns and rows are so many times as many, for devices that show more than pixels.
    curve_pane finer(int parts) const noexcept;
    double samplesPerColumn() const noexcept;
    /// Numbers of the samples at the left and right edge; between two samples where the part is so narrow.
    double firstShown() const noexcept;
    double lastShown() const noexcept;
    int column(double sample) const noexcept;
    int row(double raw) const noexcept;
    /// The height of a raw value over the pane's lower edge, 1 at the upper one.
    double share(double raw) const noexcept;
};

/// \param zero   what is added to raw * scale: the axis's start, or less by the zero level of the heights
/// \param fixed  used when its units and those of the values convert into each other and its range is above 0
VLDV_INTERNAL_API curve_pane make_pane(CSize size, std::uint32_t samples, const CMinMaxInfo& range,
                                       const VLAxis& values, double zero, const std::optional<fixed_heights>& fixed);

/// The range of a pane in the units of the values, and the value at its lower edge.
struct pane_heights {
    double range = 0.0, start = 0.0;
};
VLDV_INTERNAL_API pane_heights heights_of(const curve_pane& pane, const CMinMaxInfo& range, const VLAxis& values,
                                          double zero, const std::optional<fixed_heights>& fixed);

} // namespace vldv::curves
