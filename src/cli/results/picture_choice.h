#pragma once
#include "cli/choice/picture_options.h"
#include "document/StorageDoc.h"

#include <string>
#include <vector>

namespace vldv::cli {

/// One picture of a document: a sub-image of a surface, or all curves of an image with `sub` as the active one.
struct picture_number {
    unsigned image, sub;
    picture_view view; ///< never `automatic`
};

/// The pictures that were asked for. \param skipped  told what was asked for and has none, or why there are none at all
std::vector<picture_number> chosen_pictures(const CStorageDoc& document, const picture_options& options,
                                            std::string& skipped);

} // namespace vldv::cli
