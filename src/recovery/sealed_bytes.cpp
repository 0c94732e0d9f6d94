#include "recovery/sealed_bytes.h"

#include <utility>
#include <zlib.h>

namespace vldv::recovery {

namespace {

constexpr std::size_t sumBytes = sizeof(std::uint32_t);

std::uint32_t checksum(std::span<const std::byte> bytes)
{
    return static_cast<std::uint32_t>(
        crc32_z(crc32_z(0, nullptr, 0), reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

} // namespace

std::vector<std::byte> byte_writer::sealed()
{
    number(checksum(bytes));
    return std::exchange(bytes, {});
}

std::string text_from(base::byte_reader& in)
{
    const auto found = in.take(in.u32());
    return {reinterpret_cast<const char*>(found.data()), found.size()};
}

std::optional<std::span<const std::byte>> unsealed(std::span<const std::byte> bytes)
{
    if (bytes.size() < sumBytes) return std::nullopt;
    const auto content = bytes.first(bytes.size() - sumBytes);
    if (base::byte_reader(bytes.last(sumBytes)).u32() != checksum(content)) return std::nullopt;
    return content;
}

} // namespace vldv::recovery
