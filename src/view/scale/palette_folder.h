#pragma once
#include "view/scale/ColorTable.h"
#include "vldv_api.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vldv::view {

/// A palette that stands in a file of its own.
struct file_palette {
    std::string name; ///< of the file, without folder and extension
    color_table table;
};

/// The folder of the option "directory.palettes" of the list "global_options", environment variables expanded; empty
/// when there is none.
std::filesystem::path palette_folder();
/// The folder of the palettes that come with the program, beside it.
VLDV_INTERNAL_API std::filesystem::path bundled_palette_folder();
/// A palette file, or nothing when it cannot be read or is none.
VLDV_INTERNAL_API std::optional<color_table> load_palette(const std::filesystem::path& path);
/// All readable `.pal` files of a folder in the order of its listing; others are passed over.
VLDV_INTERNAL_API std::vector<file_palette> read_palette_folder(const std::filesystem::path& folder);
/// Replaces $NAME, ${NAME} and %NAME% by the environment; unknown names stay as they are.
std::string expanded_environment(const std::string& text);

} // namespace vldv::view
