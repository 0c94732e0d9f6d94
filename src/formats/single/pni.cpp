#include "formats/single/pni.h"

#include "formats/shared/file_group.h"
#include "formats/shared/file_start.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>

using namespace vldv;

namespace vldv::formats {

namespace {

constexpr std::size_t headerBytes = 7312, shapeAt = 0x90, dataHeaderAt = 0x13CA;

/// What the two known versions of the header say.
struct pni_header {
    unsigned columns = 0, rows = 0;
    VLAxis x, y;
    value_scale scale;
    std::string label;
    const char* direction = nullptr; ///< name of the sub-image, when it is known
};

bool has_version(std::string_view head) noexcept
{
    const bool isMarked = head.starts_with(std::string_view("\0\0\0\0", 4)) || head.starts_with("\xCD\xCD\xCD\xCD");
    return isMarked && (head.substr(4).starts_with("1.0") || head.substr(4).starts_with("2.0"));
}

const char* channel_name(bool isFirstVersion, std::uint32_t channel) noexcept
{
    if (isFirstVersion) {
        switch (channel) {
        case 1:
            return "Height";
        case 2:
            return "L-R";
        case 3:
            return "Sens";
        case 6:
            return "Dem";
        case 8:
            return "Error";
        default:
            return "Image";
        }
    }
    return channel == 0 ? "Z actuator" : channel == 2 ? "Z error" : channel == 3 ? "Phase" : "Image";
}

value_scale make_scale(double step, std::uint32_t kind)
{
    return {step, 0.0, kind == 1 ? "nm" : kind == 4 ? "mV" : "", "value per LSB, value kind"};
}

pni_header parse_header(std::string_view bytes)
{
    base::byte_reader in(std::as_bytes(std::span(bytes)));
    const bool isFirstVersion = bytes.substr(4).starts_with("1.0");
    const auto u32At = [&](std::size_t offset) {
        in.seek(offset);
        return in.u32();
    };
    const auto f32At = [&](std::size_t offset) {
        in.seek(offset);
        return static_cast<double>(in.f32());
    };
    pni_header header;
    header.columns = u32At(shapeAt);
    header.rows = u32At(shapeAt + 4);
    const double width = f32At(0xA8), height = f32At(0xB0);
    header.x = stated_side(0.0, width, header.columns, "\u00B5m");
    header.y = stated_side(0.0, height, header.rows, "\u00B5m");
    header.scale = make_scale(f32At(0xBC), u32At(dataHeaderAt + (isFirstVersion ? 0x46 : 0x1B2)));
    header.label = channel_name(isFirstVersion, u32At(dataHeaderAt + (isFirstVersion ? 0x0A : 0x19E)));
    if (!isFirstVersion) return header;
    const std::uint32_t direction = u32At(dataHeaderAt + 0x0E);
    header.direction = direction == 0 ? "Forward" : direction == 1 ? "Reverse" : nullptr;
    return header;
}

} // namespace

base::read_result<recording> read_pni_group(source& file) { return read_file_group(file, pni_reader); }

bool possible_pni(std::span<const std::byte> head) { return has_version(as_text(head)); }

bool sniff_pni(std::span<const std::byte> head)
{
    if (!has_version(as_text(head))) return false;
    base::byte_reader in(head);
    in.seek(shapeAt);
    return is_image_side(in.u32()) && is_image_side(in.u32());
}

} // namespace vldv::formats

base::read_result<formats::recording> pni_reader(formats::source& file)
{
    using namespace formats;
    const std::string head = read_start(file, headerBytes);
    if (!has_version(head)) return base::read_error{0, "not a Pacific Nanotechnology header"};
    if (head.size() < headerBytes) return base::read_error{head.size(), "header cut short"};
    const pni_header header = parse_header(head);
    if (!is_image_side(header.columns) || !is_image_side(header.rows))
        return base::read_error{shapeAt, "columns or rows are 0 or above 65536"};
    const std::uint64_t expected = headerBytes + std::uint64_t{2} * header.columns * header.rows;
    if (file.size() != expected)
        return base::read_error{shapeAt, std::to_string(header.columns) + " x " + std::to_string(header.rows) +
                                             " samples make a file of " + std::to_string(expected) +
                                             " bytes, but it has " + std::to_string(file.size())};
    const extent plane[] = {{header.columns, header.x}, {header.rows, header.y}};
    std::vector<std::string> ids;
    recorded_image image = make_samples(unique_id(header.label, ids), header.label, plane, 1, header.scale);
    const auto samples = elements_of<std::int16_t>(image);
    for (unsigned row = 0; row < header.rows; ++row) { // the top row stands first
        const auto line = samples.subspan(std::size_t{header.rows - 1 - row} * header.columns, header.columns);
        if (!file.read(headerBytes + std::uint64_t{2} * row * header.columns, std::as_writable_bytes(line)))
            return base::read_error{headerBytes, "samples cannot be read"};
    }
    to_native(std::as_writable_bytes(samples), 2, byte_order::little);
    name_axis_fields(image, {{"the width at byte 0xA8", nullptr}, {"the height at byte 0xB0", nullptr}});
    if (header.direction) name_subimages(image, std::vector<std::string>{header.direction});
    recording result;
    result.items.emplace_back(std::move(image));
    return result;
}
