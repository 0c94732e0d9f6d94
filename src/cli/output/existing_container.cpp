#include "cli/output/existing_container.h"

#include "document/container/stream_source.h"
#include "formats/shared/zip_reader.h"
#include "platform/files/Archive.h"
#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "platform/files/temporary_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <vector>

namespace vldv::cli {

namespace {

/// What a document stores itself into: containers may be as large as memory.
class temporary_archive : public CArchive {
public:
    temporary_archive() : CArchive(L"a temporary file", true), out(file.path(), std::ios::binary) {}
    void Write(const void* data, std::size_t count) override
    {
        if (!out.write(static_cast<const char*>(data), static_cast<std::streamsize>(count)).flush())
            throw CFileException(errno, path());
    }
    const std::filesystem::path& stored() const noexcept { return file.path(); }

private:
    const platform::temporary_file file;
    std::ofstream out;
};

/// Whether each entry unpacks to what its checksum says.
bool is_whole(const formats::zip_reader& archive)
{
    std::vector<std::byte> content;
    return std::ranges::all_of(archive.all(), [&](const auto& each) {
        content.resize(static_cast<std::size_t>(each.second.bytes));
        return archive.unpack(each.second, content).empty();
    });
}

existing_file compare(formats::source& there, formats::source& made)
{
    const auto first = formats::zip_reader::open(there), second = formats::zip_reader::open(made);
    if (!first || first->all().empty()) return existing_file::damaged; // an empty file counts as an empty archive
    // Names, sizes and checksums of the entries tell whether the contents are the same; how well they are packed, and
    // the time in the archive, do not count.
    const bool isAlike =
        second && std::ranges::equal(first->all(), second->all(), [](const auto& x, const auto& y) {
            return x.first == y.first && x.second.bytes == y.second.bytes && x.second.checksum == y.second.checksum;
        });
    if (!isAlike) return existing_file::other;
    return is_whole(*first) ? existing_file::same : existing_file::damaged;
}

} // namespace

const char* what_is(existing_file found) noexcept
{
    if (found == existing_file::damaged) return "is damaged or no container";
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
    temporary_archive made;
    document.Serialize(made);
    std::ifstream fresh(made.stored(), std::ios::binary);
    document::stream_source found(in, platform::to_wide(path)), expected(fresh, {});
    return compare(found, expected);
}

} // namespace vldv::cli
