#include "formats/shared/zip_reader.h"

#include <algorithm>
#include <libdeflate.h>
#include <vector>
#include <zip.h>

namespace vldv::formats {

/// What libzip's callback needs between two calls.
struct zip_reader::source_state {
    source& file;
    std::uint64_t position = 0;
    zip_error_t error{};

    explicit source_state(source& file_) : file(file_) { zip_error_init(&error); }
    source_state(const source_state&) = delete;
    source_state& operator=(const source_state&) = delete;
    ~source_state() { zip_error_fini(&error); }

    zip_int64_t read(void* out, zip_uint64_t count)
    {
        const std::uint64_t piece = std::min<std::uint64_t>(count, file.size() - std::min(position, file.size()));
        if (!file.read(position, {static_cast<std::byte*>(out), piece})) {
            zip_error_set(&error, ZIP_ER_READ, 0);
            return -1;
        }
        position += piece;
        return static_cast<zip_int64_t>(piece);
    }

    zip_int64_t seek(void* out, zip_uint64_t count)
    {
        const zip_int64_t target = zip_source_seek_compute_offset(position, file.size(), out, count, &error);
        if (target < 0) return -1;
        position = static_cast<std::uint64_t>(target);
        return 0;
    }

    zip_int64_t describe(void* out, zip_uint64_t count)
    {
        if (count < sizeof(zip_stat_t)) return -1;
        auto* stat = static_cast<zip_stat_t*>(out);
        zip_stat_init(stat);
        stat->size = file.size();
        stat->valid |= ZIP_STAT_SIZE;
        return sizeof *stat;
    }

    static zip_int64_t call(void* self, void* out, zip_uint64_t count, zip_source_cmd_t command)
    {
        auto& state = *static_cast<source_state*>(self);
        switch (command) {
        case ZIP_SOURCE_OPEN:
            state.position = 0;
            return 0;
        case ZIP_SOURCE_READ:
            return state.read(out, count);
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE:
            return 0;
        case ZIP_SOURCE_STAT:
            return state.describe(out, count);
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&state.error, out, count);
        case ZIP_SOURCE_SEEK:
            return state.seek(out, count);
        case ZIP_SOURCE_TELL:
            return static_cast<zip_int64_t>(state.position);
        case ZIP_SOURCE_SUPPORTS:
            return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                                  ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL,
                                                  ZIP_SOURCE_SUPPORTS, -1);
        default:
            zip_error_set(&state.error, ZIP_ER_OPNOTSUPP, 0);
            return -1;
        }
    }
};

namespace {

constexpr std::uint64_t deflateLimit = 1032;      // unpacked bytes a stored byte, at the very most
constexpr std::uint64_t smallestEntryRecord = 46; // of the central directory
// What may be unpacked at one go: beside the result it takes as much memory as is stored, and nobody can cancel it.
constexpr std::uint64_t wholeStoredBytes = 32u << 20, wholeBytes = 64u << 20;
constexpr std::size_t pieceBytes = 4u << 20; // some milliseconds

/// Why an entry's claims cannot be true, or empty.
std::string refusal(const std::string& name, const zip_stat_t& stat, std::uint64_t fileSize, zip_reader::names allowed)
{
    const bool hasFolder = name.find('/') != std::string::npos;
    if ((hasFolder && allowed == zip_reader::names::flat) || name.empty())
        return "the entry \"" + name + "\" names a folder";
    if (!(stat.valid & ZIP_STAT_SIZE) || !(stat.valid & ZIP_STAT_COMP_SIZE))
        return "the entry \"" + name + "\" has no size";
    if (stat.comp_size > fileSize) return "the entry \"" + name + "\" is cut off";
    if (stat.size > stat.comp_size * deflateLimit) // stored bytes are at most those of the file
        return "the entry \"" + name + "\" claims more bytes than it can hold";
    return {};
}

struct entry_close {
    void operator()(zip_file_t* file) const noexcept { zip_fclose(file); }
};
using opened_entry = std::unique_ptr<zip_file_t, entry_close>;

zip_reader::entry entry_of(std::uint64_t index, const zip_stat_t& stat)
{
    const bool isPlain = !(stat.valid & ZIP_STAT_ENCRYPTION_METHOD) || stat.encryption_method == ZIP_EM_NONE;
    const bool isDeflated = isPlain && (stat.valid & ZIP_STAT_COMP_METHOD) && stat.comp_method == ZIP_CM_DEFLATE &&
                            (stat.valid & ZIP_STAT_CRC);
    return {index, stat.size, stat.comp_size, stat.crc, isDeflated};
}

/// Fills `out`. \return empty, or what was wrong
std::string read_all(zip_file_t* file, std::span<std::byte> out)
{
    for (std::size_t done = 0; done < out.size();) {
        const zip_int64_t got = zip_fread(file, out.data() + done, out.size() - done);
        if (got < 0) return zip_file_strerror(file);
        if (got == 0) return "fewer bytes than the directory claims";
        done += static_cast<std::size_t>(got);
    }
    return {};
}

} // namespace

