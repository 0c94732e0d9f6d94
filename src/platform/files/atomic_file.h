#pragma once
#include <cstddef>
#include <filesystem>
#include <span>
#include <sys/types.h>
#include <vector>

namespace vldv::platform {

/// Replaces a file in one step. The bytes go to a file in the target's folder that has no name yet, or where the file
/// system knows no such files to one of a name of its own; the target's name is touched only by the rename of `commit`,
/// so that a full disk, an exception or a kill leaves the old file whole. What killed processes left beside the target
/// is removed.
class atomic_file {
public:
    /// Opens a new file beside `target`, with the permissions of an existing target. A symbolic link stays: what it
    /// points to is replaced. \throws CFileException also when the target may not be written or is no regular file
    explicit atomic_file(const std::filesystem::path& target);
    atomic_file(const atomic_file&) = delete;
    atomic_file& operator=(const atomic_file&) = delete;
    /// Discards what was not committed.
    ~atomic_file();

    /// Appends; small pieces are collected. \throws CFileException; the object is then good for destruction only
    void write(std::span<const std::byte> bytes);
    /// Puts the written bytes in the target's place, on the disk when it returns; nothing can be written afterwards.
    /// \throws CFileException; the old file is then whole, or the new one is when only the folder could not be synced
    void commit();

private:
    void store(std::span<const std::byte> bytes) const;
    void flush();
    void giveName();
    void discard() noexcept;
    std::filesystem::path folder() const;
    void syncFolder() const;
    [[noreturn]] void fail(int error) const;

    std::filesystem::path given;  ///< as the caller named it, for messages
    std::filesystem::path target; ///< behind all links
    std::filesystem::path beside; ///< name of the unfinished file; empty while it has none
    mode_t mode = 0;              ///< permissions of the unfinished file, before the umask
    std::vector<std::byte> pending;
    int file = -1;
};

} // namespace vldv::platform
