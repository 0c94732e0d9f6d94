#include "recovery/session_folder.h"

#include "base/text.h"
#include "platform/Exceptions.h"
#include "platform/paths.h"
#include "recovery/folder_entries.h"
#include "recovery/kept_document.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace recovery {

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

/// Moves the copies of a session that nobody holds any more, and removes the rest when all of them have moved.
void collect(const fs::path& session, const fs::path& closed, left_copies& found)
{
    const int lock = locked(session / lockName, 0);
    if (lock < 0) return; // it lives, or another program is just doing this
    std::error_code error;
    const std::vector<fs::path> entries = entries_of(session, error);
    bool isEmptied = !error;
    for (const fs::path& copy : entries) {
        if (!is_copy(copy)) continue;
        const fs::path target = closed / copy.filename();
        fs::rename(copy, target, error);
        if (error)
            isEmptied = false;
        else
            (read_manifest(target) ? found.good : found.unreadable).push_back(target);
    }
    if (isEmptied) fs::remove_all(session, error);
    close(lock);
}

} // namespace

session_folder::session_folder(const fs::path& root) : ownName(session_name()), folder(root / ownName)
{
    const fs::path made = root / (unfinished + ownName);
    std::error_code error;
    fs::create_directories(made, error);
    if (!error) fs::permissions(made, fs::perms::owner_all, error);
    if (error) throw CFileException(error.value(), platform::to_wide(made));
    lock = locked(made / lockName, O_CREAT);
    if (lock < 0) throw CFileException(errno, platform::to_wide(made / lockName));
    // Under its name only now, so that nobody takes it for a dead one.
    fs::rename(made, folder, error);
    if (!error) return;
    close(lock);
    throw CFileException(error.value(), platform::to_wide(folder));
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
    close(lock);
}

left_copies collect_from_the_dead(const fs::path& root, const fs::path& closed)
{
    std::error_code error;
    fs::create_directories(closed, error);
    left_copies found;
    for (const fs::path& session : entries_of(root, error)) {
        const std::string name = session.filename().native();
        if (!name.starts_with(unfinished))
            collect(session, closed, found);
        else if (is_dead(name))
            fs::remove_all(session, error); // killed before it had anything
    }
    const auto time_of = [](const fs::path& copy) {
        const auto kept = read_manifest(copy);
        return kept ? kept->time : 0;
    };
    std::ranges::sort(found.good, std::greater<>(), time_of);
    return found;
}

} // namespace recovery
