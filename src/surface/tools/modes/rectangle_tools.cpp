// Rectangles and ellipses between two corners.
#include "surface/figures/region_edit.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/overlay/overlay_shapes.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/modes/region_tool.h"

namespace vldv::surface {

namespace {

/// The pixels of the drag, its last column and row inside.
CRect drawn_box(const selection_state& state, const view::view_geometry& geometry)
{
    CRect box = scaled(state.selection, geometry);
    box.NormalizeRect();
    ++box.right;
    ++box.bottom;
    return box;
}

class rectangle final : public region_tool {
    const pointer_row& pointers() const noexcept override
    {
        static constexpr pointer_row row = {{5001, cursor_shape::crossRectangle},
                                            {5034, cursor_shape::crossPlus},
                                            {5035, cursor_shape::crossMinus},
                                            {5036, cursor_shape::move}};
        return row;
    }
    CRgn shape(const selection_state& state) const override { return CRgn(covered_rect(state.selection)); }
    void drawShape(CDC& dc, const selection_state& state, const view::view_geometry& geometry) const override
    {
        dc.FrameRect(drawn_box(state, geometry), region_brush());
        draw_handle(dc, to_client(state.selection.start(), geometry), startColor);
        draw_handle(dc, to_client(state.selection.end(), geometry), endColor);
    }
};

class ellipse final : public region_tool {
    const pointer_row& pointers() const noexcept override
    {
        static constexpr pointer_row row = {{5002, cursor_shape::crossEllipse},
                                            {5034, cursor_shape::crossPlus},
                                            {5035, cursor_shape::crossMinus},
                                            {5036, cursor_shape::move}};
        return row;
    }
    CRgn shape(const selection_state& state) const override { return CRgn::ellipse(covered_rect(state.selection)); }
    void drawShape(CDC& dc, const selection_state& state, const view::view_geometry& geometry) const override
    {
        dc.FrameRgn(CRgn::ellipse(drawn_box(state, geometry)), region_brush(), 1, 1);
    }
};

constexpr rectangle rectangleTool;
constexpr ellipse ellipseTool;

} // namespace

const cursor_tool& rectangle_tool() noexcept { return rectangleTool; }
const cursor_tool& ellipse_tool() noexcept { return ellipseTool; }

} // namespace vldv::surface
