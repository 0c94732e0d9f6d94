#pragma once
#include "platform/draw/DC.h"
#include "surface/tools/mouse_tool.h"

namespace vldv::surface {

/// What the selected region is filled with.
struct selection_style {
    enum fill { none = 0, inner = 1, outer = 2 };
    int filled = outer;
    colorEntry color = 0x64c800;
};

/// What must be there before a mode can be chosen: samples, samples and a view to open for what is drawn, or the view
/// that enumerates features.
enum class tool_need { samples, sections, lines, features };

/// One cursor mode: what is drawn where nothing is taken hold of, what a release leaves behind, and how that looks.
class cursor_tool : public mouse_tool {
public:
    void release(const tool_context& on, const tool_event& event) const final
    {
        on.state.selection.endAt(event.at);
        finish(on, event);
    }
    /// What the drag leaves behind.
    virtual void finish(const tool_context& on, const tool_event& event) const = 0;
    void abandon(const tool_context& on) const override { on.state.selectionActive = false; }

    virtual tool_need needs() const noexcept { return tool_need::samples; }
    /// The mode has just been chosen.
    virtual void enter(const tool_context&) const {}
    /// \return whether the key, a `key_code`, is one of the mode's
    virtual bool key(const tool_context&, unsigned) const { return false; }
    /// What a press does depends on keys, and the pointer tells it.
    virtual bool showsModifiers() const noexcept { return false; }

    /// Draws the selection over the picture; marks and curves come above it. The surface has the pen of lines.
    virtual void draw(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
                      const selection_style& style) const = 0;
    /// Draws what a drag shows above all that.
    virtual void drawAbove(CDC&, const selection_state&, const view::view_geometry&) const {}
    /// Adds the client pixels of all that changes when the state does.
    virtual void addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const = 0;

protected:
    ~cursor_tool() = default;
};

} // namespace vldv::surface
