#pragma once
#include <filesystem>
#include <string>

namespace platform {

/// A file of a name of its own in the system's folder for temporary files, deleted with the object at the latest.
class temporary_file {
public:
    /// Creates it empty. \throws CFileException
    temporary_file();
    temporary_file(const temporary_file&) = delete;
    temporary_file& operator=(const temporary_file&) = delete;
    ~temporary_file();

    const std::filesystem::path& path() const noexcept { return filePath; }
    std::wstring wide_path() const;
    /// Replaces the content. \throws CFileException when not all of it could be stored
    void store(const void* bytes, std::size_t count) const;
    /// Deletes it now.
    void remove() noexcept;

private:
    std::filesystem::path filePath;
};

} // namespace platform
