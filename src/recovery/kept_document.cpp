#include "recovery/kept_document.h"

#include "base/streams/byte_reader.h"
#include "base/text.h"

#include <fstream>
#include <iterator>
#include <zlib.h>

namespace recovery {

namespace {

constexpr std::string_view signature = "VLKEPT2\n";

std::uint32_t checksum(std::span<const std::byte> bytes)
{
    return static_cast<std::uint32_t>(
        crc32_z(crc32_z(0, nullptr, 0), reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

class byte_writer {
public:
    template <class T>
    void number(T value)
    {
        for (std::size_t i = 0; i < sizeof(T); ++i)
            bytes.push_back(static_cast<std::byte>(static_cast<std::uint64_t>(value) >> (8 * i) & 0xff));
    }
    void plain(std::string_view text)
    {
        const auto* const first = reinterpret_cast<const std::byte*>(text.data());
        bytes.insert(bytes.end(), first, first + text.size());
    }
    void text(std::string_view text)
    {
        number(static_cast<std::uint32_t>(text.size()));
        plain(text);
    }
    void table(const text_table& texts)
    {
        number(static_cast<std::uint32_t>(texts.size()));
        for (const auto& [key, value] : texts) {
            text(key);
            text(value);
        }
    }
    std::vector<std::byte> bytes;
};

std::string text_from(base::byte_reader& in)
{
    const auto found = in.take(in.u32());
    return {reinterpret_cast<const char*>(found.data()), found.size()};
}

text_table table_from(base::byte_reader& in)
{
    text_table texts;
    for (std::uint32_t count = in.u32(); count > 0 && !in.failed(); --count) {
        std::string key = text_from(in);
        texts.insert_or_assign(std::move(key), text_from(in));
    }
    return texts;
}

kept_image image_from(base::byte_reader& in)
{
    kept_image image;
    image.id = text_from(in);
    image.declaration = text_from(in);
    image.texts = table_from(in);
    image.file = text_from(in);
    image.fileImage = in.u32();
    image.bytes = in.u64();
    if (in.u8() != 0) image.checksum = in.u32();
    return image;
}

void write(byte_writer& out, const document::own_files::entry& file)
{
    out.text(base::narrow(file.path));
    out.number(file.stamp.device);
    out.number(file.stamp.number);
    out.number(file.stamp.size);
    out.number(file.stamp.seconds);
    out.number(file.stamp.nanoseconds);
}

document::own_files::entry file_from(base::byte_reader& in)
{
    document::own_files::entry file;
    file.path = base::widen(text_from(in));
    file.stamp.device = in.u64();
    file.stamp.number = in.u64();
    file.stamp.size = in.u64();
    file.stamp.seconds = in.little<std::int64_t>();
    file.stamp.nanoseconds = in.little<std::int64_t>();
    return file;
}

} // namespace

std::vector<std::byte> encode(const kept_document& kept)
{
    byte_writer out;
    out.plain(signature);
    out.number(kept.time);
    out.text(base::narrow(kept.title));
    out.text(base::narrow(kept.path));
    out.number(static_cast<std::uint8_t>(kept.source.has_value()));
    if (kept.source) write(out, *kept.source);
    out.table(kept.texts);
    out.number(static_cast<std::uint32_t>(kept.images.size()));
    for (const kept_image& image : kept.images) {
        out.text(image.id);
        out.text(image.declaration);
        out.table(image.texts);
        out.text(image.file);
        out.number(image.fileImage);
        out.number(image.bytes);
        out.number(static_cast<std::uint8_t>(image.checksum.has_value()));
        if (image.checksum) out.number(*image.checksum);
    }
    if (kept.sourcePrint) out.number(*kept.sourcePrint);
    out.number(checksum(out.bytes));
    return std::move(out.bytes);
}

std::optional<kept_document> decode(std::span<const std::byte> bytes)
{
    constexpr std::size_t sumBytes = sizeof(std::uint32_t);
    if (bytes.size() < signature.size() + sumBytes) return std::nullopt;
    const auto content = bytes.first(bytes.size() - sumBytes);
    if (base::byte_reader(bytes.last(sumBytes)).u32() != checksum(content)) return std::nullopt;
    base::byte_reader in(content);
    if (!in.tag(signature)) return std::nullopt;
    kept_document kept;
    kept.time = in.little<std::int64_t>();
    kept.title = base::widen(text_from(in));
    kept.path = base::widen(text_from(in));
    if (in.u8() != 0) kept.source = file_from(in);
    kept.texts = table_from(in);
    for (std::uint32_t count = in.u32(); count > 0 && !in.failed(); --count) kept.images.push_back(image_from(in));
    if (in.remaining() > 0) kept.sourcePrint = in.u32();
    if (in.failed() || in.remaining() > 0) return std::nullopt;
    return kept;
}

std::optional<kept_document> read_manifest(const std::filesystem::path& folder)
{
    std::ifstream in(folder / manifestName, std::ios::binary);
    if (!in) return std::nullopt;
    const std::string content((std::istreambuf_iterator<char>(in)), {});
    return decode(std::as_bytes(std::span(content)));
}

} // namespace recovery
