#include "recovery/folder_entries.h"

namespace vldv::recovery {

std::vector<std::filesystem::path> entries_of(const std::filesystem::path& folder, std::error_code& error)
{
    std::vector<std::filesystem::path> found;
    // The operator of a range throws where going on fails.
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        found.push_back(entry->path());
    return found;
}

} // namespace vldv::recovery
