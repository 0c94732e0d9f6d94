#pragma once
#include "platform/files/file_stamp.h"

#include <string>
#include <vector>

namespace vldv::document {

/// The files that a document was read from or written to, each as it was then.
class own_files {
public:
    struct entry {
        std::wstring path; ///< full
        platform::file_stamp stamp;
    };
    /// How a file stands to the document.
    enum class relation {
        missing,  ///< nothing is there
        own,      ///< as the document read or wrote it
        replaced, ///< somebody else has written it since
        foreign   ///< the document never read nor wrote it
    };

    /// A file as the document read or wrote it, which is not always as it is by now.
    void note(const entry& added);
    void forget(const std::wstring& path);
    void clear() noexcept { known.clear(); }
    relation of(const std::wstring& path) const;
    /// The document read or wrote it once, whatever became of it.
    bool knows(const std::wstring& path) const noexcept;
    /// The latest one; null when there is none.
    const entry* last() const noexcept { return known.empty() ? nullptr : &known.back(); }

private:
    std::vector<entry> known; ///< each path once, the latest last
};

/// "name (2).ext" beside `path`, "name.ext".
std::wstring numbered_path(const std::wstring& path, unsigned number);
/// The first of "name (2).ext", "name (3).ext" … beside `path` that does not exist.
std::wstring free_path(const std::wstring& path);

/// The file that is read again for a document that is held at `held`: the one there, or where that is gone the
/// recording of the same name without ".spm". What the document neither read nor wrote is never put in the place of
/// what it did.
std::wstring file_to_revert(const own_files& files, const std::wstring& held);

/// The file that deleting a document takes away: the one at `held`, where the document is saved, when it is the
/// document's own, else the one that was read or written last. Empty when there is none: what others have written since
/// stays.
std::wstring file_to_delete(const own_files& files, const std::wstring& held);
/// The one of these two that others have written since; empty when there is none.
std::wstring changed_file(const own_files& files, const std::wstring& held);

} // namespace vldv::document