void zip_reader::archive_close::operator()(zip* closed) const noexcept { zip_discard(closed); }

void zip_reader::inflater_free::operator()(libdeflate_decompressor* freed) const noexcept
{
    libdeflate_free_decompressor(freed);
}

zip_reader::zip_reader(zip_reader&&) noexcept = default;
zip_reader& zip_reader::operator=(zip_reader&&) noexcept = default;
zip_reader::~zip_reader() = default;

base::read_result<zip_reader> zip_reader::open(source& file, names allowed)
{
    zip_reader reader;
    reader.state = std::make_unique<source_state>(file);
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* bytes = zip_source_function_create(source_state::call, reader.state.get(), &error);
    if (bytes) reader.archive.reset(zip_open_from_source(bytes, ZIP_RDONLY, &error));
    if (!reader.archive) {
        const std::string reason = zip_error_strerror(&error);
        const bool wasNoArchive = zip_error_code_zip(&error) == ZIP_ER_NOZIP;
        if (bytes) zip_source_free(bytes);
        zip_error_fini(&error);
        // The directory stands at the end: what begins as an archive and has none lacks its end.
        const bool isCut = wasNoArchive && file.size() >= 4;
        return base::read_error{0, "the zip directory cannot be read (" + (isCut ? "the file is cut short" : reason) +
                                       ")"};
    }
    zip_error_fini(&error);
    const zip_int64_t count = zip_get_num_entries(reader.archive.get(), 0);
    if (count < 0 || static_cast<std::uint64_t>(count) > file.size() / smallestEntryRecord)
        return base::read_error{0, "the zip directory claims too many entries"};
    for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i) {
        zip_stat_t stat;
        const char* name = zip_get_name(reader.archive.get(), i, ZIP_FL_ENC_RAW);
        if (!name || zip_stat_index(reader.archive.get(), i, 0, &stat) != 0)
            return base::read_error{0, "an entry of the zip directory cannot be read"};
        if (const std::string reason = refusal(name, stat, file.size(), allowed); !reason.empty())
            return base::read_error{0, reason};
        if (std::string_view(name).ends_with('/')) continue;
        if (!reader.entries.emplace(name, entry_of(i, stat)).second)
            return base::read_error{0, "the entry \"" + std::string(name) + "\" stands in the file twice"};
    }
    reader.inflater.reset(libdeflate_alloc_decompressor());
    if (!reader.inflater) throw std::bad_alloc();
    return reader;
}

const zip_reader::entry* zip_reader::find(const std::string& name) const
{
    const auto found = entries.find(name);
    return found == entries.end() ? nullptr : &found->second;
}

std::string zip_reader::unpack(const entry& which, std::span<std::byte> out, const progress& tell) const
{
    const bool isSmall = which.storedBytes <= wholeStoredBytes && which.bytes <= wholeBytes;
    return which.isDeflated && isSmall && out.size() == which.bytes ? unpackWhole(which, out)
                                                                    : unpackPieces(which, out, tell);
}

/// A small entry that is wanted whole takes one call of the faster inflater, straight into its place.
std::string zip_reader::unpackWhole(const entry& which, std::span<std::byte> out) const
{
    const opened_entry file(zip_fopen_index(archive.get(), which.index, ZIP_FL_COMPRESSED));
    if (!file) return zip_strerror(archive.get());
    std::vector<std::byte> stored(which.storedBytes);
    if (const std::string failure = read_all(file.get(), stored); !failure.empty()) return failure;
    // Without a place for the size, anything but exactly this many bytes is an error.
    if (libdeflate_deflate_decompress(inflater.get(), stored.data(), stored.size(), out.data(), out.size(), nullptr) !=
        LIBDEFLATE_SUCCESS)
        return "the packed bytes are damaged";
    return libdeflate_crc32(0, out.data(), out.size()) == which.checksum ? "" : "the checksum does not match";
}

std::string zip_reader::unpackPieces(const entry& which, std::span<std::byte> out, const progress& tell) const
{
    const opened_entry file(zip_fopen_index(archive.get(), which.index, 0));
    if (!file) return zip_strerror(archive.get());
    for (std::size_t done = 0; done < out.size();) {
        const std::size_t piece = std::min(pieceBytes, out.size() - done);
        if (const std::string failure = read_all(file.get(), out.subspan(done, piece)); !failure.empty())
            return failure;
        done += piece;
        if (tell && !tell(done)) return "cancelled";
    }
    // Only the read that meets the end compares the checksum.
    char beyond;
    if (out.size() == which.bytes && zip_fread(file.get(), &beyond, 1) != 0) return "the checksum does not match";
    return {};
}

} // namespace vldv::formats
