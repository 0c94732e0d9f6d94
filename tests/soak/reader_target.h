#pragma once
#include "document/StorageDoc.h"
#include "formats/source.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
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

/// Watches what an input costs while it lives: aborts at its end when the process has computed for longer than a second
/// and a time for each byte, so that what grows faster than the file is found long before it hangs.
class time_watch {
public:
    /// Enough for a reader under the sanitizers, also of packed bytes that become a thousand times as many.
    static constexpr double plain = 20e-6, packedText = 400e-6; ///< seconds a byte

    explicit time_watch(std::size_t bytes, double perByte = plain);
    time_watch(const time_watch&) = delete;
    time_watch& operator=(const time_watch&) = delete;
    ~time_watch();

private:
    double limit; ///< seconds
    std::clock_t begin;
};

/// Both hold the same images and texts; aborts where they do not.
void require_equal(const CStorageDoc& a, const CStorageDoc& b);

/// Any bytes: the reader gives a recording or a reason, in a time in proportion to them. What it gives becomes a
/// document, which is stored, read again and compared.
int soak_reader(vldv::base::read_result<vldv::formats::recording> (*read)(vldv::formats::source&),
                const std::uint8_t* data, std::size_t size);
