#include "base/text.h"
#include "document/formats/curve_group.h"
#include "document/formats/header_text.h"
#include "document/formats/mdt_frame.h"
#include "document/formats/sample_numbers.h"
#include "document/formats/stream_shape.h"

#include <cmath>

// Frames of described arrays: calibrated dimensions, and one or more calibrated values a cell.

namespace formats {

namespace {

constexpr std::uint64_t maxHeaderBytes = 16u << 20;

/// Meaning of a dimension's index or of a measured value.
struct calibration {
    std::string name, units;
    double bias = 0.0, scale = 1.0;
    std::uint64_t count = 0; ///< indices of a dimension; 0 when the range is open
    int type = 0;            ///< of a measured value

    VLAxis axis() const { return {bias, scale, units.c_str()}; }
    value_scale meaning() const { return {scale, bias, units, "calibration " + name}; }
};

/// The element type of a code, or void.
SPMVarArrayType element_type(int code) noexcept
{
    switch (code) {
    case -1:
        return SPM_ARRAY_INT8;
    case 1:
        return SPM_ARRAY_UINT8;
    case -2:
        return SPM_ARRAY_INT16;
    case 2:
        return SPM_ARRAY_UINT16;
    case -4:
        return SPM_ARRAY_INT32;
    case 4:
        return SPM_ARRAY_UINT32;
    case -8:
        return SPM_ARRAY_INT64;
    case 8:
        return SPM_ARRAY_UINT64;
    case -5892:
        return SPM_ARRAY_FLOAT32;
    case -13320:
        return SPM_ARRAY_FLOAT64;
    default:
        return SPM_ARRAY_VOID;
    }
}

/// Units of an SI code, for files whose unit text is empty.
const char* si_units(std::uint64_t code) noexcept
{
    switch (code) {
    case 0x101:
        return "m";
    case 0x100001:
        return "A";
    case 0xfffd010200:
        return "V";
    case 0x1000001:
        return "s";
    default:
        return "";
    }
}

std::string take_text(base::byte_reader& in, std::uint64_t length)
{
    const auto bytes = in.take(static_cast<std::size_t>(std::min<std::uint64_t>(length, in.remaining() + 1)));
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Reads a record and moves behind it. \return false when it does not lie in the frame
bool read_calibration(base::byte_reader& in, calibration& out)
{
    const std::size_t start = in.offset();
    const std::uint32_t total = in.u32(), structure = in.u32();
    if (in.failed() || total < 8 || total > in.remaining() + 8) return false;
    const std::size_t texts = in.offset() + structure;
    const std::uint32_t nameBytes = in.u32(), commentBytes = in.u32(), unitBytes = in.u32();
    const std::uint64_t siCode = in.u64();
    in.skip(8 + 8);
    out.bias = in.f64();
    out.scale = in.f64();
    const std::uint64_t first = in.u64(), last = in.u64();
    out.type = in.i32();
    if (last >= first && last - first < 0xFFFFFFFFu) out.count = last - first + 1;
    if (structure > total - 8) return false;
    in.seek(texts);
    out.name = clean_text(cp1251_to_utf8(take_text(in, nameBytes)));
    in.skip(commentBytes);
    out.units = clean_text(cp1251_to_utf8(take_text(in, unitBytes)));
    if (in.failed()) return false;
    if (out.units.empty()) out.units = si_units(siCode);
    if (out.units.starts_with('u') && out.units.size() > 1) out.units = "\u00B5" + out.units.substr(1);
    if (!std::isfinite(out.bias)) out.bias = 0.0;
    if (!std::isfinite(out.scale) || out.scale == 0.0) out.scale = 1.0;
    in.seek(start + total);
    return !in.failed();
}

struct array_header {
    std::string title;
    std::map<std::string, std::string> strings;
    std::vector<calibration> dimensions, measured;
    std::uint64_t cells = 0, offset = 0; ///< offset of the first cell in the file

    std::uint64_t cell_bytes() const
    {
        std::uint64_t bytes = 0;
        for (const calibration& value : measured) bytes += element_size(element_type(value.type));
        return bytes;
    }
};

base::read_result<array_header> read_header(source& file, const mdt_frame& frame)
{
    const auto bytes = read_frame_bytes(file, frame, 0, maxHeaderBytes);
    const auto refuse = [&](const char* reason) { return base::read_error{frame.offset, reason}; };
    base::byte_reader in(bytes);
    array_header header;
    in.skip(frame.headerBytes);
    const std::uint32_t headBytes = in.u32();
    in.skip(4 + 32 + 4);
    const std::uint32_t nameBytes = in.u32(), commentBytes = in.u32();
    const std::uint64_t others = std::uint64_t{in.u32()} + in.u32() + in.u32(); // view, spec, source
    in.seek(frame.headerBytes + std::size_t{headBytes});
    if (in.failed()) return refuse("the header of the frame is cut short");
    header.title = clean_text(cp1251_to_utf8(take_text(in, nameBytes)));
    add_xml_strings(base::utf16_to_utf8(take_text(in, commentBytes), false), header.strings);
    header.strings["\\Date"] = frame.date;
    in.skip(others);
    in.skip(4);
    const std::uint32_t structure = in.u32();
    const std::size_t start = in.offset();
    header.cells = in.u64();
    in.skip(4);
    const std::uint32_t dimensions = in.u32(), measured = in.u32();
    if (in.failed()) return refuse("the description of the array lies outside the frame");
    if (dimensions > 16 || measured > 16) return refuse("more than 16 dimensions or measured values");
    in.seek(start + structure);
    for (std::uint32_t i = 0; i < dimensions + measured; ++i) {
        calibration each;
        if (!read_calibration(in, each)) return refuse("a calibration record lies outside the frame");
        (i < dimensions ? header.dimensions : header.measured).push_back(std::move(each));
    }
    header.offset = frame.offset + in.offset();
    return header;
}

/// The only ones that follow from the description alone.
bool is_known_shape(std::size_t dimensions, std::size_t measured) noexcept
{
    return (dimensions == 2 && measured == 1) || (dimensions == 1 && measured == 1) ||
           (dimensions == 0 && measured == 2);
}

mdt_plane plane_of(const array_header& header)
{
    const calibration &x = header.dimensions[0], &y = header.dimensions[1], &value = header.measured[0];
    mdt_plane result;
    const directed_name name = split_mdt_direction(header.title.empty() ? value.name : header.title);
    result.plane.channel = name.channel;
    result.plane.direction = name.direction;
    result.plane.frame = {static_cast<unsigned>(x.count), static_cast<unsigned>(y.count), 1, x.axis(), y.axis()};
    result.plane.scale = value.meaning();
    result.offset = header.offset;
    result.type = element_type(value.type);
    result.strings = header.strings;
    return result;
}

/// Cells of pairs: the second value is drawn over the first, which becomes its parameter stream.
base::read_result<mdt_content> read_pairs(source& file, const array_header& header)
{
    const calibration &x = header.measured[0], &y = header.measured[1];
    const std::uint64_t count = x.count ? x.count : header.cells;
    const std::uint64_t cellBytes = header.cell_bytes();
    std::vector<std::byte> cells(static_cast<std::size_t>(count * cellBytes));
    if (!file.read(header.offset, cells)) return base::read_error{header.offset, "samples cannot be read"};
    named_curve xs{"", std::vector<double>(static_cast<std::size_t>(count))}, ys = xs;
    const unsigned xBytes = element_size(element_type(x.type)), yBytes = element_size(element_type(y.type));
    for (std::size_t i = 0; i < count; ++i) {
        const auto cell = std::span(cells).subspan(i * static_cast<std::size_t>(cellBytes));
        decode_numbers(cell.first(xBytes), element_type(x.type), byte_order::little,
                       std::span(xs.values).subspan(i, 1));
        decode_numbers(cell.subspan(xBytes, yBytes), element_type(y.type), byte_order::little,
                       std::span(ys.values).subspan(i, 1));
    }
    const std::string label = header.title.empty() ? "Curve" : header.title;
    const VLAxis index;
    mdt_content content;
    recorded_image abscissa =
        make_curve_group(label + "_x", x.name.empty() ? label + " x" : x.name, index, x.meaning(), std::span(&xs, 1));
    recorded_image ordinate = make_curve_group(label, label, index, y.meaning(), std::span(&ys, 1));
    ordinate.stream.set_parameter_stream(abscissa.stream.get_name());
    ordinate.strings.insert(header.strings.begin(), header.strings.end());
    content.emplace_back(std::move(abscissa));
    content.emplace_back(std::move(ordinate));
    return content;
}

base::read_result<mdt_content> read_curve(source& file, const array_header& header)
{
    named_curve curve;
    if (!read_numbers(file, header.offset, header.dimensions[0].count, element_type(header.measured[0].type),
                      byte_order::little, curve.values))
        return base::read_error{header.offset, "samples cannot be read"};
    const std::string label = header.title.empty() ? "Curve" : header.title;
    recorded_image image =
        make_curve_group(label, label, header.dimensions[0].axis(), header.measured[0].meaning(), std::span(&curve, 1));
    image.strings.insert(header.strings.begin(), header.strings.end());
    mdt_content content;
    content.emplace_back(std::move(image));
    return content;
}

} // namespace

base::read_result<mdt_content> read_mdt_array(source& file, const mdt_frame& frame)
{
    const auto read = read_header(file, frame);
    if (!read) return read.error();
    const array_header& header = *read;
    const auto refuse = [&](const std::string& reason) { return base::read_error{frame.offset, reason}; };
    const std::size_t dimensions = header.dimensions.size(), measured = header.measured.size();
    if (!is_known_shape(dimensions, measured))
        return refuse(
            base::formatted("arrays of %zu dimensions with %zu values a cell have no view", dimensions, measured));
    for (const calibration& value : header.measured)
        if (element_type(value.type) == SPM_ARRAY_VOID)
            return refuse("data type " + std::to_string(value.type) + " is not known");
    std::uint64_t count = 1;
    for (const calibration& dimension : header.dimensions) {
        if (dimensions == 2 && !is_image_side(dimension.count))
            return refuse("a side of the image is 0 or above 65536");
        count *= dimension.count; // two of at most 65536, or one below 2^32
    }
    if (dimensions == 0) count = header.measured[0].count ? header.measured[0].count : header.cells;
    if (count == 0) return refuse("the array holds no samples");
    if (!holds_numbers(frame.offset + frame.size, header.offset, count, header.cell_bytes()))
        return refuse("the index ranges ask for more samples than the frame holds");
    if (dimensions == 0) return read_pairs(file, header);
    if (dimensions == 1) return read_curve(file, header);
    mdt_content content;
    content.emplace_back(plane_of(header));
    return content;
}

} // namespace formats
