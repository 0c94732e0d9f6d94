#include "recovery/file_print.h"

#include <algorithm>
#include <istream>
#include <vector>
#include <zlib.h>

namespace vldv::recovery {

namespace {

constexpr std::uint64_t pieceBytes = 64 << 10, maxPieces = 1024;

} // namespace

bool is_printed_whole(std::uint64_t size) noexcept { return size <= pieceBytes * maxPieces; }

std::optional<std::uint32_t> print_of(std::istream& in, std::uint64_t size)
{
    // A CRC-32 of up to 1024 pieces of 64 KiB, spread evenly from the first byte to the last. Up to 64 MiB they cover
    // the whole file; of a larger one they are a sample, so that the time to take a print does not grow with the file.
    const std::uint64_t bytes = std::min(size, pieceBytes);
    const std::uint64_t count = std::clamp<std::uint64_t>((size + pieceBytes - 1) / pieceBytes, 1, maxPieces);
    std::vector<char> piece(bytes);
    uLong sum = crc32_z(0, nullptr, 0);
    in.clear();
    for (std::uint64_t i = 0; i < count && in; ++i) {
        const std::uint64_t at = count == 1 ? 0 : (size - bytes) * i / (count - 1);
        in.seekg(static_cast<std::streamoff>(at));
        in.read(piece.data(), static_cast<std::streamsize>(bytes));
        sum = crc32_z(sum, reinterpret_cast<const Bytef*>(piece.data()), piece.size());
    }
    const bool isRead = static_cast<bool>(in);
    in.clear();
    in.seekg(0);
    return isRead ? std::optional(static_cast<std::uint32_t>(sum)) : std::nullopt;
}

} // namespace vldv::recovery
