#include "platform/files/unnamed_file.h"

#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>

namespace vldv::platform {

namespace {

bool areAllowed = true;

} // namespace

bool allow_unnamed_files(bool allowed) noexcept { return std::exchange(areAllowed, allowed); }

std::filesystem::path path_of_descriptor(int file) { return "/proc/self/fd/" + std::to_string(file); }

int open_unnamed(const std::filesystem::path& folder, mode_t mode)
{
    if (!areAllowed) return -1;
    const int file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
    // Without the folder of descriptors there is no way to name it later, nor to open it again.
    if (file < 0 || access(path_of_descriptor(file).c_str(), F_OK) == 0) return file;
    close(file);
    return -1;
}

} // namespace vldv::platform
