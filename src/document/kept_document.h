#pragma once
#include "platform/Document.h"

#include <utility>

/// Keeps a document open for its time, although its last view may leave it.
class kept_document {
public:
    explicit kept_document(CDocument& document_)
        : document(document_), before(std::exchange(document_.autoDelete, false))
    {
    }
    kept_document(const kept_document&) = delete;
    kept_document& operator=(const kept_document&) = delete;
    ~kept_document() { document.autoDelete = before; }

private:
    CDocument& document;
    bool before;
};
