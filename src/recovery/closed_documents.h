#pragma once
#include "recovery/kept_document.h"

namespace vldv::recovery {

/// One copy of a document that was closed with unsaved work.
struct closed_document {
    std::filesystem::path folder;
    std::wstring title, path;
    std::int64_t time = 0; ///< microseconds since 1970
};

/// The copies of closed documents, which all running programs share.
class closed_documents {
public:
    static constexpr std::size_t maxDocuments = 20;
    static constexpr std::uint64_t maxBytes = std::uint64_t{4} << 30; ///< of all together; the latest may be larger

    explicit closed_documents(std::filesystem::path root_) : root(std::move(root_)) {}

    const std::filesystem::path& path() const noexcept { return root; }
    /// The latest first. Manifests are read only when some have come or gone.
    const std::vector<closed_document>& list();

private:
    std::filesystem::path root;
    using copy_stamps = std::map<std::filesystem::path, std::optional<platform::file_stamp>>;
    copy_stamps seen; ///< of their manifests
    std::vector<closed_document> known;
};

/// Removes the oldest copies in `root` until as many and as much are left as may be; of those that cannot be read as
/// many and as much more.
void prune_closed(const std::filesystem::path& root, std::size_t maxDocuments = closed_documents::maxDocuments,
                  std::uint64_t maxBytes = closed_documents::maxBytes);

} // namespace vldv::recovery
