#include "resources/menus.h"

#include "resources/frame_templates.h"
#include "resources/menu_parts.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace {

using rows_of = menu_rows (*)();

struct bar_row {
    unsigned id;
    rows_of own;    ///< the view's popups, between "Edit" and "Palette"
    bool isColored; ///< has a palette
};

constexpr bar_row bars[] = {
    {sectionFrame, section_rows, false},
    {surfaceFrame, surface_rows, true},
    {lineFrame, line_rows, false},
    {sceneFrame, scene_rows, true},
    {histogramFrame, histogram_rows, false},
    {quickViewFrame, plain_view_rows, true},
    {parametersFrame, plain_view_rows, false},
    {fourierFrame, fourier_rows, true},
    {captureFrame, capture_rows, false},
    {featuresFrame, features_rows, false},
    {featuresTableFrame, plain_view_rows, false},
    {textFrame, plain_view_rows, false},
    {volumeFrame, volume_rows, true},
    {parametricFrame, parametric_curve_rows, false},
    {itemsFrame, histogram_rows, false},
    {itemsTableFrame, plain_view_rows, false},
    {collageFrame, plain_view_rows, false},
};

constexpr unsigned allIds[] = {mainMenu,           sectionFrame,    surfaceFrame,   lineFrame,          scalePopup,
                               sceneFrame,         histogramFrame,  quickViewFrame, parametersFrame,    fourierFrame,
                               cursorModePopup,    captureFrame,    featuresFrame,  featuresTableFrame, textFrame,
                               volumeFrame,        parametricFrame, itemsFrame,     itemsTableFrame,    collageFrame,
                               fileOperationsPopup};

constexpr unsigned mainToolbar[] = {57601, 57603, 0, 57607, 0, 57634, 57643, 57644, 0, 10012};
constexpr unsigned surfaceToolbar[] = {6001, 6002, 6011,  6003,  6004,  6005,  6006, 6007,  6008, 6009,
                                       6010, 0,    10015, 10031, 10045, 10064, 0,    10191, 10192};
constexpr unsigned fourierToolbar[] = {6201, 6202, 0, 10046, 10047, 10098, 10099, 0, 10048, 10049, 10050};
constexpr unsigned featuresToolbar[] = {6012, 6013, 0, 10067, 10171, 10136, 10104, 10068};
constexpr unsigned captureToolbar[] = {10164, 10165, 0, 10072, 10078};

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
    switch (id) {
    case mainMenu:
        return mainToolbar;
    case 102:
        return surfaceToolbar;
    case 109:
        return fourierToolbar;
    case 112:
        return captureToolbar;
    case 113:
        return featuresToolbar;
    default:
        return {};
    }
}

std::span<const unsigned> menu_resource_ids() noexcept { return allIds; }
