#pragma once
#include "recovery/kept_source.h"

class CStorageDoc;

namespace vldv::recovery {

/// What came of a restoration.
struct restored_document {
    /// Why, for each image whose samples are nowhere any more, and each bitmap or drawing over one that is damaged.
    std::vector<std::string> missing;
    std::map<std::uint64_t, std::string> files; ///< of the copy, by the state that they hold now
};

/// Fills an empty document with what `folder` and `from` hold of `kept`. The document is changed afterwards, and
/// stands to its file as the one did that was kept; where something is missing it has no claim on that file.
restored_document restore(CStorageDoc& document, const kept_document& kept, const std::filesystem::path& folder,
                          const std::optional<found_source>& from);
/// With the file that the copy refers to, wherever `find_source` finds it.
restored_document restore(CStorageDoc& document, const kept_document& kept, const std::filesystem::path& folder);

} // namespace vldv::recovery
