#pragma once
#include "document/history/content_state.h"
#include "recovery/kept_document.h"

class CStorageDoc;

namespace recovery {

/// What has to be kept of a document as it is at one moment. Holds texts, but no samples.
struct snapshot {
    document::content_state state;
    /// Images that stand in the document's file as they are refer to it while it is there; the others have no `file`
    /// yet.
    kept_document kept;
    std::vector<bool> isInSource; ///< by image
};

/// The file that the document was read from or written to last is not what it was then.
bool has_lost_source(const CStorageDoc& document);

snapshot take_snapshot(const CStorageDoc& document);

} // namespace recovery
