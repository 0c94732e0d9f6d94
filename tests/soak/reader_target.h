#pragma once
#include "document/StorageDoc.h"
#include "document/formats/source.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// A document that is filled from bytes without any file.
class soak_document : public CStorageDoc {
public:
    /// Bytes that a document's writer would store.
    std::string stored();
    /// Reads a native container from memory.
    bool readContainer(const std::string& bytes);
};

/// Both hold the same images and texts; aborts where they do not.
void require_equal(const CStorageDoc& a, const CStorageDoc& b);

/// Any bytes: the reader gives a recording or a reason. What it gives becomes a document, which is stored, read again
/// and compared.
int soak_reader(base::read_result<formats::recording> (*read)(formats::source&), const std::uint8_t* data,
                std::size_t size);
