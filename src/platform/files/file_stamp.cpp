#include "platform/files/file_stamp.h"

#include "platform/files/paths.h"

#include <cerrno>
#include <fstream>
#include <sys/stat.h>

namespace vldv::platform {

std::optional<file_stamp> stamp_of(const std::wstring& path)
{
    struct stat status{};
    if (path.empty() || stat(to_path(path).c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return file_stamp{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                      static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

std::optional<file_stamp> open_stamped(std::ifstream& in, const std::wstring& path)
{
    constexpr int maxTries = 100; // a program that replaces the file each time has to stop some day
    std::optional<file_stamp> before, after;
    for (int tries = 0; tries < maxTries && (tries == 0 || before != after); ++tries) {
        in.close();
        before = stamp_of(path);
        errno = 0;
        in.open(to_path(path), std::ios::binary);
        if (!in) return std::nullopt;
        after = stamp_of(path); // equal to before: no other file was there in between to be opened
    }
    return before;
}

} // namespace vldv::platform
