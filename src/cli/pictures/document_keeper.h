#pragma once
#include "platform/app/Document.h"

namespace vldv::cli {

/// While this lives, a document outlives its last view.
class document_keeper {
public:
    explicit document_keeper(CDocument& document_) : document(document_), before(document_.autoDelete)
    {
        document.autoDelete = false;
    }
    document_keeper(const document_keeper&) = delete;
    document_keeper& operator=(const document_keeper&) = delete;
    ~document_keeper() { document.autoDelete = before; }

private:
    CDocument& document;
    bool before;
};

} // namespace vldv::cli
