#include "platform/files/temporary_file.h"

#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "platform/files/unnamed_file.h"

#include <cerrno>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace vldv::platform {

namespace {

/// For messages: the path is no name that says anything.
constexpr const wchar_t* temporaryName = L"a temporary file";

} // namespace

temporary_file::temporary_file()
{
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    if (error) throw CFileException(error.value(), L"the folder for temporary files");
    file = open_unnamed(folder, S_IRUSR | S_IWUSR);
    if (file >= 0) {
        filePath = path_of_descriptor(file);
        return;
    }
    std::string name = (folder / "vldv-XXXXXX").native();
    file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) throw CFileException(errno, to_wide(name));
    filePath = path_of_descriptor(file);
    isNamed = access(filePath.c_str(), F_OK) != 0;
    if (isNamed)
        filePath = name;
    else
        unlink(name.c_str());
}

temporary_file::~temporary_file()
{
    if (isNamed) unlink(filePath.c_str());
    close(file);
}

std::wstring temporary_file::widePath() const { return to_wide(filePath); }

void temporary_file::store(const void* bytes, std::size_t count) const
{
    if (ftruncate(file, 0) != 0 || lseek(file, 0, SEEK_SET) != 0) throw CFileException(errno, temporaryName);
    const char* next = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written = write(file, next, count);
        if (written < 0 && errno != EINTR) throw CFileException(errno, temporaryName);
        if (written < 0) continue;
        next += written;
        count -= static_cast<std::size_t>(written);
    }
}

} // namespace vldv::platform
