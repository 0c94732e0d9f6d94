#include "base/text.h"
#include "formats/mdt/mdt_frame.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <cmath>
#include <optional>

// Frames of scanned images: three axes, the scanner's settings, 16-bit samples.

namespace vldv::formats {

namespace {

const char* channel_name(unsigned code) noexcept
{
    switch (code) {
    case 0:
        return "Height";
    case 1:
        return "DFL";
    case 2:
        return "Lateral force";
    case 3:
        return "Bias";
    case 4:
        return "Current";
    case 6:
        return "Magnitude";
    case 11:
    case 12:
    case 13:
        return "Phase";
    default:
        return "Image";
    }
}

/// Settings behind the axes; files of other programs may lack the last ones. Numbers that are lacking are 0.
struct scan_settings {
    std::optional<unsigned> channel, direction;
    double velocity = 0.0, setPoint = 0.0, bias = 0.0;
};

/// A field that ends before it is complete is lacking.
std::optional<unsigned> read_byte(base::byte_reader& in)
{
    const unsigned byte = in.u8();
    return in.failed() ? std::nullopt : std::optional(byte);
}

scan_settings read_settings(base::byte_reader& in)
{
    scan_settings settings;
    settings.channel = read_byte(in);
    in.skip(1 + 2 + 2 + 2 + 4 + 2 + 4); // mode, columns, rows, averaging, step length, and unknown ones
    settings.direction = read_byte(in);
    in.skip(1);
    settings.velocity = in.f32();
    settings.setPoint = in.f32();
    settings.bias = in.f32();
    return settings;
}

void add_settings(const scan_settings& settings, std::map<std::string, std::string>& strings)
{
    const auto add = [&](const char* key, double value, const char* units) {
        if (value != 0.0 && std::isfinite(value)) strings[key] = base::shortest(value) + " " + units;
    };
    add("\\Speed", settings.velocity * 1e-4, "\u00B5m/s"); // from Angstrom
    add("Set point", settings.setPoint, "nA");
    add("Bias", settings.bias, "V");
    if (settings.direction)
        strings["\\Scan direction"] = std::string((*settings.direction & 2u) ? "Left" : "Right") +
                                      ((*settings.direction & 4u) ? ", from the bottom" : ", from the top");
}

VLAxis lateral(const mdt_axis& axis) { return {axis.offset, std::fabs(axis.step), axis.units.c_str()}; }

} // namespace

base::read_result<mdt_content> read_mdt_scan(source& file, const mdt_frame& frame)
{
    constexpr std::uint64_t axesBytes = 30, shapeBytes = 8, dotHeaderBytes = 14, dotBytes = 16;
    const auto bytes = read_frame_bytes(file, frame, frame.headerBytes, frame.variableBytes + shapeBytes);
    if (frame.variableBytes < axesBytes || bytes.size() != frame.variableBytes + shapeBytes)
        return base::read_error{frame.offset, "the header of the frame is cut short"};
    base::byte_reader in{std::span(bytes).first(frame.variableBytes)};
    const mdt_axis x = read_mdt_axis(in), y = read_mdt_axis(in), z = read_mdt_axis(in);
    const scan_settings settings = read_settings(in);
    base::byte_reader shape{std::span(bytes).last(shapeBytes)};
    shape.skip(2);
    const unsigned columns = shape.u16(), rows = shape.u16(), dots = shape.u16();
    if (columns == 0 || rows == 0) return base::read_error{frame.offset, "number of columns or rows is 0"};

    const std::uint64_t dotRoom = dots ? dotHeaderBytes + std::uint64_t{dots} * dotBytes : 0;
    const std::uint64_t from = frame.headerBytes + frame.variableBytes + shapeBytes + dotRoom;
    const std::uint64_t samples = std::uint64_t{columns} * rows;
    if (!holds_numbers(frame.size, from, samples, sizeof(std::int16_t)))
        return base::read_error{frame.offset + from, "columns times rows ask for more samples than the frame holds"};

    mdt_plane result;
    result.offset = frame.offset + from;
    const mdt_texts texts = read_mdt_texts(file, frame, result.offset + samples * sizeof(std::int16_t));
    result.strings = texts.strings;
    add_settings(settings, result.strings);
    name_plane(result, texts.title, settings.channel ? channel_name(*settings.channel) : "Image");
    result.notes = notes_on_steps({{"x", &x}, {"y", &y}, {"z", &z}});
    result.plane.frame = {columns, rows, 1, lateral(x), lateral(y)};
    result.plane.scale = {z.step, z.offset, z.units, "z axis of frame " + std::to_string(frame.number)};
    mdt_content content;
    content.emplace_back(std::move(result));
    return content;
}

} // namespace vldv::formats
