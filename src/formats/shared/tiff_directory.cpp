#include "formats/shared/tiff_directory.h"

#include "formats/shared/header_text.h"

#include <algorithm>
#include <set>
#include <utility>

namespace vldv::formats {

namespace {

constexpr std::size_t entryBytes = 12;

/// Bytes of a value of a tag type; 0 for types that are none.
unsigned type_bytes(unsigned type) noexcept
{
    constexpr unsigned bytes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
    return type < std::size(bytes) ? bytes[type] : 0;
}

/// The element type of a tag's numbers; void for texts and fractions.
SPMVarArrayType number_type(unsigned type) noexcept
{
    constexpr SPMVarArrayType types[] = {SPM_ARRAY_VOID,   SPM_ARRAY_UINT8, SPM_ARRAY_VOID, SPM_ARRAY_UINT16,
                                         SPM_ARRAY_UINT32, SPM_ARRAY_VOID,  SPM_ARRAY_INT8, SPM_ARRAY_UINT8,
                                         SPM_ARRAY_INT16,  SPM_ARRAY_INT32, SPM_ARRAY_VOID, SPM_ARRAY_FLOAT32,
                                         SPM_ARRAY_FLOAT64};
    return type < std::size(types) ? types[type] : SPM_ARRAY_VOID;
}

/// Reads numbers of either order.
class ordered_reader {
public:
    ordered_reader(std::span<const std::byte> bytes, byte_order order_) : in(bytes), order(order_) {}
    std::uint32_t u16() { return order == byte_order::big ? in.big<std::uint16_t>() : in.u16(); }
    std::uint32_t u32() { return order == byte_order::big ? in.big<std::uint32_t>() : in.u32(); }
    base::byte_reader in;

private:
    byte_order order;
};

std::optional<byte_order> order_of(std::span<const std::byte> head)
{
    base::byte_reader in(head);
    if (in.tag(std::string_view("II*\0", 4))) return byte_order::little;
    if (in.tag(std::string_view("MM\0*", 4))) return byte_order::big;
    return std::nullopt;
}

} // namespace

std::vector<double> tiff_directory::numbers(unsigned tag) const
{
    const auto found = entries.find(tag);
    if (found == entries.end() || number_type(found->second.type) == SPM_ARRAY_VOID) return {};
    std::vector<double> out(found->second.count);
    decode_numbers(found->second.bytes, number_type(found->second.type), order, out);
    return out;
}

std::optional<double> tiff_directory::number(unsigned tag) const
{
    const std::vector<double> all = numbers(tag);
    return all.empty() ? std::nullopt : std::optional(all.front());
}

std::span<const std::byte> tiff_directory::bytes(unsigned tag) const
{
    const auto found = entries.find(tag);
    return found == entries.end() ? std::span<const std::byte>() : std::span(found->second.bytes);
}

std::string tiff_directory::text(unsigned tag) const
{
    const auto found = entries.find(tag);
    if (found == entries.end() || type_bytes(found->second.type) != 1) return {};
    return header_text({reinterpret_cast<const char*>(found->second.bytes.data()), found->second.bytes.size()});
}

/// Reads the directories of a file one after another.
class tiff_directory_reader {
public:
    tiff_directory_reader(source& file_, byte_order order_) : file(file_), order(order_) {}

