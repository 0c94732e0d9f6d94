#pragma once
#include "view/scale/ColorTable.h"
#include "view/scale/scale_state.h"

#include <optional>
#include <string>
#include <string_view>

class CScale;

namespace vldv::surface {

/// The palette that an image keeps among its texts, under `storedPaletteKey`: palette, direction, size and start of the
/// fixed window, its units, and for the custom palette its colours, between commas. Colours are the bytes of 32-bit
/// entries in hexadecimal, first the colour of the lowest value: backwards from the table when the scale is inverted.
struct stored_palette {
    int paletteId = 0;
    bool inverse = false;
    double fixedSize = 0.0, fixedStart = 0.0;
    std::string units;
    color_table custom; ///< in the order of the table; empty for other palettes
    bool operator==(const stored_palette&) const = default;
};

inline constexpr const char* storedPaletteKey = "palette";

std::string compose_palette(const stored_palette& palette);
/// \return nothing for a text with fewer than five fields, units of more than 100 bytes or a bad table of colours
std::optional<stored_palette> parse_palette(std::string_view text);

/// What a scale shows. \param custom  the table of palette 0
stored_palette palette_of(const view::scale_state& scale, const color_table& custom);
/// Gives both what is stored: the view's scale and the one that others follow. \return false for an unusable text,
/// with both as they were
bool apply_palette(std::string_view text, CScale& own, CScale* followed);

} // namespace vldv::surface
