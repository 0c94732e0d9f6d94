#pragma once

class CWnd;

namespace entry {

enum class save_outcome {
    done,   ///< all that was chosen is stored
    failed, ///< a chosen document was not, and the user was told or declined to name a file
    cancelled,
};

/// Offers all modified documents to be saved.
save_outcome save_documents(CWnd* parent);

} // namespace entry
