#pragma once
#include "vldv_api.h"

/// Writer of zip archives (zip64 when needed).
class VLDV_API CZLib {
public:
    enum open_mode { createNew = 0 };

    CZLib() noexcept = default;
    CZLib(const CZLib&) = delete;
    CZLib& operator=(const CZLib&) = delete;
    /// Closes an archive that is still open; errors of that are lost, so call `Close`.
    ~CZLib();

    /// Starts an archive at `path`, replacing a file that is there. \return 0, or an error code
    int Open(const wchar_t* path, int mode);
    /// Adds the content of a file; it has been read completely when this returns. \return 0, or an error code
    int AddFile(const wchar_t* sourcePath, const wchar_t* entryName);
    /// Writes the directory. \return 0, or an error code; the archive is unusable then
    int Close();

private:
    void* archive = nullptr;
    bool broken = false; ///< an entry failed: what is there is no archive any more
};