    /// The directory at `at`, which moves to the place of the next one, 0 behind the last or when that is not known.
    base::read_result<tiff_directory> next(std::uint64_t& at)
    {
        const std::uint64_t place = std::exchange(at, 0);
        if (!seen.insert(place).second) return base::read_error{place, "the list of TIFF directories runs in a circle"};
        std::byte countBytes[2];
        if (!file.read(place, countBytes)) return base::read_error{place, "a TIFF directory lies outside the file"};
        const std::uint32_t count = ordered_reader(countBytes, order).u16();
        std::vector<std::byte> table(count * entryBytes + 4);
        if (!file.read(place + 2, table)) return base::read_error{place, "a TIFF directory is cut short"};
        ordered_reader link(std::span<const std::byte>(table).last(4), order);
        at = link.u32();
        ordered_reader in(table, order);
        tiff_directory directory;
        directory.order = order;
        for (std::uint32_t i = 0; i < count; ++i)
            if (std::string reason = readEntry(in, table, directory); !reason.empty())
                return base::read_error{place, std::move(reason)};
        return directory;
    }

private:
    /// \return empty, or why the directory cannot be used
    std::string readEntry(ordered_reader& in, std::span<const std::byte> table, tiff_directory& directory)
    {
        const unsigned tag = in.u16();
        tiff_directory::entry entry{in.u16(), in.u32(), {}};
        const std::size_t valueAt = in.in.offset();
        const std::uint64_t place = in.u32(), bytes = std::uint64_t{entry.count} * type_bytes(entry.type);
        if (bytes <= 4) {
            const auto inside = table.subspan(valueAt, static_cast<std::size_t>(bytes));
            entry.bytes.assign(inside.begin(), inside.end());
        } else {
            if (!holds_numbers(file.size(), place, bytes, 1) || (tagBytes += bytes) > 2 * file.size())
                return "values of TIFF tag " + std::to_string(tag) + " lie outside the file";
            entry.bytes.resize(static_cast<std::size_t>(bytes));
            if (!file.read(place, entry.bytes)) return "values of TIFF tag " + std::to_string(tag) + " cannot be read";
        }
        if (type_bytes(entry.type) == 0) entry.count = 0;
        directory.entries.emplace(tag, std::move(entry));
        return {};
    }

    source& file;
    byte_order order;
    std::set<std::uint64_t> seen;
    std::uint64_t tagBytes = 0; ///< of all values: tags may share their bytes
};

base::read_result<std::vector<tiff_directory>> read_tiff_directories(source& file, byte_order& order, left_out& missing)
{
    std::byte head[8];
    if (file.size() < sizeof head || !file.read(0, head)) return base::read_error{0, "TIFF header cut short"};
    const auto found = order_of(head);
    if (!found) return base::read_error{0, "not a TIFF header"};
    order = *found;
    ordered_reader start(head, order);
    start.in.skip(4);
    std::vector<tiff_directory> directories;
    tiff_directory_reader reader(file, order);
    for (std::uint64_t at = start.u32(); at != 0;) {
        auto directory = reader.next(at);
        if (directory)
            directories.push_back(std::move(*directory));
        else if (directories.empty())
            return directory.error();
        else
            missing.add(directory.error());
    }
    return directories;
}

bool file_has_tiff_tag(source& file, unsigned tag) { return first_tiff_value(file, tag).has_value(); }

std::optional<std::uint32_t> first_tiff_value(source& file, unsigned tag)
{
    std::byte head[8], countBytes[2];
    if (!file.read(0, head)) return std::nullopt;
    const auto order = order_of(head);
    if (!order) return std::nullopt;
    ordered_reader start(head, *order);
    start.in.skip(4);
    const std::uint64_t at = start.u32();
    if (!file.read(at, countBytes)) return std::nullopt;
    const std::uint32_t count = ordered_reader(countBytes, *order).u16();
    std::vector<std::byte> table(count * entryBytes);
    if (!file.read(at + sizeof countBytes, table)) return std::nullopt;
    ordered_reader in(table, *order);
    for (std::uint32_t i = 0; i < count; ++i) {
        const bool isWanted = in.u16() == tag;
        in.in.skip(2 + 4); // type and count
        const std::uint32_t value = in.u32();
        if (isWanted) return value;
    }
    return std::nullopt;
}

bool head_has_tiff_tag(std::span<const std::byte> head, unsigned tag)
{
    const auto order = order_of(head);
    if (!order) return false;
    ordered_reader in(head, *order);
    in.in.skip(4);
    in.in.seek(in.u32());
    const std::uint32_t count = in.u16();
    for (std::uint32_t i = 0; i < count && !in.in.failed(); ++i) {
        if (in.u16() == tag) return !in.in.failed();
        in.in.skip(entryBytes - 2);
    }
    return false;
}

} // namespace vldv::formats
