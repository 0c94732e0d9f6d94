#pragma once
#include "platform/draw/geometry.h"
#include "vldv_api.h"

#include <optional>
#include <vector>

namespace vldv::spectra {

/// The areas and marks of a spectrum under the mouse. All is in centred coordinates, bins from the zero frequency; the
/// sides of areas are inclusive. Every area has a mirror image through the origin, which is taken hold of as well.
class VLDV_INTERNAL_API spectrum_control {
public:
    enum class tool { areas, marks };
    /// Where the pointer is, and how far from a side or a mark it still meets it.
    struct pointer {
        CPoint bin;
        double x = 0.0, y = 0.0;           ///< bins; whole numbers are their middles
        double reachX = 0.0, reachY = 0.0; ///< bins
    };
    /// What a press takes hold of.
    enum class part { nothing, inside, side, mark };

    tool used = tool::areas;
    const std::vector<CRect>& areas() const noexcept { return rects; }
    const std::vector<CPoint>& marks() const noexcept { return points; }
    void clearAreas() noexcept;
    void clearMarks() noexcept;
    void setMarks(std::vector<CPoint> marks_);
    /// Drops what lies beyond a spectrum of this size.
    void keepWithin(CSize size);

    part under(const pointer& at) const;
    bool isHeld() const noexcept { return grip.has_value(); }
    /// The press has begun an area.
    bool isNewArea() const noexcept { return grip && rects.size() > grip->rectsBefore.size(); }
    /// The areas' tool moves and sizes what is under the pointer and else begins an area; the marks' tool deletes a
    /// mark under the pointer, with `shift` moves it, and else sets one. With `shift` the areas' tool always begins an
    /// area; with `control` it deletes the one under the pointer.
    void press(const pointer& at, bool shift, bool control);
    /// \param size  of the spectrum, which nothing leaves \return something has changed
    bool drag(CPoint bin, CSize size);
    void release() noexcept { grip.reset(); }
    /// Everything as before the press.
    void cancel();
    /// Deletes what was touched last. \return something was
    bool removeLast();

private:
    struct hit {
        std::size_t number;
        bool isMirrored;
        int sideX, sideY; ///< -1 the left or lower side, 1 the other one, 0 none
        bool operator==(const hit&) const = default;
    };
    struct held {
        hit what;
        CPoint from;
        CRect area; ///< as it was
        CPoint mark;
        std::vector<CRect> rectsBefore;
        std::vector<CPoint> pointsBefore;
    };
    std::optional<hit> areaUnder(const pointer& at) const;
    std::optional<std::size_t> markUnder(const pointer& at) const;
    void pressArea(const pointer& at, bool shift, bool control);
    void pressMark(const pointer& at, bool shift);
    void hold(const hit& what, CPoint from, const CRect& area, CPoint mark);

    std::vector<CRect> rects; ///< left <= right and top <= bottom
    std::vector<CPoint> points;
    std::optional<held> grip;
};

/// The bins of a spectrum, as a picture shows them: inclusive sides.
CRect spectrum_bounds(CSize size) noexcept;

} // namespace vldv::spectra
