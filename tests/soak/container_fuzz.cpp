// Any bytes as a native container: refused, or a document that is the same when it is stored and read again.
#include "reader_target.h"

#include "document/container/spmx_read.h"

#include <cstdlib>
#include <stdexcept>

using namespace vldv;

namespace {

/// \return whether it was read
bool read_watched(formats::source& file, VLFileReader& target)
{
    const time_watch watch(file.size(), time_watch::packedText);
    std::vector<std::string> warnings;
    return document::read_spmx(file, target, warnings).failure.empty();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    soak_document source, copy;
    formats::memory_source file(std::as_bytes(std::span(data, size)));
    try {
        if (!read_watched(file, source)) return 0;
    } catch (const std::length_error&) {
        return 0; // more samples than an image can have
    }
    std::string stored;
    try {
        stored = source.stored();
    } catch (const CArchiveException&) {
        return 0; // an id or a text that may be read but not written
    }
    // Storing rounds axes to six digits once; samples and texts come back as they were.
    if (source.getImagesNumber() > 0 && !copy.readContainer(stored)) std::abort();
    require_equal(source.getImagesNumber() > 0 ? source : copy, copy);
    return 0;
}
