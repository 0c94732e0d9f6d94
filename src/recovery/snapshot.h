#pragma once
#include "document/Decorations.h"
#include "document/history/content_state.h"
#include "document/samples/packed_bitmap.h"
#include "recovery/kept_document.h"

#include <memory>
#include <vector>

class CStorageDoc;

namespace vldv::recovery {

/// What has to be kept of a document as it is at one moment. Holds texts, but no samples, and what never changes of the
/// rest.
struct snapshot {
    document::content_state state;
    /// Images that stand in the document's file as they are refer to it while it is there; the others have no `file`
    /// yet.
    kept_document kept;
    std::vector<bool> isInSource; ///< by image
    /// By image, with the numbers in `state`; where that is 0 there are none.
    std::vector<document::packed_bitmap> overlays;
    std::vector<std::shared_ptr<const document::decorations>> drawings;
};

/// The file that the document was read from or written to last is not what it was then.
bool has_lost_source(const CStorageDoc& document);

snapshot take_snapshot(const CStorageDoc& document);

} // namespace vldv::recovery
