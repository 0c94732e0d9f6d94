#pragma once
#include "cli/pictures/drawing.h"
#include "curves/figures/profile.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

class CDCView;
class CScale;
class CStorageDoc;

namespace vldv::cli {

/// What such a window shows: curves, their spectrum below, curves over another image, how often each height of a curve
/// or surface occurs, or the spectrum of a surface.
enum class curve_view { section, spectrum, parametric, histogram, fourier, features };

/// Whether axes, marks and texts stand around the curves.
enum class curve_legend { whereItFits, always, never };

/// A window on the curves of one image of a document.
struct curve_window {
    unsigned image = 0, sub = 0; ///< curve `sub` is the active one
    curve_view kind = curve_view::section;
    std::vector<curves::grid_point> points; ///< through a surface or volume; none for the whole of a curve
    unsigned positions = 0;                 ///< of a parametric view, the image that the other is measured against
    bool showsForceLines = false;
    curve_legend legend = curve_legend::whereItFits;
    std::optional<CSize> size;               ///< pixels; that in which the window opens when none
    std::function<void(CScale&)> setUpScale; ///< of a spectrum
    /// Sets further options of the view. \return the reason why it cannot, or empty
    std::function<std::string(CDCView&)> setOptions;
};

/// Draws the window. With `whereItFits` the curves stand alone where margins would take more than half of a side.
/// \return the reason why there is no picture, or empty
std::string draw_curve_window(CStorageDoc& document, const curve_window& window, const drawing_user& use);

} // namespace vldv::cli
