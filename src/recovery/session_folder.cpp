#include "recovery/session_folder.h"

#include "base/text.h"
#include "platform/Exceptions.h"
#include "platform/paths.h"
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

/// Moves the good copies of a session that nobody holds any more, and removes the rest.
void collect(const fs::path& session, const fs::path& closed, std::vector<fs::path>& found)
{
    const int lock = locked(session / lockName, 0);
    if (lock < 0) return; // it lives, or another program is just doing this
    std::error_code error;
    std::vector<fs::path> copies;
    for (const auto& entry : fs::directory_iterator(session, error))
        if (entry.is_directory(error) && read_manifest(entry.path())) copies.push_back(entry.path());
    bool isEmptied = true;
    for (const fs::path& copy : copies) {
        const fs::path target = closed / copy.filename();
        fs::rename(copy, target, error);
        if (error)
            isEmptied = false;
        else
            found.push_back(target);
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
    std::error_code error;
    bool holdsCopies = false;
    for (const auto& entry : fs::directory_iterator(folder, error)) holdsCopies |= entry.is_directory(error);
    if (!holdsCopies) fs::remove_all(folder, error);
    close(lock);
}

std::vector<fs::path> collect_from_the_dead(const fs::path& root, const fs::path& closed)
{
    std::error_code error;
    fs::create_directories(closed, error);
    std::vector<fs::path> sessions, found;
    for (const auto& entry : fs::directory_iterator(root, error)) {
        const std::string name = entry.path().filename().native();
        if (!name.starts_with(unfinished))
            sessions.push_back(entry.path());
        else if (is_dead(name))
            fs::remove_all(entry.path(), error); // killed before it had anything
    }
    for (const fs::path& session : sessions) collect(session, closed, found);
    const auto time_of = [](const fs::path& copy) {
        const auto kept = read_manifest(copy);
        return kept ? kept->time : 0;
    };
    std::ranges::sort(found, std::greater<>(), time_of);
    return found;
}

} // namespace recovery
