#pragma once
#include "base/streams/byte_reader.h"
#include "formats/source.h"
#include "vldv_api.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>

struct zip;
struct libdeflate_decompressor;

namespace vldv::formats {

/// Reads entries of a zip archive on a source. What an archive claims is checked before anything is allocated for it.
class VLDV_INTERNAL_API zip_reader {
public:
    struct entry {
        std::uint64_t index;
        std::uint64_t bytes; ///< unpacked, at most 1,032 times what is stored
        std::uint64_t storedBytes;
        std::uint32_t checksum;
        bool isDeflated;
    };

    enum class names { flat, with_folders };

    /// Refuses truncated archives, duplicate names, names with folders in them where they have to be flat, and sizes
    /// that no deflate stream holds. Entries that are folders themselves are passed over.
    static base::read_result<zip_reader> open(source& file, names allowed = names::flat);
    zip_reader(zip_reader&&) noexcept;
    zip_reader& operator=(zip_reader&&) noexcept;
    ~zip_reader();

    /// Null when there is no such entry.
    const entry* find(const std::string& name) const;
    /// All by name, in the order of their names.
    const std::map<std::string, entry>& all() const noexcept { return entries; }
    /// Told how many bytes of an entry are unpacked; false gives up.
    using progress = std::function<bool(std::size_t done)>;
    /// Unpacks the first `out.size()` bytes of an entry, all of it when the sizes are equal; then the checksum is
    /// verified. A large entry is unpacked piece by piece: it needs 32 MiB beside `out` at the most, and `tell`, which
    /// may stay empty, hears of each piece. \return empty, or what was wrong
    std::string unpack(const entry& which, std::span<std::byte> out, const progress& tell = {}) const;

private:
    struct archive_close {
        void operator()(zip* archive) const noexcept;
    };
    struct inflater_free {
        void operator()(libdeflate_decompressor* inflater) const noexcept;
    };
    struct source_state;
    zip_reader() = default;
    std::string unpackWhole(const entry& which, std::span<std::byte> out) const;
    std::string unpackPieces(const entry& which, std::span<std::byte> out, const progress& tell) const;

    std::unique_ptr<source_state> state;
    std::unique_ptr<zip, archive_close> archive; // behind the state: it reads through it until it is closed
    std::unique_ptr<libdeflate_decompressor, inflater_free> inflater;
    std::map<std::string, entry> entries;
};

} // namespace vldv::formats
