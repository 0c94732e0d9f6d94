#include "document/formats/hdf.h"

#include "base/text.h"
#include "document/formats/file_start.h"
#include "document/formats/fixed_text.h"
#include "document/formats/hdf_directory.h"
#include "document/formats/sample_numbers.h"
#include "document/formats/stream_shape.h"
#include "document/formats/text_units.h"

#include <cmath>

namespace formats {

namespace {

constexpr std::uint16_t headerTag = 0x8009, spectroscopyTag = 0x800A, samplesTag = 702, compressedTag = 40,
                        fileNameTag = 100;
constexpr std::uint64_t leastHeader = 130, largestHeader = 1u << 20;

/// What the header block says.
struct proscan_header {
    std::string title;
    unsigned columns = 0, rows = 0;
    VLAxis x, y;
    value_scale scale;
    std::map<std::string, std::string> strings;
};

/// The place of `points` samples over `size` micrometres; none when the size is no size.
VLAxis side_axis(double offset, double size, unsigned points)
{
    if (!(size > 0.0) || !std::isfinite(size) || points == 0) return {};
    return VLAxis(std::isfinite(offset) ? offset : 0.0, size / points, "\u00B5m");
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
    const std::string instrument = fixed_text(in, 8);
    if (!instrument.empty()) header.strings["Instrument"] = instrument;
    in.seek(50);
    header.columns = in.u16();
    header.rows = in.u16();
    in.seek(66);
    const double width = in.f32(), height = in.f32(), left = in.f32(), bottom = in.f32();
    header.x = side_axis(left, width, header.columns);
    header.y = side_axis(bottom, height, header.rows);
    add_number(header, "Rotation", in.f32(), "\u00B0");
    in.seek(90);
    add_number(header, "\\Scan rate", in.f32(), "Hz");
    const double setPoint = in.f32();
    add_number(header, "Set point", setPoint, normal_unit(fixed_text(in, 8)));
    add_number(header, "Sample bias", in.f32(), "V");
    add_number(header, "Tip bias", in.f32(), "V");
    const double gain = in.f32();
    const std::string units = normal_unit(fixed_text(in, 8));
    if (std::isfinite(gain) && gain != 0.0) header.scale = {gain, 0.0, units, "z gain"};
    if (bytes.size() > 138)
        if (const std::string comment = header_text(as_text(bytes.subspan(138))); !comment.empty())
            header.strings["Comment"] = comment;
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
    const auto header = read_header(file, *directory);
    if (!header) return header.error();
    const auto samples = find_samples(file, *directory, *header);
    if (!samples) return samples.error();

    const std::string label = header->title.empty() ? "Image" : header->title;
    std::vector<std::string> ids;
    const extent plane[] = {{header->columns, header->x}, {header->rows, header->y}};
    recorded_image image = make_samples(unique_id(label, ids), label, plane, 1, header->scale);
    const auto bytes = std::as_writable_bytes(elements_of<std::int16_t>(image));
    if (!file.read(samples->offset, bytes)) return base::read_error{samples->offset, "image data cannot be read"};
    to_native(bytes, 2, byte_order::little);
    image.strings.merge(std::map(header->strings));
    if (const hdf_element* name = directory->find(fileNameTag))
        if (const auto text = read_hdf_element(file, *name, 1024))
            image.strings["Original file"] = header_text(as_text(*text));
    recording result;
    result.items.emplace_back(std::move(image));
    return result;
}

} // namespace formats
