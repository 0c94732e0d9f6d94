// Sections and profiles drawn on the image: their points are dragged one by one, their lines as a whole.
#include "surface/tools/hit_test.h"
#include "surface/tools/hot/hot_tools.h"
#include "view/ImageView.h"
#include "view/image/SectionSource.h"

#include <algorithm>

namespace vldv::surface {

namespace {

std::vector<CPoint> points_of(const ISection& section)
{
    std::vector<CPoint> points;
    for (unsigned i = 0; i < section.getPointsNumber(); ++i) points.push_back(section.getSectionPoint(i));
    return points;
}

/// The section that was hit, if it is still there.
ISection* held_section(const tool_context& on)
{
    for (ISection* const section : on.world.sections())
        if (static_cast<CView*>(&section->sectionView()) == on.state.hotItem.view) return section;
    return nullptr;
}

class point_tool final : public hot_tool {
public:
    bool does(hot_action action) const noexcept override { return action == hot_action::sectionVertex; }
    hit find(const selection_state& state, const ICursorWorld& world, const tool_event& event) const override;
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5014, cursor_shape::move};
    }
    void press(const tool_context& on, const tool_event&) const override
    {
        if (ISection* const section = held_section(on)) on.world.bringToFront(*section);
    }
    bool movesOnPress() const noexcept override { return true; }
    void move(const tool_context& on, CPoint at) const override;
};

hit point_tool::find(const selection_state&, const ICursorWorld& world, const tool_event& event) const
{
    for (ISection* const section : world.sections()) {
        if (section->isLine()) continue;
        std::vector<CPoint> points = points_of(*section);
        for (CPoint& point : points) point = rescaled(point, section->sourceSize(), world.frame().size());
        if (const std::size_t vertex = find_vertex(points, event.at, event.reach); vertex != hot_item::none)
            return {hot_action::sectionVertex, {.view = &section->sectionView(), .point = vertex}};
    }
    return {};
}

void point_tool::move(const tool_context& on, CPoint at) const
{
    ISection* const section = held_section(on);
    if (!section || on.state.hotItem.point >= section->getPointsNumber()) return;
    section->setSectionPoint(static_cast<unsigned>(on.state.hotItem.point),
                             rescaled(at, on.world.frame().size(), section->sourceSize()));
    section->reloadSection();
}

class line_tool final : public hot_tool {
public:
    bool does(hot_action action) const noexcept override { return action == hot_action::moveSection; }
    /// Unlike their points, lines are taken unscaled.
    hit find(const selection_state&, const ICursorWorld& world, const tool_event& event) const override
    {
        for (ISection* const section : world.sections())
            if (find_segment(points_of(*section), event.at, event.reach) != hot_item::none)
                return {hot_action::moveSection, {.view = &section->sectionView()}};
        return {};
    }
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5045, cursor_shape::move};
    }
    void press(const tool_context& on, const tool_event& event) const override;
    void move(const tool_context& on, CPoint at) const override;
};

void line_tool::press(const tool_context& on, const tool_event& event) const
{
    ISection* const section = held_section(on);
    if (!section) return;
    on.world.bringToFront(*section);
    on.drag.section = points_of(*section);
    on.drag.anchor = event.at;
    on.world.invalidateAll();
}

/// A profile of a row or column goes on to span its image and moves across only.
void line_tool::move(const tool_context& on, CPoint at) const
{
    ISection* const section = held_section(on);
    if (!section) return;
    const CSize size = section->sourceSize();
    CSize by = at - on.drag.anchor;
    if (section->isLine()) (section->isHorizontal() ? by.cx : by.cy) = 0;
    for (std::size_t i = 0; i < on.drag.section.size() && i < section->getPointsNumber(); ++i) {
        const CPoint moved = on.drag.section[i] + by;
        section->setSectionPoint(static_cast<unsigned>(i), {std::clamp(moved.x, 0, std::max(0, size.cx - 1)),
                                                            std::clamp(moved.y, 0, std::max(0, size.cy - 1))});
    }
    section->reloadSection();
}

constexpr point_tool pointTool;
constexpr line_tool lineTool;

} // namespace

const hot_tool& hot_section_points() noexcept { return pointTool; }
const hot_tool& hot_section_lines() noexcept { return lineTool; }

} // namespace vldv::surface
