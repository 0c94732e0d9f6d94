#include "formats/single/hdf.h"

#include "base/text.h"
#include "formats/shared/file_start.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"
#include "formats/single/hdf_directory.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace vldv::formats {

namespace {

constexpr std::uint16_t headerTag = 0x8009, spectroscopyTag = 0x800A, samplesTag = 702, compressedTag = 40,
                        versionTag = 0x8001, labelsTag = 704, unitsTag = 705, fileNameTag = 100;
constexpr std::uint64_t leastHeader = 130, largestHeader = 1u << 20;

/// What the header block says.
struct proscan_header {
    std::string title;
    unsigned columns = 0, rows = 0;
    VLAxis x, y;
    value_scale scale;
    std::map<std::string, std::string> strings;
};

void add_string(proscan_header& header, const char* key, const std::string& value)
{
    if (!value.empty()) header.strings[key] = value;
}

void add_number(proscan_header& header, const char* key, double value, const std::string& units)
{
    if (!std::isfinite(value)) return;
    header.strings[key] = base::general(value) + (units.empty() ? "" : " " + units);
}

/// The bytes are little-endian, unlike the directory.
proscan_header parse_header(std::span<const std::byte> bytes)
{
    proscan_header header;
    base::byte_reader in(bytes);
    in.seek(4);
    header.title = fixed_text(in, 32);
    add_string(header, "Instrument", fixed_text(in, 8));
    header.strings["X scan direction"] = std::to_string(in.u16()); // flags of no known meaning
    header.strings["Y scan direction"] = std::to_string(in.u16());
    in.seek(50);
    header.columns = in.u16();
    header.rows = in.u16();
    in.seek(66);
    const double width = in.f32(), height = in.f32(), left = in.f32(), bottom = in.f32();
    header.x = stated_side(left, width, header.columns, "\u00B5m");
    header.y = stated_side(bottom, height, header.rows, "\u00B5m");
    add_number(header, "Rotation", in.f32(), "\u00B0");
    in.seek(90);
    add_number(header, "\\Scan rate", in.f32(), "Hz");
    const double setPoint = in.f32();
    add_number(header, "Set point", setPoint, normal_unit(fixed_text(in, 8)));
    add_number(header, "Sample bias", in.f32(), "V");
    add_number(header, "Tip bias", in.f32(), "V");
    const double gain = in.f32();
    const std::string units = normal_unit(fixed_text(in, 8));
    header.scale = {gain, 0.0, units, "z gain"};
    if (bytes.size() > 138) add_string(header, "Comment", header_text(as_text(bytes.subspan(138))));
    return header;
}

base::read_result<proscan_header> read_header(source& file, const hdf_directory& directory)
{
    const hdf_element* element = directory.find(headerTag);
    if (!element) return base::read_error{0, "an HDF 4 file of another program than ProScan"};
    const auto bytes = read_hdf_element(file, *element, largestHeader);
    if (!bytes) return base::read_error{bytes.error().offset, "ProScan header " + bytes.error().reason};
    if (bytes->size() < leastHeader)
        return base::read_error{element->offset, "ProScan header is shorter than 130 bytes"};
    proscan_header header = parse_header(*bytes);
    if (header.columns == 0 || header.rows == 0) return base::read_error{element->offset + 50, "columns or rows are 0"};
    return header;
}

base::read_result<hdf_element> find_samples(source& file, const hdf_directory& directory, const proscan_header& header)
{
    if (directory.find(compressedTag)) return base::read_error{0, "compressed HDF data is not supported"};
    const hdf_element* samples = directory.find(samplesTag);
    if (!samples)
        return base::read_error{0, directory.find(spectroscopyTag)
                                       ? "holds spectroscopy, the layout of which is not public"
                                       : "holds no image"};
    const std::uint64_t count = std::uint64_t{header.columns} * header.rows;
    if (count > samples->length / 2)
        return base::read_error{samples->offset, "columns times rows exceed the image data"};
    if (!holds_numbers(file.size(), samples->offset, count, 2))
        return base::read_error{samples->offset, "image data reach beyond the end of the file, which is cut short"};
    return *samples;
}

/// The bytes of a short element that is not needed to show the image; none when it is missing or cannot be read.
std::vector<std::byte> short_element(source& file, const hdf_directory& directory, std::uint16_t tag)
{
    const hdf_element* element = directory.find(tag);
    if (!element) return {};
    auto bytes = read_hdf_element(file, *element, 1024);
    return bytes ? std::move(*bytes) : std::vector<std::byte>();
}

/// The zero-ended texts of a record: of the samples, of x and of y.
std::vector<std::string> texts_of(std::span<const std::byte> bytes)
{
    std::vector<std::string> texts;
    for (std::string_view left = as_text(bytes); !left.empty() && texts.size() < 3;) {
        texts.push_back(header_text(left));
        left.remove_prefix(std::min(left.size(), left.find('\0')));
        if (!left.empty()) left.remove_prefix(1);
    }
    return texts;
}

/// A text, or bytes as hexadecimal numbers: the version is written as either.
std::string text_or_bytes(std::span<const std::byte> bytes)
{
    const std::string_view text = as_text(bytes);
    const auto isPlain = [](char c) { return c >= ' ' && c <= '~'; };
    if (!text.empty() && std::ranges::all_of(text.substr(0, text.find('\0')), isPlain) && isPlain(text.front()))
        return header_text(text);
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hexadecimal;
    for (const std::byte each : bytes.first(std::min<std::size_t>(bytes.size(), 16))) {
        if (!hexadecimal.empty()) hexadecimal += ' ';
        hexadecimal += digits[std::to_integer<unsigned>(each) >> 4];
        hexadecimal += digits[std::to_integer<unsigned>(each) & 15u];
    }
    return hexadecimal;
}

std::string listed(const std::vector<std::string>& texts)
{
    std::string list;
    for (const std::string& text : texts) list += (&text == texts.data() ? "" : ", ") + text;
    return list;
}

/// What other elements than the header say about the image.
void read_descriptions(source& file, const hdf_directory& directory, proscan_header& header)
{
    const auto labels = texts_of(short_element(file, directory, labelsTag));
    if (header.title.empty() && !labels.empty()) header.title = labels.front();
    if (header.title.empty()) header.title = "Image";
    add_string(header, "Labels", listed(labels));
    add_string(header, "Units", listed(texts_of(short_element(file, directory, unitsTag))));
    add_string(header, "ProScan version", text_or_bytes(short_element(file, directory, versionTag)));
    add_string(header, "Original file", header_text(as_text(short_element(file, directory, fileNameTag))));
}

} // namespace

