#include "view/scale/palette_file.h"

namespace vldv::view {

namespace {

constexpr std::uint32_t headerBytes = 12; // "PAL ", "data" and its size, which the RIFF size counts

void append(std::vector<std::byte>& out, const char* tag)
{
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::byte>(tag[i]));
}

void append(std::vector<std::byte>& out, std::uint32_t number)
{
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::byte>(number >> 8 * i));
}

} // namespace

base::read_result<color_table> read_palette_file(std::span<const std::byte> bytes)
{
    base::byte_reader in(bytes);
    const bool isRiff = in.tag("RIFF");
    const std::uint32_t riffSize = in.u32();
    const bool isPalette = in.tag("PAL ") && in.tag("data");
    in.skip(4);
    if (in.failed() || !isRiff || !isPalette || riffSize < headerBytes)
        return base::read_error{in.offset(), "not a palette header"};
    const std::size_t payload = riffSize - headerBytes;
    if (payload > in.remaining()) return base::read_error{in.offset(), "entries cut short"};
    color_table table(payload / 4);
    if (table.empty()) return base::read_error{in.offset(), "no entries"};
    for (colorEntry& entry : table) entry = in.u32() & 0x00ffffffu;
    return table;
}

std::vector<std::byte> write_palette_file(const color_table& table)
{
    const auto payload = static_cast<std::uint32_t>(4 * table.size());
    std::vector<std::byte> out;
    out.reserve(8 + headerBytes + payload);
    append(out, "RIFF");
    append(out, payload + headerBytes);
    append(out, "PAL ");
    append(out, "data");
    append(out, payload);
    for (const colorEntry entry : table) append(out, entry);
    return out;
}

} // namespace vldv::view
