#pragma once
#include <chrono>
#include <filesystem>
#include <map>

namespace vldv::platform {

/// Name for a file that stands beside others until it takes the place of one; it tells the process, and never repeats
/// within it.
std::filesystem::path unfinished_name();
/// Marks an open file of such a name as used by a process that lives; the system takes the mark away with the process.
void mark_as_used(int file) noexcept;
/// Removes such files of processes that have ended from `folder`, as far as it can.
void remove_leftovers(const std::filesystem::path& folder) noexcept;
/// Removes them as often as takes no more than a hundredth of the time: looking through a large folder for each of
/// many files would cost more than they do.
void remove_leftovers_at_times(const std::filesystem::path& folder) noexcept;

/// When a folder is to be looked through again. The first time is at once.
class leftover_schedule {
public:
    using clock = std::chrono::steady_clock;
    bool isDue(const std::filesystem::path& folder, clock::time_point now) const;
    void took(const std::filesystem::path& folder, clock::time_point end, clock::duration cost);

private:
    std::map<std::filesystem::path, clock::time_point> due;
};

} // namespace vldv::platform
