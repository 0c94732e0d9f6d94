#include "recovery/closed_documents.h"

#include "platform/files/paths.h"
#include "recovery/folder_entries.h"

#include <algorithm>
#include <sys/stat.h>
#include <utility>

namespace vldv::recovery {

namespace {

namespace fs = std::filesystem;

std::vector<closed_document> copies_in(const fs::path& root)
{
    std::vector<closed_document> found;
    std::error_code error;
    for (const fs::path& folder : entries_of(root, error))
        if (const auto kept = read_manifest(folder)) found.push_back({folder, kept->title, kept->path, kept->time});
    std::ranges::sort(found, std::greater<>(), &closed_document::time);
    return found;
}

/// Copies that cannot be read, the latest first.
std::vector<closed_document> unreadables_in(const fs::path& root)
{
    std::vector<closed_document> found;
    std::error_code error;
    for (const fs::path& folder : entries_of(root, error)) {
        const auto stamp = platform::stamp_of(platform::to_wide(folder / manifestName));
        if (stamp && !read_manifest(folder)) found.push_back({folder, {}, {}, stamp->seconds * 1'000'000});
    }
    std::ranges::sort(found, std::greater<>(), &closed_document::time);
    return found;
}

/// The room that copies take. Links to a document's file cost nothing as long as it stands elsewhere too, and several
/// to one cost once.
class used_room {
public:
    void add(const std::vector<closed_document>& copies)
    {
        for (const closed_document& each : copies)
            visit(each.folder, [this](const struct stat& file) { ++links[{file.st_dev, file.st_ino}]; });
    }

    /// \return the bytes of one of the copies, but for those of others that this was asked of
    std::uint64_t of(const fs::path& copy)
    {
        std::uint64_t sum = 0;
        visit(copy, [&](const struct stat& file) {
            const nlink_t here = std::exchange(links[{file.st_dev, file.st_ino}], 0);
            if (here >= file.st_nlink) sum += static_cast<std::uint64_t>(file.st_size);
        });
        return sum;
    }

private:
    template <class Visitor>
    static void visit(const fs::path& folder, const Visitor& visitor)
    {
        std::error_code error;
        struct stat status{};
        for (const fs::path& entry : entries_of(folder, error)) {
            if (lstat(entry.c_str(), &status) != 0) continue;
            if (S_ISDIR(status.st_mode))
                visit(entry, visitor);
            else
                visitor(status);
        }
    }

    std::map<std::pair<dev_t, ino_t>, nlink_t> links; ///< in all copies, of files that are not counted yet
};

/// Removes the last of `copies` until as many and as much are left as may be.
void prune(const std::vector<closed_document>& copies, used_room& room, std::size_t maxDocuments,
           std::uint64_t maxBytes)
{
    std::size_t count = 0;
    std::uint64_t sum = 0;
    std::error_code error;
    for (const closed_document& each : copies) {
        sum += room.of(each.folder);
        if (++count > maxDocuments || (count > 1 && sum > maxBytes)) fs::remove_all(each.folder, error);
    }
}

} // namespace

const std::vector<closed_document>& closed_documents::list()
{
    // Times are too coarse to tell two changes apart that follow each other.
    std::error_code error;
    copy_stamps now;
    for (const fs::path& folder : entries_of(root, error))
        now.emplace(folder, platform::stamp_of(platform::to_wide(folder / manifestName)));
    if (now == seen) return known;
    known = copies_in(root);
    seen = std::move(now);
    return known;
}

void prune_closed(const fs::path& root, std::size_t maxDocuments, std::uint64_t maxBytes)
{
    used_room room;
    const std::vector<closed_document> kinds[] = {copies_in(root), unreadables_in(root)};
    for (const auto& copies : kinds) room.add(copies);
    for (const auto& copies : kinds) prune(copies, room, maxDocuments, maxBytes);
}

} // namespace vldv::recovery
