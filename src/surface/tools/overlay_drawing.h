#pragma once
#include "platform/draw/DC.h"
#include "surface/figures/selection_state.h"
#include "view/axes/view_geometry.h"

namespace surface {

/// Colours as drawn over any picture.
constexpr colorEntry startColor = 0x0000FF, endColor = 0x00FF00, lineColor = 0xFF0000;

/// What the selected region is filled with.
struct selection_style {
    enum fill { none = 0, inner = 1, outer = 2 };
    int filled = outer;
    colorEntry color = 0x64c800;
};

/// The corners as client pixels: left and right, and for rows, which count upwards, bottom and top.
CRect scaled(const selection_rect& rect, const view::view_geometry& geometry) noexcept;
/// From samples to client pixels.
CPoint to_client(CPoint sample, const view::view_geometry& geometry) noexcept;
std::vector<CPoint> to_client(const std::vector<CPoint>& samples, const view::view_geometry& geometry);
/// A region of samples as one of client pixels.
CRgn to_client(const CRgn& region, const view::view_geometry& geometry);

/// What is being selected or measured: region, line, angle or point with its handles.
void draw_selection(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
                    const selection_style& style);
/// The trace of a lengthy object while it is drawn.
void draw_trace(CDC& dc, const selection_state& state, const view::view_geometry& geometry);
void draw_region_of_interest(CDC& dc, const selection_state& state, const view::view_geometry& geometry);
/// Where a volume shows its curve: a cross with shadow and highlight.
void draw_cross(CDC& dc, CPoint center);

} // namespace surface
