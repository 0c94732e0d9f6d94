#include "platform/temporary_file.h"

#include "platform/Exceptions.h"
#include "platform/paths.h"

#include <cerrno>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace platform {

temporary_file::temporary_file()
{
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    if (error) throw CFileException(error.value(), L"the folder for temporary files");
    std::string name = (folder / "vldv-XXXXXX").native();
    const int file = mkstemp(name.data());
    if (file < 0) throw CFileException(errno, to_wide(name));
    close(file);
    filePath = name;
}

temporary_file::~temporary_file() { remove(); }

std::wstring temporary_file::wide_path() const { return to_wide(filePath); }

void temporary_file::store(const void* bytes, std::size_t count) const
{
    const int file = open(filePath.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (file < 0) throw CFileException(errno, wide_path());
    const char* next = static_cast<const char*>(bytes);
    int failure = 0;
    while (count > 0 && failure == 0) {
        const ssize_t written = write(file, next, count);
        if (written < 0) {
            if (errno != EINTR) failure = errno;
            continue;
        }
        next += written;
        count -= static_cast<std::size_t>(written);
    }
    if (close(file) != 0 && failure == 0) failure = errno;
    if (failure != 0) throw CFileException(failure, wide_path());
}

void temporary_file::remove() noexcept
{
    std::error_code ignored; // somebody may have cleaned the folder: gone is what we want
    if (!filePath.empty()) std::filesystem::remove(filePath, ignored);
    filePath.clear();
}

} // namespace platform
