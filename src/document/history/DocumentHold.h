#pragma once
#include "platform/app/Document.h"
#include <utility>

namespace vldv {

/// Keeps a document open for its time, although its last view may leave it.
class CDocumentHold {
public:
    explicit CDocumentHold(CDocument& document_)
        : document(document_), before(std::exchange(document_.autoDelete, false))
    {
    }
    CDocumentHold(const CDocumentHold&) = delete;
    CDocumentHold& operator=(const CDocumentHold&) = delete;
    ~CDocumentHold() { document.autoDelete = before; }

private:
    CDocument& document;
    bool before;
};

} // namespace vldv
