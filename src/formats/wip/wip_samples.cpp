#include "formats/wip/wip_samples.h"

#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

/// Numbers of a picture or graph as the file holds them.
struct stored_numbers {
    SPMVarArrayType type = SPM_ARRAY_VOID;
    std::uint64_t offset = 0, count = 0;
    unsigned bytes = 0; ///< of a number; extended ones become doubles
};

constexpr unsigned extendedBytes = 10;

stored_numbers numbers_of_type(double dataType) noexcept
{
    constexpr SPMVarArrayType types[] = {SPM_ARRAY_INT64,   SPM_ARRAY_INT32,   SPM_ARRAY_INT16,  SPM_ARRAY_INT8,
                                         SPM_ARRAY_UINT32,  SPM_ARRAY_UINT16,  SPM_ARRAY_UINT8,  SPM_ARRAY_UINT8,
                                         SPM_ARRAY_FLOAT32, SPM_ARRAY_FLOAT64, SPM_ARRAY_FLOAT64};
    constexpr double extended = 11.0;
    if (!(dataType >= 1.0 && dataType <= extended)) return {};
    const SPMVarArrayType type = types[static_cast<std::size_t>(dataType) - 1];
    return {type, 0, 0, dataType == extended ? extendedBytes : element_size(type)};
}

/// 64 bits of mantissa without a hidden one, then sign and exponent.
double decode_extended(base::byte_reader& in)
{
    const auto mantissa = static_cast<double>(in.u64());
    const unsigned power = in.u16();
    const double value = (power & 0x7FFFu) == 0x7FFFu
                             ? std::nan("")
                             : std::ldexp(mantissa, static_cast<int>(power & 0x7FFFu) - 16383 - 63);
    return power & 0x8000u ? -value : value;
}

bool read_extended(source& file, const stored_numbers& numbers, std::span<double> out)
{
    constexpr std::size_t atOnce = 65536;
    std::vector<std::byte> block(std::min(atOnce, out.size()) * extendedBytes);
    for (std::uint64_t offset = numbers.offset; !out.empty();) {
        const std::size_t count = std::min(atOnce, out.size());
        const auto part = std::span(block).first(count * extendedBytes);
        if (!file.read(offset, part)) return false;
        base::byte_reader in(part);
        for (double& value : out.first(count)) value = decode_extended(in);
        offset += part.size();
        out = out.subspan(count);
    }
    return true;
}

/// Finds the numbers in "ImageData" or "GraphData".
base::read_result<stored_numbers> find_numbers(source& file, const wip_object& object, const char* name,
                                               std::uint64_t expected)
{
    const wip_tag* tag = object.content->find(name);
    const wip_tag* data = tag ? tag->find("Data") : nullptr;
    if (!data) return base::read_error{0, std::string(name) + " is missing"};
    stored_numbers numbers = numbers_of_type(read_wip_number(file, tag->find("DataType")).value_or(0.0));
    if (numbers.bytes == 0) return base::read_error{0, "DataType is not known"};
    numbers.offset = data->start;
    numbers.count = data->length() / numbers.bytes;
    if (numbers.count != expected || data->length() % numbers.bytes != 0)
        return base::read_error{0, "the size of Data is not that of its points"};
    return numbers;
}

/// A side or a number of values; 0 for what is none.
unsigned count_of(const wip_project& project, const wip_object& object, const char* tag, double most = 65536.0)
{
    const double number = project.number(object, tag, 0.0);
    return number >= 1.0 && number <= most ? static_cast<unsigned>(number) : 0;
}

std::string label_of(const wip_object& object) { return object.caption.empty() ? "Image" : object.caption; }

value_scale scale_of(const wip_project& project, const wip_object& object)
{
    const std::string units = project.valueUnits(object);
    return {1.0, 0.0, units, units.empty() ? "" : "UnitName of the interpretation"};
}

bool read_into(source& file, const stored_numbers& numbers, recorded_image& image)
{
    if (numbers.bytes == extendedBytes) return read_extended(file, numbers, elements_of<double>(image));
    const std::span out(static_cast<std::byte*>(image.stream.array_data()),
                        static_cast<std::size_t>(numbers.count) * numbers.bytes);
    if (!file.read(numbers.offset, out)) return false;
    to_native(out, numbers.bytes, byte_order::little);
    return true;
}

/// Order of the points in a file.
struct point_order {
    unsigned columns, rows;
    bool isColumnwise, isMirroredX, isMirroredY;

    /// Where the point at `column` of `row`, the bottom one being 0, stands.
    std::size_t stored(unsigned column, unsigned row) const noexcept
    {
        const std::size_t x = isMirroredX ? columns - 1 - column : column, y = isMirroredY ? rows - 1 - row : row;
        return isColumnwise ? x * rows + y : y * columns + x;
    }
};

/// Brings points of `pointBytes` each from the file's order into rows from the bottom up.
void arrange(const point_order& order, std::size_t pointBytes, std::span<std::byte> points)
{
    if (!order.isColumnwise && !order.isMirroredX && !order.isMirroredY) return;
    const std::vector<std::byte> stored(points.begin(), points.end());
    auto* out = points.data();
    for (unsigned row = 0; row < order.rows; ++row)
        for (unsigned column = 0; column < order.columns; ++column, out += pointBytes)
            std::copy_n(stored.data() + order.stored(column, row) * pointBytes, pointBytes, out);
}

