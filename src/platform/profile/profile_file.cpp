#include "platform/profile/profile_file.h"

#include "platform/files/Exceptions.h"
#include "platform/files/atomic_file.h"
#include "platform/files/paths.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

namespace vldv::platform {

namespace {

constexpr std::size_t maxSize = std::size_t{64} << 20;

[[noreturn]] void fail(int error, const std::filesystem::path& file) { throw CFileException(error, to_wide(file)); }

[[noreturn]] void fail_as_too_large(const std::filesystem::path& file)
{
    throw CException(file.native() + ": larger than the 64 MiB that settings may take");
}

/// Closes it at the end.
struct open_file {
    explicit open_file(const std::filesystem::path& file)
        : descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) // a pipe must not hold the program up
    {
    }
    open_file(const open_file&) = delete;
    open_file& operator=(const open_file&) = delete;
    ~open_file()
    {
        if (descriptor >= 0) close(descriptor);
    }
    const int descriptor;
};

std::string read_all(int descriptor, std::size_t expected, const std::filesystem::path& file)
{
    std::string text(expected + 1, '\0'); // the one more shows that the file did not grow
    std::size_t used = 0;
    for (;;) {
        if (used > maxSize) fail_as_too_large(file);
        if (used == text.size()) text.resize(2 * text.size());
        const ssize_t got = ::read(descriptor, text.data() + used, text.size() - used);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail(errno, file);
        if (got == 0) break;
        used += static_cast<std::size_t>(got);
    }
    text.resize(used);
    return text;
}

std::filesystem::path folder_of(const std::filesystem::path& file)
{
    return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

void make_folder(const std::filesystem::path& folder)
{
    constexpr mode_t userOnly = 0700;
    if (folder.empty() || mkdir(folder.c_str(), userOnly) == 0) return;
    const int error = errno;
    std::error_code ignored;
    if (error == EEXIST && std::filesystem::is_directory(folder, ignored)) return;
    if (error != ENOENT || folder.parent_path() == folder) fail(error == EEXIST ? ENOTDIR : error, folder);
    make_folder(folder.parent_path());
    if (mkdir(folder.c_str(), userOnly) != 0 && errno != EEXIST) fail(errno, folder);
}

int access_error(const std::filesystem::path& path, int wanted)
{
    return faccessat(AT_FDCWD, path.c_str(), wanted, AT_EACCESS) == 0 ? 0 : errno;
}

} // namespace

std::string read_profile_file(const std::filesystem::path& file)
{
    const open_file in(file);
    if (in.descriptor < 0) {
        if (errno == ENOENT) return {};
        fail(errno, file);
    }
    struct stat status{};
    if (fstat(in.descriptor, &status) != 0) fail(errno, file);
    if (S_ISDIR(status.st_mode)) fail(EISDIR, file);
    if (!S_ISREG(status.st_mode)) fail(EOPNOTSUPP, file);
    if (static_cast<std::uintmax_t>(status.st_size) > maxSize) fail_as_too_large(file);
    return read_all(in.descriptor, static_cast<std::size_t>(status.st_size), file);
}

void replace_profile_file(const std::filesystem::path& file, const std::string& text)
{
    if (text.size() > maxSize) fail_as_too_large(file); // the next start would refuse it
    atomic_file out(file);
    out.write(std::as_bytes(std::span(text)));
    out.commit();
}

void make_profile_folder(const std::filesystem::path& file) { make_folder(folder_of(file)); }

void expect_storable(const std::filesystem::path& file)
{
    const int fileError = access_error(file, W_OK);
    if (fileError != 0 && fileError != ENOENT) fail(fileError, file);
    std::filesystem::path folder = folder_of(file);
    int error = access_error(folder, W_OK | X_OK);
    for (; error == ENOENT && folder != folder_of(folder); error = access_error(folder, W_OK | X_OK))
        folder = folder_of(folder); // the nearest that exists: the others can be made in it
    if (error != 0) fail(error, folder);
}

} // namespace vldv::platform
