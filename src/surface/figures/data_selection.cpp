#include "surface/figures/data_selection.h"

#include "surface/figures/image_crop.h"

#include <algorithm>

namespace vldv::surface {

namespace {

VLPluginDataSelection segment(const selection_rect& drag)
{
    return plugin_selection(SELECTION_SEGMENT, drag.left, drag.top, drag.right, drag.bottom);
}

std::vector<VLPluginDataSelection> region_records(const CRgn& region, CSize image)
{
    std::vector<VLPluginDataSelection> records;
    for (const CRect& part : CRgn::combined(region, CRgn(CRect({0, 0}, image)), RGN_AND).rectangles())
        records.push_back(plugin_selection(SELECTION_RECTANGLE, part.left, part.top, part.right, part.bottom));
    return records;
}

void append_polyline(std::vector<VLPluginDataSelection>& records, const std::vector<CPoint>& points)
{
    for (const CPoint& point : points)
        records.push_back(
            plugin_selection(&point == &points.back() ? SELECTION_POLYLINE_END : SELECTION_POLYLINE, point.x, point.y));
}

} // namespace

std::vector<VLPluginDataSelection> data_selections(const selection_state& state, CSize image)
{
    std::vector<VLPluginDataSelection> records;
    switch (state.mode) {
    case cursor_mode::rectangle:
    case cursor_mode::ellipse:
    case cursor_mode::isoline:
        if (state.selectionActive) records = region_records(state.region, image);
        break;
    case cursor_mode::angle:
        if (state.selectionActive && !(state.angleFirstArmPending && state.tracking))
            records.push_back(segment(state.firstArm));
        if (state.selectionActive && (state.angleFirstArmPending || state.tracking))
            records.push_back(segment(state.selection));
        break;
    case cursor_mode::marks:
        for (const CPoint& mark : state.marks) records.push_back(plugin_selection(SELECTION_POINT, mark.x, mark.y));
        break;
    case cursor_mode::curve:
        for (const std::vector<CPoint>& curve : state.curves) append_polyline(records, curve);
        break;
    case cursor_mode::lengthyObject:
        append_polyline(records, state.lengthy.corners);
        break;
    case cursor_mode::section:
    case cursor_mode::distance:
    case cursor_mode::lineProfile:
    case cursor_mode::columnProfile:
        if (state.selectionActive) records.push_back(segment(state.selection));
        break;
    case cursor_mode::includeFeatures:
    case cursor_mode::excludeFeatures:
        break;
    }
    return records;
}

void copy_selected(SPMDataStream& target, const SPMDataStream& source, std::span<const VLPluginDataSelection> selected)
{
    CRect box;
    for (const VLPluginDataSelection& each : selected)
        if (each.kind == SELECTION_RECTANGLE)
            box.UnionRect(box, CRect(each.data[0], each.data[1], each.data[2], each.data[3]));
    write_crop(target, source, box);
}

} // namespace vldv::surface