bool sniff_hdf(std::span<const std::byte> head) { return is_hdf4(head) || is_hdf5(head); }

base::read_result<recording> read_hdf(source& file)
{
    const std::string start = read_start(file, 8);
    const auto head = std::as_bytes(std::span(start));
    if (is_hdf5(head))
        return base::read_error{0, "an HDF 5 file; only HDF 4 files of the ProScan program can be opened"};
    if (!is_hdf4(head)) return base::read_error{0, "not an HDF file"};
    const auto directory = read_hdf_directory(file);
    if (!directory) return directory.error();
    auto header = read_header(file, *directory);
    if (!header) return header.error();
    const auto samples = find_samples(file, *directory, *header);
    if (!samples) return samples.error();

    read_descriptions(file, *directory, *header);
    std::vector<std::string> ids;
    const extent plane[] = {{header->columns, header->x}, {header->rows, header->y}};
    recorded_image image = make_samples(unique_id(header->title, ids), header->title, plane, 1, header->scale);
    const auto bytes = std::as_writable_bytes(elements_of<std::int16_t>(image));
    if (!file.read(samples->offset, bytes)) return base::read_error{samples->offset, "image data cannot be read"};
    to_native(bytes, 2, byte_order::little);
    if (std::string surplus = told_surplus("columns times rows", bytes.size(), samples->length); !surplus.empty())
        image.notes.push_back(std::move(surplus));
    name_axis_fields(image, {{"the width in the header", "the left side in the header"},
                             {"the height in the header", "the lower side in the header"}});
    image.strings.merge(std::map(header->strings));
    recording result;
    result.items.emplace_back(std::move(image));
    return result;
}

} // namespace vldv::formats
