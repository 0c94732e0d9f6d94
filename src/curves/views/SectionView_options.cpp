// What changes of options cause.
#include "base/text.h"
#include "base/units.h"
#include "curves/views/SectionView.h"

#include <utility>

using namespace vldv;

namespace {

constexpr const char *fixedRange = "ZScale.Scaling.fixed.value", *fixedUnits = "ZScale.Scaling.fixed.units",
                     *fixedStart = "ZScale.Scaling.fixed.zero.value";

} // namespace

void CSectionView::oh_refresh_display(const SPMVar&)
{
    RefreshDisplay();
    Invalidate(true);
}

void CSectionView::oh_reload(const SPMVar& changed)
{
    if (std::string_view(changed.get_name()) == "ShowSpectrum" && isOpened()) fitParent();
    LoadData();
    Invalidate(true);
}

void CSectionView::oh_resize(const SPMVar&)
{
    if (isOpened()) Resize(displaySize.cx, displaySize.cy);
}

void CSectionView::oh_update_text(const SPMVar&)
{
    updateText();
    Invalidate(true); // units and starts of the axes are others, too
}

void CSectionView::oh_textvspace(const SPMVar&)
{
    updateText();
    Invalidate(true);
}

void CSectionView::oh_marks_mode(const SPMVar&)
{
    updateText();
    Invalidate(true);
    tellSurfaces();
}

void CSectionView::oh_fcstat(const SPMVar&)
{
    measureForce();
    oh_update_text({});
}

void CSectionView::oh_fcmin(const SPMVar&)
{
    measureForce();
    Invalidate(true);
}

void CSectionView::oh_fcvalley(const SPMVar&)
{
    measureForce();
    oh_update_text({});
}

void CSectionView::oh_trend(const SPMVar&)
{
    if (hasCurves() && isOptionOn("ShowTrendLine")) fill_trend_line_data();
    oh_update_text({});
}

std::optional<curves::fixed_heights> CSectionView::fixedHeights() const
{
    constexpr int fixed = 1;
    if (intOption("ZScale.Scaling") != fixed) return std::nullopt;
    curves::fixed_heights made{option(fixedUnits).as_string().c_str(), doubleOption(fixedRange), {}};
    if (intOption("ZScale.Scaling.fixed.zero_mode") == 1) made.start = doubleOption(fixedStart);
    return made;
}

/// By copies: each of them loads the curves anew, and their axes with them.
void CSectionView::storeFixedHeights(double range, double start, std::string units)
{
    setOption(fixedRange, base::shortest(range).c_str());
    setOption(fixedStart, base::shortest(start).c_str());
    setOption(fixedUnits, units.c_str());
}

/// A fixed scale begins with what is shown, in the units of the values; what was given before is converted.
void CSectionView::oh_z_scaling(const SPMVar& changed)
{
    if (const auto fixed = fixedHeights(); fixed && hasCurves()) {
        const VLAxis axis = valueAxis();
        const char* const units = axis.get_units();
        const std::string before = fixed->units;
        if (units_convertable(before.c_str(), units) > 0)
            storeFixedHeights(convert_size(before.c_str(), units, fixed->range),
                              convert_size(before.c_str(), units, doubleOption(fixedStart)), units);
        else
            storeFixedHeights(min_max.range * axis.scale, axis.at(min_max.minimum), units);
    }
    oh_reload(changed);
}

/// "match_scale": the fixed scale becomes that of the curves.
void CSectionView::OnCommandMessage(const char* id, CVarListDlg* dialog)
{
    if (std::string_view(id) == "match_scale" && fixedHeights() && hasCurves()) {
        const VLAxis axis = valueAxis();
        storeFixedHeights(min_max.range * axis.scale, min_max.minimum * axis.scale + zeroOffset(), axis.get_units());
        oh_z_scaling(option("ZScale.Scaling"));
    }
    CImageView::OnCommandMessage(id, dialog);
}