std::span<std::byte> bytes_of(recorded_image& image)
{
    return {static_cast<std::byte*>(image.stream.array_data()),
            std::size_t{image.stream.array_length()} * image.stream.array_element_size()};
}

base::read_result<std::vector<recorded_image>> read_picture(source& file, const wip_project& project,
                                                            const wip_object& object, std::vector<std::string>& ids)
{
    const unsigned columns = count_of(project, object, "SizeX"), rows = count_of(project, object, "SizeY");
    if (columns == 0 || rows == 0) return base::read_error{0, "SizeX or SizeY is 0 or above 65536"};
    const wip_tag* data = object.content->find("ImageData");
    const auto ranges = read_wip_numbers(file, data ? data->find("Ranges") : nullptr);
    if (ranges.size() != 2 || ranges[0] != columns || ranges[1] != rows)
        return base::read_error{0, "Ranges are not SizeX and SizeY"};
    const auto numbers = find_numbers(file, object, "ImageData", std::uint64_t{columns} * rows);
    if (!numbers) return numbers.error();
    const wip_plane plane = project.plane(object, "PositionTransformationID", columns, rows);
    const extent extents[] = {{columns, plane.x}, {rows, plane.y}};
    recorded_image image = make_samples(unique_id(label_of(object), ids), label_of(object), extents, 1,
                                        scale_of(project, object), numbers->type);
    if (!read_into(file, *numbers, image)) return base::read_error{numbers->offset, "samples cannot be read"};
    const bool isColumnwise = project.number(object, "Version", 0.0) == 0.0;
    arrange({columns, rows, isColumnwise, plane.isMirroredX, plane.isMirroredY}, element_size(numbers->type),
            bytes_of(image));
    settle_samples(image);
    std::vector<recorded_image> images;
    images.push_back(std::move(image));
    return images;
}

/// Spectra of lines that were not measured, before they are put in order.
std::vector<bool> valid_lines(source& file, const wip_object& object, unsigned rows)
{
    const auto flags = read_wip_numbers(file, object.content->find("LineValid"));
    std::vector<bool> valid(rows, true);
    for (std::size_t i = 0; i < std::min<std::size_t>(rows, flags.size()); ++i) valid[i] = flags[i] != 0.0;
    return valid;
}

std::vector<void_range> unmeasured_spectra(const std::vector<bool>& valid, const point_order& order, unsigned values)
{
    std::vector<void_range> voids;
    const std::uint64_t line = std::uint64_t{order.columns} * values;
    for (unsigned row = 0; row < order.rows; ++row)
        if (!valid[order.isMirroredY ? order.rows - 1 - row : row]) voids.push_back({row * line, line});
    return voids;
}

base::read_result<std::vector<recorded_image>> read_graph(source& file, const wip_project& project,
                                                          const wip_object& object, std::vector<std::string>& ids)
{
    const unsigned columns = count_of(project, object, "SizeX"), rows = count_of(project, object, "SizeY"),
                   values = count_of(project, object, "SizeGraph", 16777216.0);
    if (columns == 0 || rows == 0 || values == 0)
        return base::read_error{0, "SizeX, SizeY or SizeGraph is 0 or too large"};
    const std::uint64_t points = std::uint64_t{columns} * rows;
    const auto numbers = find_numbers(file, object, "GraphData", points * values);
    if (!numbers) return numbers.error();
    const wip_spectrum_axis axis = project.spectrumAxis(object, values);
    const wip_plane plane = project.plane(object, "SpaceTransformationID", columns, rows);
    const extent extents[] = {{values, axis.axis}, {columns, plane.x}, {rows, plane.y}};
    const bool isSingle = points == 1;
    recorded_image image =
        make_samples(unique_id(label_of(object), ids), label_of(object), std::span(extents).first(isSingle ? 1 : 3), 1,
                     scale_of(project, object), numbers->type);
    if (!read_into(file, *numbers, image)) return base::read_error{numbers->offset, "samples cannot be read"};
    std::vector<void_range> voids;
    if (!isSingle) {
        const point_order order{columns, rows, false, plane.isMirroredX, plane.isMirroredY};
        arrange(order, std::size_t{values} * element_size(numbers->type), bytes_of(image));
        voids = unmeasured_spectra(valid_lines(file, object, rows), order, values);
    }
    settle_samples(image, voids);
    std::vector<recorded_image> images;
    if (!axis.places.empty()) {
        const std::string label = label_of(object) + " axis", id = unique_id(label, ids);
        images.push_back(make_curve_from_values(id, label, values, VLAxis(),
                                                {1.0, 0.0, axis.units, "spectral transformation"}, axis.places));
        if (isSingle)
            image.stream.set_parameter_stream(id.c_str());
        else
            image.strings["Spectral axis"] = label;
    }
    images.push_back(std::move(image));
    return images;
}

} // namespace

bool is_wip_data(const wip_object& object) noexcept
{
    return object.className == "TDImage" || object.className == "TDGraph";
}

base::read_result<std::vector<recorded_image>> read_wip_object(source& file, const wip_project& project,
                                                               const wip_object& object, std::vector<std::string>& ids)
{
    if (!object.content) return base::read_error{0, "the tag " + object.className + " is missing"};
    return object.className == "TDImage" ? read_picture(file, project, object, ids)
                                         : read_graph(file, project, object, ids);
}

} // namespace vldv::formats
