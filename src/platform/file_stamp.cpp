#include "platform/file_stamp.h"

#include "platform/paths.h"

#include <sys/stat.h>

namespace platform {

std::optional<file_stamp> stamp_of(const std::wstring& path)
{
    struct stat status{};
    if (path.empty() || stat(to_path(path).c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return file_stamp{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                      static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

} // namespace platform
