#include "recovery/state_path.h"

#include <cstdlib>

namespace vldv::recovery {

std::filesystem::path state_path()
{
    const char* const states = std::getenv("XDG_STATE_HOME");
    if (states && *states == '/') return std::filesystem::path(states) / "velmira"; // a relative one is to be ignored
    const char* const home = std::getenv("HOME");
    if (home && *home) return std::filesystem::path(home) / ".local/state/velmira";
    return {};
}

} // namespace vldv::recovery
