#pragma once
#include "base/VLAxis.h"
#include "base/streams/rounding.h"
#include "document/Decorations.h"
#include "platform/draw/geometry.h"

#include <vector>

namespace vldv::surface {

/// The axes in which drawings over an image give their points: the first of each dimension, whatever a view shows.
struct drawing_axes {
    VLAxis x, y;
    CSize image{}; ///< samples of it
};

/// What was drawn sample by sample: objects and steps. Their bitmaps lie on the samples of an image of their size,
/// whatever its axes have become since.
inline constexpr const char* lengthyMaskKey = "lengthy_mask";

inline int sample_of(double value, const VLAxis& axis) noexcept
{
    return axis.scale == 0.0 ? 0 : base::nearest_int((value - axis.start) / axis.scale);
}

/// The points of a drawing as samples; none for what has no x and y.
inline std::vector<CPoint> samples_of(const document::decoration& drawing, const drawing_axes& axes)
{
    std::vector<CPoint> points;
    if (drawing.tupleLength < 2) return points;
    for (std::size_t i = 0; i + drawing.tupleLength <= drawing.coordinates.size(); i += drawing.tupleLength)
        points.push_back({sample_of(drawing.coordinates[i], axes.x), sample_of(drawing.coordinates[i + 1], axes.y)});
    return points;
}

} // namespace vldv::surface
