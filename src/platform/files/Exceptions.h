#pragma once
#include "vldv_api.h"

#include <new>
#include <stdexcept>
#include <string>

/// Base of the framework's exceptions; `what()` is a sentence for the user.
class VLDV_API CException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// There is no memory.
class VLDV_API CMemoryException : public std::bad_alloc {
public:
    const char* what() const noexcept override { return "out of memory"; }
};

/// Reading or writing a document's bytes failed.
class VLDV_API CArchiveException : public CException {
public:
    enum cause_code { none = 0, generic = 1, readOnly = 2, endOfFile = 3, writeOnly = 4, badIndex = 5 };
    /// \param reason  may be empty; otherwise what was wrong, in words
    CArchiveException(cause_code cause_, const std::wstring& path_, const std::string& reason);

    cause_code cause;
    std::wstring path;
};

/// The operating system refused a file.
class VLDV_API CFileException : public CException {
public:
    /// \param error  an errno value
    CFileException(int error, const std::wstring& path_);

    int osError;
    std::wstring path;
};
