#pragma once
#include "platform/app/Host.h"
#include "view/scale/ColorTable.h"
#include "view/scale/scale_state.h"

#include <string>

/// The section "Palette" of the profile: "Values", "CustomMaxColorN", "CustomColorTable".
namespace vldv::view {

/// Reads palette, mode and window into a state; what is absent or unreadable stays as it is. The palette is one of the
/// built-in ones afterwards, the mode one of the four.
void read_scale_values(const IProfile& profile, scale_state& state);
/// Saves them. \return false when the profile refuses
bool write_scale_values(IProfile& profile, const scale_state& state);

/// The custom table; 255 black entries, or as many as "CustomMaxColorN" says, when none was saved.
color_table read_custom_palette(const IProfile& profile);
/// Saves it, its length first. \return false at the first value that the profile refuses
bool write_custom_palette(IProfile& profile, const color_table& table);

} // namespace vldv::view
