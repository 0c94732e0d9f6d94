#include "reader_target.h"

#include "document/container/spmx_read.h"
#include "formats/shared/finish_recording.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <set>

using namespace vldv;

namespace {

/// Keeps what a document writes.
struct memory_archive : CArchive {
    memory_archive() : CArchive(L"/soak.spm", true) {}
    void Write(const void* bytes, std::size_t count) override
    {
        content.append(static_cast<const char*>(bytes), count);
    }
    std::string content;
};

void require(bool holds, const char* what)
{
    if (holds) return;
    std::cerr << "does not hold: " << what << '\n';
    std::abort();
}

void require_unique_ids(const CStorageDoc& document)
{
    std::set<std::string> ids;
    for (unsigned i = 0; i < document.getImagesNumber(); ++i)
        require(ids.insert(document.getImage(i).get_name()).second, "ids are unique");
}

} // namespace

std::string soak_document::stored()
{
    memory_archive archive;
    Serialize(archive);
    return archive.content;
}

bool soak_document::readContainer(const std::string& bytes)
{
    formats::memory_source source(std::as_bytes(std::span(bytes)));
    const auto [failure, isWhole] = document::read_spmx(source, *this, readWarnings);
    if (!failure.empty()) std::cerr << failure << '\n';
    return failure.empty() && isWhole;
}

void require_equal(const CStorageDoc& a, const CStorageDoc& b)
{
    require(a.getImagesNumber() == b.getImagesNumber(), "as many images");
    require(a.strings(unsigned(-1)) == b.strings(unsigned(-1)), "equal document texts");
    for (unsigned i = 0; i < a.getImagesNumber(); ++i) {
        require(a.strings(i) == b.strings(i), "equal image texts");
        require(std::strcmp(a.getImage(i).get_name(), b.getImage(i).get_name()) == 0, "equal ids");
        require(a.GetDataSize(i) == b.GetDataSize(i), "as many samples");
        const void *one = a.getImageDataS(i, 0), *other = b.getImageDataS(i, 0);
        require(a.GetDataSize(i) == 0 || std::memcmp(one, other, a.GetDataSize(i)) == 0, "equal samples");
    }
}

time_watch::time_watch(std::size_t bytes, double perByte)
    : limit(1.0 + perByte * static_cast<double>(bytes)), begin(std::clock())
{
}

time_watch::~time_watch()
{
    const double taken = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    if (taken > limit) std::cerr << "took " << taken << " s, " << limit << " s are allowed\n";
    require(taken <= limit, "the time is in proportion to the bytes");
}

namespace {

base::read_result<formats::recording> watched(base::read_result<formats::recording> (*read)(formats::source&),
                                              formats::source& file)
{
    const time_watch watch(file.size());
    return read(file);
}

} // namespace

int soak_reader(base::read_result<formats::recording> (*read)(formats::source&), const std::uint8_t* data,
                std::size_t size)
{
    formats::memory_source file(std::as_bytes(std::span(data, size)));
    auto recording = formats::finish_recording(watched(read, file));
    if (!recording) {
        require(!recording.error().reason.empty(), "a refusal has a reason");
        return 0;
    }
    for (const auto& item : recording->items)
        if (const auto* image = std::get_if<formats::recorded_image>(&item))
            require(image->stream.values.get_axis(0).scale > 0.0, "steps are positive");
    soak_document source, copy;
    if (!source.addRecording(*recording)) return 0;
    require_unique_ids(source);
    require(copy.readContainer(source.stored()), "what was stored can be read");
    require_equal(source, copy);
    return 0;
}
