#pragma once
#include "vldv_api.h"

#include <string>
#include <vector>

class CDocument;
class CWinApp;
class CWnd;

namespace vldv::entry {

enum class save_outcome {
    done,   ///< all that was chosen is stored
    failed, ///< a chosen document was not, and the user was told or declined to name a file
    cancelled,
};

/// Documents that saving is offered for: modified ones, those that differ from their file, but no thumbnails.
std::vector<CDocument*> unsaved_documents(const CWinApp& app);

/// A text for each that no other has: its title, where needed with the path it is saved to, where that is not enough
/// either with the file it was read from, and at last with a number.
std::vector<std::string> telling_labels(const std::vector<CDocument*>& documents);
/// Parts texts that are not titles in that way. \param documents  of each text; null: of none
VLDV_INTERNAL_API std::vector<std::string> telling_labels(std::vector<std::string> labels,
                                                          const std::vector<CDocument*>& documents);

/// Offers all of them to be saved. Only what the user has changed is chosen from the start.
/// \param thenEnds  the program ends when that is done
save_outcome save_documents(CWnd* parent, bool thenEnds = false);

} // namespace vldv::entry
