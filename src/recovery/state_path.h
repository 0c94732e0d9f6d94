#pragma once
#include "vldv_api.h"

#include <filesystem>

namespace vldv::recovery {

/// Folder of what programs keep between runs that is no setting: "velmira" in $XDG_STATE_HOME, or in ".local/state" of
/// the home folder. Empty when the user has neither.
VLDV_INTERNAL_API std::filesystem::path state_path();

} // namespace vldv::recovery
