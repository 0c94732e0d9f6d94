#include "recovery/session_folder.h"

#include "base/text.h"
#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "recovery/folder_entries.h"
#include "recovery/kept_document.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace vldv::recovery {

namespace {

namespace fs = std::filesystem;

constexpr const char* lockName = "lock";
constexpr const char* unfinished = ".new-"; // begins the name of a folder that has no lock yet

std::string session_name()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::to_string(std::chrono::duration_cast<std::chrono::microseconds>(now).count()) + "-" +
           std::to_string(getpid());
}

/// \return the descriptor that holds the lock, or -1 with errno
int locked(const fs::path& file, int flags)
{
    const int descriptor = open(file.c_str(), flags | O_RDWR | O_CLOEXEC, 0600);
    if (descriptor < 0 || flock(descriptor, LOCK_EX | LOCK_NB) == 0) return descriptor;
    const int error = errno;
    close(descriptor);
    errno = error;
    return -1;
}

/// Whether the program that a session is named after has gone.
bool is_dead(const std::string& name)
{
    const std::string number = name.substr(name.rfind('-') + 1);
    const auto process = base::whole_integer(number);
    return process && *process > 0 && kill(static_cast<pid_t>(*process), 0) != 0 && errno == ESRCH;
}

/// Whether a folder is the copy of a document, good or bad; also where that cannot be told.
bool is_copy(const fs::path& folder)
{
    std::error_code error;
    return fs::exists(folder / manifestName, error) || error.value() != 0;
}

/// The lock of a session that nobody holds any more. One that has lost its lock file counts as held while a program of
/// its number lives. \return the descriptor, or -1
int lock_of_dead(const fs::path& session)
{
    const int lock = locked(session / lockName, 0);
    if (lock >= 0 || errno != ENOENT || !is_dead(session.filename().native())) return lock;
    return locked(session / lockName, O_CREAT);
}

void sort_latest_first(std::vector<fs::path>& copies)
{
    std::vector<std::pair<std::int64_t, fs::path>> timed;
    for (fs::path& copy : copies) {
        const auto kept = read_manifest(copy);
        timed.emplace_back(kept ? kept->time : 0, std::move(copy));
    }
    std::ranges::sort(timed, std::greater<>());
    std::ranges::transform(timed, copies.begin(), [](auto& each) { return std::move(each.second); });
}

} // namespace

session_folder::session_folder(fs::path root_) : root(std::move(root_)), ownName(session_name()), folder(root / ownName)
{
    if (const int error = make(); error != 0) throw CFileException(error, platform::to_wide(folder));
}

int session_folder::make()
{
    const fs::path made = root / (unfinished + ownName);
    std::error_code error;
    fs::create_directories(made, error);
    if (!error) fs::permissions(made, fs::perms::owner_all, error);
    if (error) return error.value();
    lock = locked(made / lockName, O_CREAT);
    if (lock < 0) return errno;
    // Under its name only now, so that nobody takes it for a dead one.
    fs::rename(made, folder, error);
    if (!error) return 0;
    close(std::exchange(lock, -1));
    return error.value();
}

bool session_folder::isThere() const
{
    struct stat held{}, named{};
    // The file that is locked has to be the one that stands under the name: a folder that was removed and made again by
    // somebody else would otherwise look like ours.
    return lock >= 0 && fstat(lock, &held) == 0 && stat((folder / lockName).c_str(), &named) == 0 &&
           held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

void session_folder::renew()
{
    if (isThere()) return;
    if (lock >= 0) close(lock);
    lock = locked(folder / lockName, O_CREAT); // where only the lock is gone
    if (lock < 0) make();                      // without it copies fail, and that is told
}

session_folder::~session_folder()
{
    try {
        std::error_code error;
        const std::vector<fs::path> entries = entries_of(folder, error);
        if (!error && std::ranges::none_of(entries, is_copy)) fs::remove_all(folder, error);
    } catch (const std::exception&) {
        // another session removes it
    }
    if (lock >= 0) close(lock);
}

left_sessions::left_sessions(const fs::path& root)
{
    std::error_code error;
    for (const fs::path& folder : entries_of(root, error)) {
        const std::string name = folder.filename().native();
        if (!name.starts_with(unfinished))
            collect(folder);
        else if (is_dead(name))
            fs::remove_all(folder, error); // killed before it had anything
    }
    sort_latest_first(found.good);
}

void left_sessions::collect(const fs::path& folder)
{
    const int lock = lock_of_dead(folder);
    if (lock < 0) return; // it lives, or another program is just doing this
    sessions.push_back({folder, lock});
    std::error_code error;
    for (const fs::path& copy : entries_of(folder, error))
        if (is_copy(copy)) (read_manifest(copy) ? found.good : found.unreadable).push_back(copy);
}

left_sessions::~left_sessions()
{
    for (const session& each : sessions) close(each.lock);
}

left_copies left_sessions::moveTo(const fs::path& closed)
{
    std::error_code error;
    fs::create_directories(closed, error);
    left_copies moved;
    for (const session& each : sessions) {
        const std::vector<fs::path> entries = entries_of(each.folder, error);
        bool isEmptied = !error;
        for (const fs::path& copy : entries) {
            if (!is_copy(copy)) continue;
            const fs::path target = closed / copy.filename();
            fs::rename(copy, target, error);
            isEmptied &= !error;
            if (!error) (read_manifest(target) ? moved.good : moved.unreadable).push_back(target);
        }
        if (isEmptied) fs::remove_all(each.folder, error);
    }
    sort_latest_first(moved.good);
    return moved;
}

} // namespace vldv::recovery
