#include "cli/choice/palette_choice.h"

#include "base/text.h"
#include "cli/choice/nearest_name.h"
#include "view/Scale.h"
#include "view/scale/palette_folder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <vector>

namespace vldv::cli {

namespace {

/// By their number.
constexpr std::array<const char*, view::builtInPalettes> builtInNames = {
    "custom", "gray", "blue", "brown", "green", "zebra", "multicolor", "multicolor-2"};

struct palette_choice {
    int builtIn = -1;
    color_table colors; ///< of another
};

/// Those that come with the program, by name: there are no settings that could name another folder.
std::vector<view::file_palette> bundled_palettes()
{
    std::vector<view::file_palette> palettes = view::read_palette_folder(view::bundled_palette_folder());
    std::ranges::sort(palettes, {}, &view::file_palette::name);
    return palettes;
}

std::vector<std::string> all_names()
{
    std::vector<std::string> names(builtInNames.begin(), builtInNames.end());
    for (view::file_palette& each : bundled_palettes()) names.push_back(std::move(each.name));
    return names;
}

std::string find(const std::string& text, palette_choice& found)
{
    if (const auto number = base::whole_integer(text); number && *number >= 0 && *number < view::builtInPalettes) {
        found.builtIn = static_cast<int>(*number);
        return {};
    }
    for (std::size_t id = 0; id < builtInNames.size(); ++id)
        if (base::equal_ignoring_case(text, builtInNames[id])) {
            found.builtIn = static_cast<int>(id);
            return {};
        }
    for (view::file_palette& each : bundled_palettes())
        if (base::equal_ignoring_case(text, each.name)) {
            found.colors = std::move(each.table);
            return {};
        }
    std::error_code ignored;
    if (std::filesystem::exists(text, ignored)) {
        if (auto colors = view::load_palette(text)) {
            found.colors = std::move(*colors);
            return {};
        }
        return "\"" + text + "\" is no palette file";
    }
    return "there is no palette \"" + text + "\"; the nearest name is " + nearest_name(text, all_names());
}

} // namespace

std::string palette_names()
{
    std::string names;
    for (const std::string& name : all_names()) names += (names.empty() ? "" : ", ") + name;
    return names;
}

std::string choose_palette(CScale& scale, const std::string& text)
{
    palette_choice found;
    if (std::string problem = find(text, found); !problem.empty()) return problem;
    if (found.builtIn < 0) {
        const std::vector<unsigned long> colors(found.colors.begin(), found.colors.end());
        scale.SetCustomPalette(colors.data(), static_cast<int>(colors.size()));
    }
    scale.SetPaletteId(found.builtIn < 0 ? view::customPalette : found.builtIn);
    return {};
}

std::string palette_problem(const std::string& text)
{
    palette_choice found;
    return find(text, found);
}

} // namespace vldv::cli
