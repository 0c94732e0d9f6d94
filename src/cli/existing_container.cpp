#include "cli/existing_container.h"

#include "document/formats/zip_reader.h"
#include "document/stream_source.h"
#include "platform/Archive.h"
#include "platform/paths.h"

#include <algorithm>
#include <fstream>

namespace cli {

namespace {

/// What a document stores itself into.
class memory_archive : public CArchive {
public:
    memory_archive() : CArchive(L"memory", true) {}
    void Write(const void* data, std::size_t count) override
    {
        const auto* const first = static_cast<const std::byte*>(data);
        bytes.insert(bytes.end(), first, first + count);
    }
    std::vector<std::byte> bytes;
};

bool hold_the_same(formats::source& a, formats::source& b)
{
    const auto first = formats::zip_reader::open(a), second = formats::zip_reader::open(b);
    return first && second && std::ranges::equal(first->all(), second->all(), [](const auto& x, const auto& y) {
               return x.first == y.first && x.second.bytes == y.second.bytes && x.second.checksum == y.second.checksum;
           });
}

} // namespace

const char* what_is(existing_file found) noexcept
{
    return found == existing_file::unreadable ? "cannot be read, so that nobody knows what it holds"
                                              : "holds something else";
}

existing_file look_for_existing(const std::filesystem::path& path, CStorageDoc& document)
{
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) return existing_file::none; // saving tells what is wrong
    std::ifstream in(path, std::ios::binary);
    const bool isRead = in && (in.peek(), !in.bad());
    if (!isRead) return existing_file::unreadable;
    in.clear(); // an empty file has ended
    memory_archive made;
    document.Serialize(made);
    formats::memory_source expected(made.bytes);
    document::stream_source found(in, platform::to_wide(path));
    return hold_the_same(found, expected) ? existing_file::same : existing_file::other;
}

} // namespace cli
