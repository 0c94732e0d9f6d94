#include "formats/sur/sur_samples.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include <libdeflate.h>

namespace vldv::formats {

namespace {

/// Streams that a packed object is cut into: a table of their sizes, then the streams.
struct stream_sizes {
    std::uint32_t raw = 0, packed = 0;
};

struct stream_table {
    std::vector<stream_sizes> streams;
    std::string reason; ///< why there is none
};

std::uint64_t bytes_of(const sur_object& object) noexcept { return object.values() * (object.sampleBits / 8); }

/// Reads the table at `offset` and moves it behind. All claims are held against the bytes that the file has left.
stream_table read_table(source& file, const sur_object& object, std::uint64_t& offset)
{
    std::byte countBytes[4];
    if (!file.read(offset, countBytes)) return {{}, "the number of packed streams is cut short"};
    offset += sizeof countBytes;
    const std::uint32_t count = base::byte_reader(countBytes).u32();
    if (count == 0 || count > (file.size() - offset) / 8)
        return {{}, "the number of packed streams, " + std::to_string(count) + ", does not fit the file"};
    std::vector<std::byte> bytes(std::size_t{count} * 8);
    if (!file.read(offset, bytes)) return {{}, "the table of packed streams cannot be read"};
    offset += bytes.size();
    stream_table table;
    base::byte_reader in(bytes);
    std::uint64_t raw = 0, left = file.size() - offset;
    for (std::uint32_t i = 0; i < count; ++i) {
        stream_sizes sizes;
        sizes.raw = in.u32();
        sizes.packed = in.u32();
        if (sizes.packed > left) return {{}, "packed stream " + std::to_string(i + 1) + " is cut short"};
        if (sizes.raw / 1032 > sizes.packed) // more than any zlib stream unpacks to
            return {{}, "the size of packed stream " + std::to_string(i + 1) + " cannot be true"};
        left -= sizes.packed;
        raw += sizes.raw;
        table.streams.push_back(sizes);
    }
    if (raw != bytes_of(object))
        return {{},
                "packed streams hold " + std::to_string(raw) + " bytes where the points take " +
                    std::to_string(bytes_of(object))};
    return table;
}

struct free_decompressor {
    void operator()(libdeflate_decompressor* each) const noexcept { libdeflate_free_decompressor(each); }
};

std::string unpack(source& file, const stream_table& table, std::uint64_t& offset, std::span<std::byte> out)
{
    const std::unique_ptr<libdeflate_decompressor, free_decompressor> inflater(libdeflate_alloc_decompressor());
    if (!inflater) throw std::bad_alloc();
    std::vector<std::byte> packed;
    for (const stream_sizes& sizes : table.streams) {
        packed.resize(sizes.packed);
        if (!file.read(offset, packed)) return "a packed stream cannot be read";
        const auto result =
            libdeflate_zlib_decompress(inflater.get(), packed.data(), packed.size(), out.data(), sizes.raw, nullptr);
        if (result != LIBDEFLATE_SUCCESS) return "a packed stream is damaged";
        offset += sizes.packed;
        out = out.subspan(sizes.raw);
        if (!file.progress(static_cast<double>(offset) / static_cast<double>(file.size())))
            return "reading was cancelled";
    }
    return {};
}

} // namespace

std::string check_sur_values(source& file, const sur_object& object, std::uint64_t offset)
{
    if (object.values() > std::numeric_limits<unsigned>::max()) return "more than 4294967295 values";
    if (offset > file.size()) return "comment or private zone reach beyond the end of the file, which is cut short";
    if (object.isPacked) return read_table(file, object, offset).reason;
    if (bytes_of(object) <= file.size() - offset) return {};
    return "the file is cut short: its points take " + std::to_string(bytes_of(object)) + " bytes, " +
           std::to_string(file.size() - offset) + " are there";
}

std::string read_sur_values(source& file, const sur_object& object, std::uint64_t& offset, std::span<std::byte> out)
{
    if (object.isPacked) {
        const stream_table table = read_table(file, object, offset);
        return table.reason.empty() ? unpack(file, table, offset, out) : table.reason;
    }
    if (!file.read(offset, out)) return "the points cannot be read";
    offset += out.size();
    return {};
}

} // namespace vldv::formats
