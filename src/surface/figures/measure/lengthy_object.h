#pragma once
#include "base/VLAxis.h"
#include "document/Decorations.h"
#include "surface/figures/drawing_axes.h"
#include "surface/figures/sample_frame.h"
#include "surface/figures/sample_mask.h"
#include "surface/figures/selection_state.h"

#include <span>
#include <vector>

namespace vldv::surface {

/// `done`, gone on along the ridge from its last corner to `to`; a new object there where `done` is empty. Empty when
/// the point lies outside the frame.
lengthy_trace extended(const lengthy_trace& done, const sample_frame& frame, CPoint to);
/// The trace as it is kept: with corners of a line that stays within `radius` samples of what was traced, and the
/// samples of that line. A radius of 0 keeps all that was traced.
lengthy_trace finished(const lengthy_trace& trace, double radius);

/// All objects traced on an image as one drawing: a bitmap over it with 1 where an object runs.
class lengthy_mask : public sample_mask {
public:
    /// \param kept  what the image has under `lengthyMaskKey`; objects traced while it had another size stay where
    ///              they are on its axes
    lengthy_mask(const document::decorations* kept, const drawing_axes& axes);
    void add(std::span<const CPoint> path) noexcept;
    VLPluginDecoration record(const VLAxis& x, const VLAxis& y);
};

} // namespace vldv::surface
