#include "resources/menus.h"

#include "resources/commands.h"
#include "resources/frame_templates.h"
#include "resources/menu_parts.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <span>

namespace vldv {

namespace {

using rows_of = menu_rows (*)();

constexpr unsigned mainToolbar[] = {commands::open, commands::save, 0, commands::print,       0, commands::copy,
                                    commands::undo, commands::redo, 0, commands::paletteStrip};
constexpr unsigned surfaceToolbar[] = {commands::firstMode,
                                       commands::ellipse,
                                       commands::isoline,
                                       commands::section,
                                       commands::distance,
                                       commands::angle,
                                       commands::marks,
                                       commands::curve,
                                       commands::lineProfile,
                                       commands::columnProfile,
                                       commands::lengthyObject,
                                       0,
                                       commands::scene,
                                       commands::histogram,
                                       commands::fourier,
                                       commands::enumFeatures,
                                       0,
                                       commands::highlight,
                                       commands::invert};
constexpr unsigned fourierToolbar[] = {
    commands::selectSpectrum, commands::markSpectrum, 0, commands::zeroInner,    commands::zeroOuter,
    commands::increase,       commands::decrease,     0, commands::moreContrast, commands::lessContrast,
    commands::restoreContrast};
constexpr unsigned featuresToolbar[] = {commands::includeFeatures,  commands::excludeFeatures,  0,
                                        commands::filteredFeatures, commands::selectedFeatures, commands::fillFeatures,
                                        commands::excludeFiltered,  commands::profileHeight};
constexpr unsigned captureToolbar[] = {commands::record, commands::stopRecord, 0, commands::captureFrame,
                                       commands::captureFrames};

/// The menu bar and the toolbar of one kind of window.
struct bar_row {
    unsigned id;
    rows_of own;    ///< the view's popups, between "Edit" and "Palette"
    bool isColored; ///< has a palette
    std::span<const unsigned> toolbar;
};

constexpr bar_row bars[] = {
    {sectionFrame, section_rows, false, {}},
    {surfaceFrame, surface_rows, true, surfaceToolbar},
    {lineFrame, line_rows, false, {}},
    {sceneFrame, scene_rows, true, {}},
    {histogramFrame, histogram_rows, false, {}},
    {quickViewFrame, plain_view_rows, true, {}},
    {parametersFrame, plain_view_rows, false, {}},
    {fourierFrame, fourier_rows, true, fourierToolbar},
    {captureFrame, capture_rows, false, captureToolbar},
    {featuresFrame, features_rows, false, featuresToolbar},
    {featuresTableFrame, features_table_rows, false, {}},
    {textFrame, plain_view_rows, false, {}},
    {volumeFrame, volume_rows, true, {}},
    {parametricFrame, parametric_curve_rows, false, {}},
    {itemsFrame, histogram_rows, false, {}},
    {itemsTableFrame, plain_view_rows, false, {}},
    {collageFrame, plain_view_rows, false, {}},
};

std::vector<menu_row> joined(std::initializer_list<menu_rows> parts)
{
    std::vector<menu_row> out;
    for (const menu_rows part : parts) out.insert(out.end(), part.begin(), part.end());
    return out;
}

} // namespace

std::vector<menu_row> menu_resource(unsigned id)
{
    switch (id) {
    case mainMenu:
        return joined({main_file_rows(), options_rows(), window_rows(), help_rows()});
    case scalePopup:
        return joined({scale_popup_rows()});
    case cursorModePopup:
        return joined({cursor_popup_rows()});
    case fileOperationsPopup:
        return joined({file_popup_rows()});
    default:
        break;
    }
    const auto bar = std::ranges::find(bars, id, &bar_row::id);
    if (bar == std::end(bars)) return {};
    const menu_rows colors = bar->isColored ? palette_rows() : menu_rows();
    return joined({file_rows(), edit_rows(), bar->own(), colors, options_rows(), window_rows(), help_rows()});
}

std::vector<menu_row> surface_context_menu(bool hasCursorModes, bool hasFileOperations, bool hasFilters)
{
    if (!hasCursorModes && !hasFileOperations && !hasFilters) return {};
    return joined({hasCursorModes ? cursor_popup_rows() : menu_rows(),
                   hasFileOperations ? file_popup_rows() : menu_rows(), preferences_popup_rows(),
                   hasFilters ? filters_popup_rows() : menu_rows()});
}

std::span<const unsigned> toolbar_resource(unsigned id)
{
    if (id == mainMenu) return mainToolbar;
    const auto bar = std::ranges::find(bars, id, &bar_row::id);
    return bar == std::end(bars) ? std::span<const unsigned>() : bar->toolbar;
}

std::vector<unsigned> menu_resource_ids()
{
    std::vector<unsigned> out = {mainMenu, scalePopup, cursorModePopup, fileOperationsPopup};
    std::ranges::transform(bars, std::back_inserter(out), &bar_row::id);
    return out;
}

} // namespace vldv
