#pragma once
#include <optional>
#include <string>

class CScale;

namespace vldv::cli {

/// The names that `--palette` takes besides the numbers 0 to 7 and palette files, for its help.
std::string palette_names();
/// Gives a scale the palette that a text names: a built-in one by its name or number, one that comes
/// with the program by its name, or a `.pal` file by its path.
/// \return empty, or why there is no such palette
std::string choose_palette(CScale& scale, const std::string& text);
/// Why a text names no palette, empty when it does: CLI11's judge of the option.
std::string palette_problem(const std::string& text);

} // namespace vldv::cli
