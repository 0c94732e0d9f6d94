#include "recovery/closed_documents.h"

#include <algorithm>

namespace recovery {

namespace {

namespace fs = std::filesystem;

std::vector<closed_document> copies_in(const fs::path& root)
{
    std::vector<closed_document> found;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(root, error))
        if (const auto kept = read_manifest(entry.path()))
            found.push_back({entry.path(), kept->title, kept->path, kept->time});
    std::ranges::sort(found, std::greater<>(), &closed_document::time);
    return found;
}

std::uint64_t bytes_in(const fs::path& folder)
{
    std::uint64_t sum = 0;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const auto size = entry.file_size(error);
        if (!error) sum += size;
    }
    return sum;
}

} // namespace

const std::vector<closed_document>& closed_documents::list()
{
    std::error_code error;
    const auto changed = fs::last_write_time(root, error);
    if (error) {
        known.clear();
    } else if (changed != seen) {
        known = copies_in(root);
        seen = changed;
    }
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
