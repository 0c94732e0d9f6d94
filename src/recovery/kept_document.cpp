#include "recovery/kept_document.h"

#include "base/text.h"
#include "recovery/sealed_bytes.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace vldv::recovery {

namespace {

constexpr std::string_view signature = "VLKEPT3\n", formerSignature = "VLKEPT2\n";
// A place in a file is kept in a list of as many; no container has so many images.
constexpr std::uint32_t mostFileImages = 1u << 20;

void write(byte_writer& out, const text_table& texts)
{
    out.number(static_cast<std::uint32_t>(texts.size()));
    for (const auto& [key, value] : texts) {
        out.text(key);
        out.text(value);
    }
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

void write(byte_writer& out, const kept_image& image)
{
    out.text(image.id);
    out.text(image.declaration);
    write(out, image.texts);
    out.text(image.file);
    out.number(image.fileImage);
    out.number(image.bytes);
    out.number(static_cast<std::uint8_t>(image.checksum.has_value()));
    if (image.checksum) out.number(*image.checksum);
    out.text(image.overlayFile);
    out.text(image.drawingsFile);
}

kept_image image_from(base::byte_reader& in, bool isFormer)
{
    kept_image image;
    image.id = text_from(in);
    image.declaration = text_from(in);
    image.texts = table_from(in);
    image.file = text_from(in);
    image.fileImage = in.u32();
    image.bytes = in.u64();
    if (in.u8() != 0) image.checksum = in.u32();
    if (isFormer) return image;
    image.overlayFile = text_from(in);
    image.drawingsFile = text_from(in);
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

/// Names files in its folder only, and no places beyond measure.
bool is_of_copy(const kept_document& kept)
{
    const auto isPlain = [](const std::string& name) {
        return name.find('/') == std::string::npos && name.find('\0') == std::string::npos && name != "." &&
               name != ".." && name != manifestName && name != sourceFolder;
    };
    return std::ranges::all_of(files_of(kept), isPlain) &&
           std::ranges::all_of(kept.images, [](const auto& image) { return image.fileImage < mostFileImages; });
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
    // Numbers are little-endian, texts have a length of 32 bits in front, and a CRC-32 closes the whole. What came
    // later stands at the end: the print of the source is there when bytes are left for it.
    byte_writer out;
    out.plain(signature);
    out.number(kept.time);
    out.text(base::narrow(kept.title));
    out.text(base::narrow(kept.path));
    out.number(static_cast<std::uint8_t>(kept.source.has_value()));
    if (kept.source) write(out, *kept.source);
    write(out, kept.texts);
    out.number(static_cast<std::uint32_t>(kept.images.size()));
    for (const kept_image& image : kept.images) write(out, image);
    out.text(kept.baseTitle);
    out.text(kept.displayTitle);
    out.number(kept.derived);
    if (kept.sourcePrint) out.number(*kept.sourcePrint);
    return out.sealed();
}

std::optional<kept_document> decode(std::span<const std::byte> bytes)
{
    const auto content = unsealed(bytes);
    base::byte_reader in(content.value_or(std::span<const std::byte>()));
    const bool isFormer = in.tag(formerSignature);
    if (!isFormer && !in.tag(signature)) return std::nullopt;
    kept_document kept;
    kept.time = in.little<std::int64_t>();
    kept.title = base::widen(text_from(in));
    kept.path = base::widen(text_from(in));
    if (in.u8() != 0) kept.source = file_from(in);
    kept.texts = table_from(in);
    for (std::uint32_t count = in.u32(); count > 0 && !in.failed(); --count)
        kept.images.push_back(image_from(in, isFormer));
    if (!isFormer) {
        kept.baseTitle = text_from(in);
        kept.displayTitle = text_from(in);
        kept.derived = in.u32();
    }
    if (in.remaining() > 0) kept.sourcePrint = in.u32();
    if (in.failed() || in.remaining() > 0 || !is_of_copy(kept)) return std::nullopt;
    return kept;
}

std::set<std::string> files_of(const kept_document& kept)
{
    std::set<std::string> names;
    for (const kept_image& image : kept.images)
        for (const std::string& name : {image.file, image.overlayFile, image.drawingsFile})
            if (!name.empty()) names.insert(name);
    return names;
}

std::optional<kept_document> read_manifest(const std::filesystem::path& folder)
{
    std::ifstream in(folder / manifestName, std::ios::binary);
    if (!in) return std::nullopt;
    const std::string content((std::istreambuf_iterator<char>(in)), {});
    return decode(std::as_bytes(std::span(content)));
}

} // namespace vldv::recovery
