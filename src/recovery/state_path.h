#pragma once
#include <filesystem>

namespace recovery {

/// Folder of what programs keep between runs that is no setting: "velmira" in $XDG_STATE_HOME, or in ".local/state" of
/// the home folder. Empty when the user has neither.
std::filesystem::path state_path();

} // namespace recovery
