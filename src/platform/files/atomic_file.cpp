#include "platform/files/atomic_file.h"

#include "platform/files/Exceptions.h"
#include "platform/files/leftover_files.h"
#include "platform/files/paths.h"
#include "platform/files/unnamed_file.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace vldv::platform {

namespace {

constexpr std::size_t bufferSize = 65536;
constexpr mode_t defaultMode = 0666; // the umask takes its part away

/// The path that opening `path` would lead to, also when the last link points to nothing yet.
std::filesystem::path behind_links(std::filesystem::path path)
{
    constexpr int maxLinks = 40; // as the kernel's limit
    for (int links = 0; links < maxLinks; ++links) {
        std::error_code error;
        const auto next = std::filesystem::read_symlink(path, error);
        if (error) return path;
        path = path.parent_path() / next; // an absolute `next` stands alone
    }
    throw CFileException(ELOOP, to_wide(path));
}

/// Status of the file at `path`, or nothing when there is none.
std::optional<struct stat> status_of(const std::filesystem::path& path, int& error)
{
    struct stat status{};
    error = stat(path.c_str(), &status) == 0 ? 0 : errno;
    if (error == ENOENT)
        error = 0;
    else if (error == 0)
        return status;
    return std::nullopt;
}

/// 0 or why the existing file must not be replaced: a rename would succeed where writing is forbidden or senseless.
int obstacle(const std::filesystem::path& path, const struct stat& status)
{
    if (S_ISDIR(status.st_mode)) return EISDIR;
    if (!S_ISREG(status.st_mode)) return EOPNOTSUPP; // a device or a pipe
    return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0 ? 0 : errno;
}

constexpr int maxAttempts = 1000; // names taken by processes of other machines, or left by killed ones

/// Opens a new file in `folder`; `path` receives its name. \return the descriptor, or -1 with errno
int create_in(const std::filesystem::path& folder, mode_t mode, std::filesystem::path& path)
{
    int file = -1;
    for (int attempt = 0; attempt < maxAttempts && file < 0; ++attempt) {
        path = folder / unfinished_name();
        file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (file < 0 && errno != EEXIST) break;
    }
    if (file >= 0)
        mark_as_used(file);
    else
        path.clear(); // it may be the file of another
    return file;
}

/// Gives a file without a name one in `folder`. \return 0, or why not
int link_in(int file, const std::filesystem::path& folder, std::filesystem::path& path)
{
    const std::filesystem::path from = path_of_descriptor(file);
    for (int attempt = 0; attempt < maxAttempts; ++attempt) {
        path = folder / unfinished_name();
        if (linkat(AT_FDCWD, from.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0) return 0;
        if (errno != EEXIST) break;
    }
    path.clear();
    return errno;
}

/// \return 0, or why not all of it could be copied
int copy_all(int from, int to)
{
    std::vector<char> block(bufferSize);
    off_t at = 0;
    for (;;) {
        const ssize_t got = pread(from, block.data(), block.size(), at);
        if (got == 0) return 0;
        if (got < 0 && errno != EINTR) return errno;
        for (ssize_t done = 0; done < got;) {
            const ssize_t written = ::write(to, block.data() + done, static_cast<std::size_t>(got - done));
            if (written < 0 && errno != EINTR) return errno;
            done += std::max<ssize_t>(written, 0);
        }
        at += std::max<ssize_t>(got, 0);
    }
}

/// \return 0, or why the content is not on the disk
int sync(int file)
{
    while (fsync(file) != 0)
        if (errno != EINTR) return errno;
    return 0;
}

/// Owner and permissions of the file to be replaced, the owner as far as the system allows it.
int take_over(int file, const struct stat& old)
{
    if ((old.st_uid != geteuid() || old.st_gid != getegid()) && fchown(file, old.st_uid, old.st_gid) != 0) {
        // only the superuser gives files away; the content matters more
    }
    return fchmod(file, old.st_mode & 0777) == 0 ? 0 : errno;
}

} // namespace

atomic_file::atomic_file(const std::filesystem::path& target_) : given(target_), target(behind_links(target_))
{
    int error = 0;
    const auto old = status_of(target, error);
    if (error == 0 && old) error = obstacle(target, *old);
    if (error != 0) fail(error);
    pending.reserve(bufferSize);
    mode = old ? old->st_mode & defaultMode : defaultMode;
    remove_leftovers_at_times(folder());
    file = open_unnamed(folder(), mode);
    if (file >= 0)
        mark_as_used(file);
    else
        file = create_in(folder(), mode, beside);
    if (file < 0) fail(errno);
    error = old ? take_over(file, *old) : 0;
    if (error == 0) return;
    discard();
    fail(error);
}

atomic_file::~atomic_file() { discard(); }

void atomic_file::discard() noexcept
{
    if (!beside.empty()) unlink(beside.c_str());
    if (file >= 0) close(file);
    beside.clear();
    file = -1;
}

std::filesystem::path atomic_file::folder() const
{
    return target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
}

void atomic_file::write(std::span<const std::byte> bytes)
{
    assert(file >= 0 && "nothing is written after the commit");
    if (bytes.size() > bufferSize - pending.size()) flush();
    if (bytes.size() >= bufferSize)
        store(bytes);
    else
        pending.insert(pending.end(), bytes.begin(), bytes.end());
}

void atomic_file::commit()
{
    assert(file >= 0 && "committed once");
    flush();
    if (const int error = sync(file); error != 0) fail(error);
    if (beside.empty()) giveName();
    if (rename(beside.c_str(), target.c_str()) != 0) fail(errno);
    beside.clear();
    discard();
    syncFolder();
}

/// A name cannot change hands without one of its own: only between the link and the renaming does anything stand beside
/// the target. Where the system names no open file its content is copied into one that has a name.
void atomic_file::giveName()
{
    if (link_in(file, folder(), beside) == 0) return;
    const int named = create_in(folder(), mode, beside);
    if (named < 0) fail(errno);
    struct stat status{};
    int error = fstat(file, &status) == 0 ? copy_all(file, named) : errno;
    if (error == 0) error = take_over(named, status);
    if (error == 0) error = sync(named);
    close(file);
    file = named;
    if (error != 0) fail(error);
}

void atomic_file::flush()
{
    store(pending);
    pending.clear();
}

void atomic_file::store(std::span<const std::byte> bytes) const
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            fail(errno);
    }
}

/// Without this a power cut may bring the old name back. Folders that cannot be opened or synced are as good as theirs
/// get; only a device that fails is an error.
void atomic_file::syncFolder() const
{
    const int descriptor = open(folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    const int error = sync(descriptor);
    close(descriptor);
    if (error == EIO || error == ENOSPC || error == EDQUOT) fail(error);
}

void atomic_file::fail(int error) const { throw CFileException(error, to_wide(given)); }

} // namespace vldv::platform
