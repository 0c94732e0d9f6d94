#pragma once
#include <filesystem>
#include <string>
#include <vector>

namespace recovery {

/// The folder in which a running program keeps copies of its documents, locked as long as this object and the program
/// live.
class session_folder {
public:
    /// Makes it in `root`. \throws CException when it cannot be made
    explicit session_folder(const std::filesystem::path& root);
    session_folder(const session_folder&) = delete;
    session_folder& operator=(const session_folder&) = delete;
    /// Removes it when it holds no copy.
    ~session_folder();

    const std::filesystem::path& path() const noexcept { return folder; }
    /// No other session has or had it.
    const std::string& name() const noexcept { return ownName; }

private:
    std::string ownName;
    std::filesystem::path folder;
    int lock = -1;
};

/// What programs have left that died.
struct left_copies {
    std::vector<std::filesystem::path> good;       ///< the latest first
    std::vector<std::filesystem::path> unreadable; ///< damaged, or of another version of the program
};

/// Moves the copies that programs have left that died into `closed`, and removes their folders.
/// \return the new places
left_copies collect_from_the_dead(const std::filesystem::path& root, const std::filesystem::path& closed);

} // namespace recovery
