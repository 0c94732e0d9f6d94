#pragma once
#include <filesystem>

namespace platform {

/// Name for a file that stands beside others until it takes the place of one; it tells the process, and never repeats
/// within it.
std::filesystem::path unfinished_name();
/// Marks an open file of such a name as used by a process that lives; the system takes the mark away with the process.
void mark_as_used(int file) noexcept;
/// Removes such files of processes that have ended from `folder`, as far as it can.
void remove_leftovers(const std::filesystem::path& folder) noexcept;

} // namespace platform
