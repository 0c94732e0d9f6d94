#pragma once
#include "platform/draw/Region.h"
#include "platform/draw/geometry.h"

#include <cstddef>
#include <string>
#include <vector>

class CView;

namespace vldv::surface {

/// What the mouse draws: the number of the command less 6001.
enum class cursor_mode {
    rectangle = 0,
    ellipse,
    section,
    distance,
    angle,
    marks,
    curve,
    lineProfile,
    columnProfile,
    lengthyObject,
    isoline,
    includeFeatures,
    excludeFeatures,
};
constexpr bool is_region_mode(cursor_mode mode) noexcept
{
    return mode == cursor_mode::rectangle || mode == cursor_mode::ellipse || mode == cursor_mode::isoline;
}

/// What a press would do where the cursor is.
enum class hot_action {
    none = 0,
    sectionVertex = 2,
    moveMark = 3,
    deleteMark = 4,
    moveVertex = 5,
    deleteVertex = 6,
    volumeMark = 7,
    insertVertex = 8,
    activateCurve = 9,
    decoration = 10,
    pan = 11,
    moveSection = 12,
};

/// What the cursor is over. Views are looked up among those of the document before they are used.
struct hot_item {
    static constexpr std::size_t none = std::size_t(-1);
    CView* view = nullptr;    ///< of a section or a volume
    std::size_t list = none;  ///< of the curves, or of the decoration's group
    std::size_t point = none; ///< mark, vertex, or decoration in its group
    bool operator==(const hot_item&) const = default;
};

/// How a new shape joins the selected region.
enum class combine_mode { replace = 0, add = 1, subtract = 2, move = 3 };

/// Two corners in samples as the user drew them: right and bottom follow the mouse and may be the smaller ones.
struct selection_rect {
    int left = 0, top = 0, right = 0, bottom = 0;
    int dx() const noexcept { return right - left; }
    int dy() const noexcept { return bottom - top; }
    CPoint start() const noexcept { return {left, top}; }
    CPoint end() const noexcept { return {right, bottom}; }
    void endAt(CPoint at) noexcept
    {
        right = at.x;
        bottom = at.y;
    }
    bool operator==(const selection_rect&) const = default;
};

/// What a measurement is about.
enum class measured_thing {
    other, ///< no steps between samples
    way,
    lengthyObject,
    angle,
};

/// The latest measurement as it stands on the picture.
struct measure_text {
    bool isVisible = false;
    std::wstring text;
    CPoint position;             ///< samples
    std::uint32_t alignment = 0; ///< flags of `text_align`
    measured_thing thing = measured_thing::other;
    std::vector<CPoint> points; ///< measured along; of an angle the ends of both drags
};

/// A trace along a ridge: the corners that the user set and the way between them.
struct lengthy_trace {
    std::vector<CPoint> corners; ///< samples, as clicked
    std::vector<CPoint> path;    ///< samples, each beside the next
};

/// All that a user has drawn or selected on a surface, in samples of its image; rows count upwards.
struct selection_state {
    cursor_mode mode = cursor_mode::rectangle;
    bool selectionActive = false; ///< a selection or measurement is there
    bool tracking = false;        ///< the left button is down in a drag
    hot_action hotAction = hot_action::none;
    hot_item hotItem;
    selection_rect selection;
    CRgn region; ///< of the region modes
    combine_mode combine = combine_mode::replace;
    std::vector<CPoint> marks;               ///< in the order of their numbers
    std::vector<std::vector<CPoint>> curves; ///< the first is the active one
    std::vector<CPoint> isoline;             ///< contour while it is being chosen
    measure_text measure;
    selection_rect firstArm;          ///< of an angle
    bool angleFirstArmPending = true; ///< the next drag draws it
    lengthy_trace lengthy;
    bool roiActive = false;
    selection_rect roi; ///< region of interest
};

} // namespace vldv::surface
