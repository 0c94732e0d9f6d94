#pragma once
#include "platform/files/Exceptions.h"
#include "vldv_api.h"

#include <cstddef>
#include <string>

/// A forward stream of bytes into or out of a file, as `CDocument::Serialize` gets it.
class VLDV_API CArchive {
public:
    explicit CArchive(const std::wstring& path_, bool storing_) : filePath(path_), storing(storing_) {}
    virtual ~CArchive() = default;

    bool IsLoading() const noexcept { return !storing; }
    const std::wstring& path() const noexcept { return filePath; }
    /// \throws CFileException when the bytes cannot be stored
    virtual void Write(const void* bytes, std::size_t count) = 0;

private:
    std::wstring filePath;
    bool storing;
};
