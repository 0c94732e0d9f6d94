#pragma once
#include "platform/draw/Region.h"
#include "surface/figures/selection_state.h"
#include "view/axes/view_geometry.h"

#include <vector>

namespace vldv::surface {

/// From samples to client pixels.
CPoint to_client(CPoint sample, const view::view_geometry& geometry) noexcept;
std::vector<CPoint> to_client(const std::vector<CPoint>& samples, const view::view_geometry& geometry);
/// A region of samples as one of client pixels.
CRgn to_client(const CRgn& region, const view::view_geometry& geometry);
/// The corners as client pixels: left and right, and for rows, which count upwards, bottom and top.
CRect scaled(const selection_rect& rect, const view::view_geometry& geometry) noexcept;

} // namespace vldv::surface
