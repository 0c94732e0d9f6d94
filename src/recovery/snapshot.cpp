#include "recovery/snapshot.h"

#include "document/StorageDoc.h"
#include "document/document_table.h"
#include "platform/files/file_stamp.h"

#include <algorithm>
#include <chrono>

namespace vldv::recovery {

namespace {

std::int64_t now()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

kept_image image_of(const CStorageDoc& document, unsigned image)
{
    return {.id = document.getImage(image).get_name(),
            .declaration = document.getImage(image).description().c_str(),
            .texts = document.strings(image),
            .file = {},
            .fileImage = 0,
            .bytes = document.GetDataSize(image),
            .checksum = {},
            .overlayFile = {},
            .drawingsFile = {}};
}

} // namespace

bool has_lost_source(const CStorageDoc& document)
{
    const auto* const source = document.storedFile();
    return source && platform::stamp_of(source->path) != source->stamp;
}

snapshot take_snapshot(const CStorageDoc& document)
{
    snapshot taken;
    taken.state = document.contentState();
    taken.kept.time = now();
    taken.kept.title = document.GetTitle();
    const CStorageDoc::title_parts titles = document.titleParts();
    taken.kept.baseTitle = titles.base;
    taken.kept.displayTitle = titles.display;
    taken.kept.derived = titles.derived;
    taken.kept.path = document.GetPathName();
    taken.kept.texts = document.strings(document::documentTable);
    const auto* const source = document.storedFile();
    // A set of several files has none that holds it all; it is still known where it came from.
    if (const auto* const opened = source ? source : document.ownFiles().last()) taken.kept.source = *opened;
    const bool hasSource = source && !has_lost_source(document);
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) {
        kept_image& image = taken.kept.images.emplace_back(image_of(document, i));
        taken.isInSource.push_back(false);
        taken.overlays.push_back(document.sharedOverlay(i));
        taken.drawings.push_back(document.sharedDecorations(i));
        if (!hasSource || !document.storedState()) continue;
        // The numbers of states tell what has to be written: an image with the number of one in the document's file is
        // as it stands there, so that the copy only notes which one that is.
        const auto& stored = document.storedState()->images;
        const auto found = std::ranges::find(stored, taken.state.images[i]);
        if (found == stored.end()) continue;
        image.fileImage = static_cast<std::uint32_t>(found - stored.begin());
        taken.isInSource.back() = true;
    }
    return taken;
}

} // namespace vldv::recovery
