#include "recovery/closed_documents.h"

#include "platform/paths.h"
#include "recovery/folder_entries.h"

#include <algorithm>

namespace recovery {

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

std::uint64_t bytes_in(const fs::path& folder)
{
    std::uint64_t sum = 0;
    std::error_code error;
    for (const fs::path& entry : entries_of(folder, error)) {
        const bool isFolder = fs::is_directory(entry, error);
        const auto size = isFolder ? bytes_in(entry) : fs::file_size(entry, error);
        if (!error) sum += size;
    }
    return sum;
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
    std::size_t count = 0;
    std::uint64_t sum = 0;
    std::error_code error;
    for (const closed_document& each : copies_in(root)) {
        sum += bytes_in(each.folder);
        if (++count > maxDocuments || (count > 1 && sum > maxBytes)) fs::remove_all(each.folder, error);
    }
}

} // namespace recovery
