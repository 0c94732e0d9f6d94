#pragma once
#include "recovery/kept_source.h"

class CStorageDoc;

namespace recovery {

/// What came of a restoration.
struct restored_document {
    std::vector<std::string> missing;           ///< why, for each image whose samples are nowhere any more
    std::map<std::uint64_t, std::string> files; ///< of the copy, by the state that their images have now
};

/// Fills an empty document with what `folder` and `from` hold of `kept`. The document is changed afterwards, and
/// stands to its file as the one did that was kept; where something is missing it has no claim on that file.
restored_document restore(CStorageDoc& document, const kept_document& kept, const std::filesystem::path& folder,
                          const std::optional<found_source>& from);
/// With the file that the copy refers to, wherever `find_source` finds it.
restored_document restore(CStorageDoc& document, const kept_document& kept, const std::filesystem::path& folder);

} // namespace recovery
