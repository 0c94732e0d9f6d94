#pragma once
#include "base/SPMVar.h"
#include "vldv_api.h"

#include <string>
#include <vector>

class CWnd;

/// Asks for a file to export to, with the parameters of its format below the names. What the user changes there is
/// changed at once.
class VLDV_API CFileExportDialog {
public:
    /// \param params_  of each format, in the order of the filters
    /// \param counts   how many of each
    /// \param filters_ names of formats and their patterns, each followed by a bar
    /// \param index_   of the format that is chosen at first, from 1
    CFileExportDialog(SPMVar*** params_, const int* counts, const wchar_t* filters_, const wchar_t* defaultName_,
                      int index_, CWnd* parent);

    /// Begins in the folder "Save" of the profile's section "MRU", which follows the user.
    /// \return the user has named a file
    bool DoModal();
    const std::wstring& getPath() const noexcept { return path; }
    /// Of the chosen format, from 1.
    int getIndex() const noexcept { return index; }

    /// A name with the extension of a format, from 0: that of its first pattern. It stays where the pattern has none.
    std::wstring GetDefaultFileName(const std::wstring& name, std::size_t format) const;

private:
    std::vector<std::vector<SPMVar*>> params;
    std::wstring filters, defaultName, path;
    int index;
};
