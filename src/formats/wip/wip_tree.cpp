#include "formats/wip/wip_tree.h"

#include "base/text.h"
#include "formats/shared/file_start.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/sample_numbers.h"

#include <algorithm>

namespace vldv::formats {

namespace {

constexpr std::string_view magics[] = {"WIT_PRCT", "WIT_PR06", "WIT_DATA", "WIT_DA06"};
constexpr std::string_view ancientMagic = "WIT^";
constexpr std::uint64_t magicBytes = 8;
constexpr std::uint32_t longestName = 4096;
constexpr unsigned deepest = 64;
constexpr std::size_t mostTags = 1'000'000;
constexpr std::uint64_t longestValue = 1u << 20; ///< of what is read as text or as a table

/// Walks the tags and counts them.
class tree_reader {
public:
    tree_reader(source& file_, left_out& missing_) : file(file_), missing(missing_) {}

    /// Reads the tag at `offset`, which has to end at or before `limit`.
    bool readTag(std::uint64_t offset, std::uint64_t limit, unsigned depth, wip_tag& tag)
    {
        if (++count > mostTags) return fail(offset, "more than 1000000 tags");
        if (depth > deepest) return fail(offset, "tags are nested deeper than 64 levels");
        std::uint64_t behindHeader = 0;
        if (!readHeader(offset, limit, tag, behindHeader)) return false;
        if (tag.start < behindHeader) return fail(offset, "tag " + tag.name + " starts before its own header");
        if (depth == 0 && tag.end > limit) {
            isCut = true;
            missing.add({limit, "the file is cut short, what stood behind its end is lost"});
        }
        if (isOpen(limit) && tag.type == wip_tag::tags) tag.end = std::min(tag.end, limit);
        if (tag.end < tag.start || tag.end > limit)
            return fail(offset, "tag " + tag.name + " ends outside of the tag that holds it, or the file is cut short");
        return tag.type != wip_tag::tags || readChildren(depth, tag);
    }

    base::read_error error;

private:
    /// True when what holds a tag goes on behind the end of the file.
    bool isOpen(std::uint64_t limit) const { return isCut && limit == file.size(); }

    bool fail(std::uint64_t offset, const std::string& reason)
    {
        error = {offset, reason};
        return false;
    }

    bool readHeader(std::uint64_t offset, std::uint64_t limit, wip_tag& tag, std::uint64_t& behind)
    {
        constexpr std::uint64_t fixedBytes = 20; // type, start, end
        std::byte lengthBytes[4];
        if (limit - offset < sizeof lengthBytes || !file.read(offset, lengthBytes))
            return fail(offset, "a tag is cut short");
        const std::uint32_t nameLength = base::byte_reader(lengthBytes).u32();
        if (nameLength > longestName) return fail(offset, "the name of a tag is longer than 4096 bytes");
        behind = offset + sizeof lengthBytes + nameLength + fixedBytes;
        if (behind > limit) return fail(offset, "a tag is cut short");
        std::vector<std::byte> bytes(nameLength + fixedBytes);
        if (!file.read(offset + sizeof lengthBytes, bytes)) return fail(offset, "a tag cannot be read");
        base::byte_reader in(bytes);
        tag.name = fixed_text(in, nameLength);
        tag.type = in.u32();
        tag.start = in.u64();
        tag.end = in.u64();
        return true;
    }

    /// The next tag begins where one ends, so that each moves forward by its header at least.
    bool readChildren(unsigned depth, wip_tag& tag)
    {
        for (std::uint64_t offset = tag.start; offset < tag.end;) {
            if (!readTag(offset, tag.end, depth + 1, tag.children.emplace_back())) {
                if (!isOpen(tag.end)) return false;
                tag.children.pop_back();
                return true;
            }
            offset = tag.children.back().end;
        }
        return true;
    }

    source& file;
    left_out& missing;
    bool isCut = false;
    std::size_t count = 0;
};

SPMVarArrayType element_of(std::uint32_t type) noexcept
{
    switch (type) {
    case wip_tag::float64:
        return SPM_ARRAY_FLOAT64;
    case wip_tag::float32:
        return SPM_ARRAY_FLOAT32;
    case wip_tag::int64:
        return SPM_ARRAY_INT64;
    case wip_tag::int32:
        return SPM_ARRAY_INT32;
    case wip_tag::bytes:
    case wip_tag::boolean:
        return SPM_ARRAY_UINT8;
    default:
        return SPM_ARRAY_VOID;
    }
}

} // namespace

const wip_tag* wip_tag::find(std::string_view childName) const noexcept
{
    const auto found = std::ranges::find(children, childName, &wip_tag::name);
    return found == children.end() ? nullptr : &*found;
}

bool is_wip_head(std::span<const std::byte> head) noexcept
{
    const std::string_view text = as_text(head);
    return text.starts_with(ancientMagic) ||
           std::ranges::any_of(magics, [&](std::string_view magic) { return text.starts_with(magic); });
}

base::read_result<wip_tag> read_wip_tree(source& file, left_out& missing)
{
    const std::string head = read_start(file, magicBytes);
    if (!is_wip_head(std::as_bytes(std::span(head)))) return base::read_error{0, "not a WITec file"};
    if (head.starts_with(ancientMagic)) return base::read_error{0, "a WITec file of a version too old to be known"};
    tree_reader reader(file, missing);
    wip_tag root;
    if (!reader.readTag(magicBytes, file.size(), 0, root)) return reader.error;
    return root;
}

std::vector<double> read_wip_numbers(source& file, const wip_tag* tag)
{
    std::vector<double> numbers;
    if (!tag || tag->length() > longestValue) return numbers;
    const SPMVarArrayType type = element_of(tag->type);
    const unsigned bytes = element_size(type);
    if (bytes == 0 || !read_numbers(file, tag->start, tag->length() / bytes, type, byte_order::little, numbers))
        numbers.clear();
    return numbers;
}

std::optional<double> read_wip_number(source& file, const wip_tag* tag)
{
    const auto numbers = read_wip_numbers(file, tag);
    return numbers.empty() ? std::nullopt : std::optional(numbers.front());
}

std::string read_wip_text(source& file, const wip_tag* tag)
{
    if (!tag || tag->type != wip_tag::texts || tag->length() > longestValue) return {};
    std::vector<std::byte> bytes(static_cast<std::size_t>(tag->length()));
    if (!file.read(tag->start, bytes)) return {};
    base::byte_reader in(bytes);
    const std::uint32_t length = in.u32();
    return fixed_text(in, length);
}

} // namespace vldv::formats
