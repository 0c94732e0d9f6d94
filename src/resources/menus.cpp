#include "resources/menus.h"

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
    {101, section_rows, false},    {102, surface_rows, true},           {103, line_rows, false},
    {105, scene_rows, true},       {106, histogram_rows, false},        {107, plain_view_rows, true},
    {108, plain_view_rows, false}, {109, fourier_rows, true},           {112, capture_rows, false},
    {113, features_rows, false},   {114, plain_view_rows, false},       {115, plain_view_rows, false},
    {118, volume_rows, true},      {119, parametric_curve_rows, false}, {120, histogram_rows, false},
    {121, plain_view_rows, false}, {125, plain_view_rows, false},
};

constexpr unsigned allIds[] = {mainMenu,           101, 102, 103, scalePopup, 105, 106, 107, 108, 109,
                               cursorModePopup,    112, 113, 114, 115,        118, 119, 120, 121, 125,
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
