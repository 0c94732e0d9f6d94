#include "platform/files/file_lock.h"

#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace vldv::platform {

namespace {

using clock = std::chrono::steady_clock;

/// 0, or why the file could not be locked; EWOULDBLOCK when the time ran out.
/// The lock is polled: a waiting flock could not give up after a time.
int lock_until(int descriptor, clock::time_point end)
{
    constexpr std::chrono::milliseconds pause{5};
    while (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) continue;
        if (errno != EWOULDBLOCK || clock::now() >= end) return errno;
        std::this_thread::sleep_for(pause);
    }
    return 0;
}

bool is_without_locks(int error) { return error == ENOLCK || error == ENOSYS || error == EOPNOTSUPP; }

} // namespace

file_lock::file_lock(const std::filesystem::path& file, std::chrono::milliseconds patience)
    : descriptor(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600))
{
    if (descriptor < 0) throw CFileException(errno, to_wide(file));
    const int error = lock_until(descriptor, clock::now() + patience);
    if (error == 0 || is_without_locks(error)) return;
    close(descriptor);
    if (error == EWOULDBLOCK) throw CException(file.native() + ": another program holds the lock");
    throw CFileException(error, to_wide(file));
}

// Closing releases the lock. The file stays: were it removed, a program that opened it before and one that creates it
// anew would hold locks on two different files, and both would think themselves alone.
file_lock::~file_lock() { close(descriptor); }

} // namespace vldv::platform
