#include "formats/single/hdf_directory.h"

#include "formats/shared/fixed_text.h"

#include <algorithm>

namespace vldv::formats {

namespace {

constexpr std::uint16_t emptyTag = 1;
constexpr std::uint32_t nowhere = 0xFFFFFFFF;
constexpr std::size_t headBytes = 6, entryBytes = 12;

/// Reads the block of descriptors at `offset`. The next one has to lie behind it, so that no entry is read twice.
/// \return the place of the next block, 0 after the last
base::read_result<std::uint64_t> read_block(source& file, std::uint64_t offset, hdf_directory& directory)
{
    std::byte head[headBytes];
    if (!file.read(offset, head)) return base::read_error{offset, "directory block is cut short"};
    base::byte_reader in(head);
    const auto count = in.big<std::uint16_t>();
    const auto next = in.big<std::uint32_t>();
    std::vector<std::byte> entries(count * entryBytes);
    if (!file.read(offset + headBytes, entries)) return base::read_error{offset, "directory block is cut short"};
    in = base::byte_reader(entries);
    for (unsigned i = 0; i < count; ++i) {
        const auto tag = in.big<std::uint16_t>();
        in.skip(2); // reference number
        const auto place = in.big<std::uint32_t>(), length = in.big<std::uint32_t>();
        if (tag != emptyTag && place != nowhere && length != nowhere)
            directory.elements.push_back({tag, place, length});
    }
    if (next != 0 && next < offset + headBytes + entries.size())
        return base::read_error{offset, "directory blocks do not go forward"};
    return std::uint64_t{next};
}

} // namespace

const hdf_element* hdf_directory::find(std::uint16_t tag) const noexcept
{
    const auto found = std::ranges::find(elements, tag, &hdf_element::tag);
    return found == elements.end() ? nullptr : &*found;
}

bool is_hdf4(std::span<const std::byte> head) noexcept { return as_text(head).starts_with("\x0E\x03\x13\x01"); }

bool is_hdf5(std::span<const std::byte> head) noexcept { return as_text(head).starts_with("\x89HDF\r\n\x1A\n"); }

base::read_result<hdf_directory> read_hdf_directory(source& file)
{
    hdf_directory directory;
    std::uint64_t offset = 4;
    while (offset != 0) {
        const auto next = read_block(file, offset, directory);
        if (!next) return next.error();
        offset = *next;
    }
    return directory;
}

base::read_result<std::vector<std::byte>> read_hdf_element(source& file, const hdf_element& element, std::uint64_t most)
{
    if (element.length > most) return base::read_error{element.offset, "is larger than it can be"};
    if (element.offset > file.size() || element.length > file.size() - element.offset)
        return base::read_error{element.offset, "reaches beyond the end of the file, which is cut short"};
    std::vector<std::byte> bytes(static_cast<std::size_t>(element.length));
    if (!file.read(element.offset, bytes)) return base::read_error{element.offset, "cannot be read"};
    return bytes;
}

} // namespace vldv::formats
