#include "platform/files/leftover_files.h"

#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vldv::platform {

namespace {

constexpr std::string_view prefix = ".vldv-";
constexpr std::time_t longUnchanged = 3600; // seconds

/// The process that a name tells, or 0 for other names.
pid_t process_of(std::string_view name)
{
    if (!name.starts_with(prefix)) return 0;
    name.remove_prefix(prefix.size());
    pid_t process = 0;
    const char* const end = name.data() + name.size();
    const auto [dash, error] = std::from_chars(name.data(), end, process);
    unsigned number = 0;
    if (error != std::errc() || dash == end || *dash != '-') return 0;
    const auto [rest, numberError] = std::from_chars(dash + 1, end, number);
    return numberError == std::errc() && rest == end ? process : 0;
}

/// A number may be that of another process by now: a file that nobody has written to for long is left as well.
bool may_be_left(pid_t process, int file)
{
    if (kill(process, 0) != 0 && errno == ESRCH) return true;
    struct stat status{};
    return fstat(file, &status) == 0 && std::time(nullptr) - status.st_mtime > longUnchanged;
}

/// Processes of other machines and containers have numbers of their own; their marks are seen here too.
void remove_if_left(const std::filesystem::path& path, pid_t process)
{
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0) return;
    if (may_be_left(process, file) && flock(file, LOCK_EX | LOCK_NB) == 0) unlink(path.c_str());
    close(file);
}

} // namespace

std::filesystem::path unfinished_name()
{
    static std::atomic<unsigned> counter{0};
    return std::string(prefix) + std::to_string(getpid()) + "-" + std::to_string(counter++);
}

void mark_as_used(int file) noexcept
{
    if (flock(file, LOCK_EX | LOCK_NB) != 0) {
        // a file system without marks: then nothing is taken for left behind either
    }
}

void remove_leftovers(const std::filesystem::path& folder) noexcept
try {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (const pid_t process = process_of(entry->path().filename().native()); process > 0)
            remove_if_left(entry->path(), process);
} catch (const std::exception&) {
    // who saves wants the save; the next one tries again
}

bool leftover_schedule::isDue(const std::filesystem::path& folder, clock::time_point now) const
{
    const auto found = due.find(folder);
    return found == due.end() || now >= found->second;
}

void leftover_schedule::took(const std::filesystem::path& folder, clock::time_point end, clock::duration cost)
{
    constexpr int share = 100;
    constexpr std::size_t maxFolders = 1000; // forgotten ones are looked through again
    if (due.size() >= maxFolders) due.clear();
    due[folder] = end + share * cost;
}

void remove_leftovers_at_times(const std::filesystem::path& folder) noexcept
try {
    static std::mutex guard;
    static leftover_schedule schedule;
    using clock = leftover_schedule::clock;
    const auto start = clock::now();
    const std::filesystem::path whole = std::filesystem::absolute(folder);
    const std::lock_guard lock(guard);
    if (!schedule.isDue(whole, start)) return;
    remove_leftovers(whole);
    const auto end = clock::now();
    schedule.took(whole, end, end - start);
} catch (const std::exception&) {
    // what cannot be removed now is looked at again with the next save
}

} // namespace vldv::platform
