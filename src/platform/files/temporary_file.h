#pragma once
#include "vldv_api.h"

#include <filesystem>
#include <string>

namespace vldv::platform {

/// A file in the system's folder for temporary files that no name leads to: it is gone with the object, and with the
/// process however that ends. Where the system gives no way to such a file it has a name until then.
class VLDV_INTERNAL_API temporary_file {
public:
    /// Creates it empty. \throws CFileException
    temporary_file();
    temporary_file(const temporary_file&) = delete;
    temporary_file& operator=(const temporary_file&) = delete;
    ~temporary_file();

    /// Leads to the file in this process and while the object lives.
    const std::filesystem::path& path() const noexcept { return filePath; }
    std::wstring widePath() const;
    /// Replaces the content. \throws CFileException when not all of it could be stored
    void store(const void* bytes, std::size_t count) const;

private:
    int file = -1;
    std::filesystem::path filePath;
    bool isNamed = false;
};

} // namespace vldv::platform
