#pragma once
#include <filesystem>
#include <string>
#include <vector>

namespace vldv::recovery {

/// The folder in which a running program keeps copies of its documents, locked as long as this object and the program
/// live.
class session_folder {
public:
    /// Makes it in `root`. \throws CException when it cannot be made
    explicit session_folder(std::filesystem::path root_);
    session_folder(const session_folder&) = delete;
    session_folder& operator=(const session_folder&) = delete;
    /// Removes it when it holds no copy.
    ~session_folder();

    const std::filesystem::path& path() const noexcept { return folder; }
    /// Makes it again when somebody has removed it or its lock, as far as possible.
    void renew();
    /// No other session has or had it.
    const std::string& name() const noexcept { return ownName; }

private:
    /// \return 0, or why there is none
    int make();
    bool isThere() const;

    std::filesystem::path root;
    std::string ownName;
    std::filesystem::path folder;
    int lock = -1;
};

/// Copies of documents, each in a folder.
struct left_copies {
    std::vector<std::filesystem::path> good;       ///< the latest first
    std::vector<std::filesystem::path> unreadable; ///< damaged, or of another version of the program
};

/// What programs have left that died. Nobody else touches it as long as this object lives; what is still there then is
/// found again by the next one.
class left_sessions {
public:
    /// \param root  of the folders of sessions; those of programs that live are passed over
    explicit left_sessions(const std::filesystem::path& root);
    left_sessions(const left_sessions&) = delete;
    left_sessions& operator=(const left_sessions&) = delete;
    ~left_sessions();

    const left_copies& copies() const noexcept { return found; }
    /// Moves all copies that are still there into `closed`, and removes the folders. \return the new places
    left_copies moveTo(const std::filesystem::path& closed);

private:
    struct session {
        std::filesystem::path folder;
        int lock;
    };
    void collect(const std::filesystem::path& folder);

    std::vector<session> sessions;
    left_copies found;
};

} // namespace vldv::recovery
