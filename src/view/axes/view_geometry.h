#pragma once
#include "base/streams/rounding.h"
#include "platform/draw/geometry.h"
#include "vldv_api.h"

#include <algorithm>
#include <vector>

namespace vldv::view {

/// Where source samples lie on a window. Source y grows upwards and client y downwards; a sample is the square around
/// its centre. Towards the window nothing is clamped, towards the samples results stay inside `source`. Where a place
/// falls between two pixels or samples it goes to the one that it is drawn as: with a pixel for each sample every pixel
/// leads to the sample that it shows, and back.
struct view_geometry {
    CRect display; ///< client pixels
    CRect source;  ///< samples

    int xToClient(int x) const noexcept
    {
        if (source.Width() == 0) return display.left;
        return halvesDown((x + 0.5 - source.left) * display.Width() / source.Width()) + display.left;
    }
    int yToClient(int y) const noexcept
    {
        const int height = source.Height();
        if (height == 0) return display.top;
        return halvesDown((height - 0.5 - y + source.top) * display.Height() / height) + display.top;
    }
    /// Pixels that show any of the samples of a rectangle, with those beside them.
    CRect around(const CRect& samples) const noexcept
    {
        if (samples.IsRectEmpty() || source.IsRectEmpty()) return {};
        const int width = display.Width() / source.Width() + 2, height = display.Height() / source.Height() + 2;
        return {xToClient(samples.left) - width, yToClient(samples.bottom - 1) - height,
                xToClient(samples.right - 1) + width, yToClient(samples.top) + height};
    }
    int xToSource(int x) const noexcept
    {
        if (display.Width() == 0) return source.left;
        const double covered = static_cast<double>(std::int64_t{source.Width()} * (x - display.left));
        return within(source.left, source.right - 1, base::nearest_int(covered / display.Width() - 0.5 + source.left));
    }
    int yToSource(int y) const noexcept
    {
        if (display.Height() == 0) return source.top;
        const double covered = static_cast<double>(std::int64_t{y - display.top} * source.Height());
        return within(source.top, source.bottom - 1,
                      halvesDown(source.Height() - 0.5 + source.top - covered / display.Height()));
    }

private:
    /// The nearest integer, halves down.
    static int halvesDown(double v) noexcept { return -base::nearest_int(-v); }
    static int within(int low, int high, int value) noexcept { return std::max(low, std::min(high, value)); }
};

/// A size scaled to the box of the limits with its aspect ratio, up or down, neither side below 1. A size without area
/// stays as it is.
CSize best_size(CSize size, CSize limit) noexcept;

/// The largest rectangle of the shape of `source` in the middle of a room; a source without area takes all of it.
CRect shape_kept(const CRect& room, CSize source) noexcept;

/// The part of an image that is shown, larger or smaller by `factor`, with the sample `around` in the same place: at
/// least one sample more or less, and no more than there are.
VLDV_INTERNAL_API CRect zoomed_window(const CRect& window, CSize whole, CPoint around, double factor) noexcept;

/// The part of an image of the size of `window` that has a sample in sight: itself where it has, otherwise one with the
/// sample in the middle as far as there is image around.
CRect window_showing(const CRect& window, CSize whole, CPoint sample) noexcept;

/// A width below 1 repaired: 0 gives 1 by 1, a negative one a width of 1 and the height divided by it. Sides end at
/// 2^24.
VLDV_INTERNAL_API CSize repaired_content(CSize size) noexcept;

/// No picture is made smaller than this by hand or wheel, pixels of a side.
constexpr int smallestPicture = 32;
/// Twice the monitors together: what no wheel goes beyond. Without monitors there is no limit.
CSize largest_display(const std::vector<CRect>& monitors) noexcept;
/// The zoom of a display by `factor` as far as it goes: up to `largest`, down until its shorter side is `smallest`. A
/// display that is beyond stays.
double bounded_zoom(double factor, CSize display, int smallest, CSize largest) noexcept;
/// A size that fits into the limit as it is, another one scaled down with its aspect ratio, no side below 1.
CSize shrunk_into(CSize size, CSize limit) noexcept;

/// How full-screen views choose their place.
enum full_screen_mode { oneMonitor = 0, nearestMonitor = 1, allMonitors = 2 };
struct full_screen_place {
    CRect target;       ///< of the window
    CPoint pointerSpot; ///< centre of the monitor that was chosen
};
/// \param index     monitor of mode 0, in the system's order; the first when there is no such
/// \param main      the main window, of which mode 1 takes the monitor
full_screen_place place_full_screen(const std::vector<CRect>& monitors, int mode, int index, const CRect& main);

} // namespace vldv::view
