#pragma once
#include <chrono>
#include <filesystem>

namespace vldv::platform {

/// Keeps other processes that do the same out while it lives; the system ends it with the process. The empty file
/// stays, since deleting it would let two processes lock different files of one name.
class file_lock {
public:
    /// Waits for others as long as `patience`. File systems without locks give one that holds nobody.
    /// \throws CException when the file cannot be made, or another process does not let go
    file_lock(const std::filesystem::path& file, std::chrono::milliseconds patience);
    file_lock(const file_lock&) = delete;
    file_lock& operator=(const file_lock&) = delete;
    ~file_lock();

private:
    int descriptor;
};

} // namespace vldv::platform
