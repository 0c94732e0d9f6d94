// A line between two samples: as a section in a window of its own, or measured on the picture.
#include "surface/figures/measure/measurements.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/modes/drag_tool.h"

#include <array>

namespace vldv::surface {

namespace {

class section final : public drag_tool {
public:
    tool_need needs() const noexcept override { return tool_need::sections; }
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5003, cursor_shape::crossSection};
    }
    void finish(const tool_context& on, const tool_event&) const override
    {
        const selection_rect& drag = on.state.selection;
        on.state.selectionActive = false;
        if (!is_short(drag)) on.world.openSection(std::array{drag.start(), drag.end()});
    }
};

class distance final : public drag_tool {
public:
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5004, cursor_shape::crossDistance};
    }
    void finish(const tool_context& on, const tool_event& event) const override;
};

void distance::finish(const tool_context& on, const tool_event&) const
{
    selection_state& state = on.state;
    if (is_short(state.selection)) {
        state.selectionActive = false;
        return;
    }
    state.measure = length_text(std::array{state.selection.start(), state.selection.end()},
                                steps_of(on.world.axisX(), on.world.axisY()));
    if (static_cast<double>(state.measure.text.size()) >= on.world.option("text.compact_length"))
        on.world.rebuildStatistics();
}

constexpr section sectionTool;
constexpr distance distanceTool;

} // namespace

const cursor_tool& section_tool() noexcept { return sectionTool; }
const cursor_tool& distance_tool() noexcept { return distanceTool; }

} // namespace vldv::surface
