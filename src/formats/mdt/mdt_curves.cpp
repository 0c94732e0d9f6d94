#include "formats/mdt/mdt_frame.h"
#include "formats/shared/force/curve_group.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include "base/text.h"

// Frames of curves in the old manner: one curve, or a forward and a backward one at each of several points.

namespace vldv::formats {

namespace {

constexpr std::uint64_t axesBytes = 30, shapeBytes = 8;

struct curve_frame {
    mdt_axis x, y;
    unsigned columns = 0, dots = 0;
    std::uint64_t offset = 0; ///< of what follows the shape
};

base::read_result<curve_frame> read_frame(source& file, const mdt_frame& frame)
{
    const auto bytes = read_frame_bytes(file, frame, frame.headerBytes, frame.variableBytes + shapeBytes);
    if (frame.variableBytes < axesBytes || bytes.size() != frame.variableBytes + shapeBytes)
        return base::read_error{frame.offset, "the header of the frame is cut short"};
    base::byte_reader in(bytes);
    curve_frame result;
    result.x = read_mdt_axis(in);
    read_mdt_axis(in);
    result.y = read_mdt_axis(in);
    base::byte_reader shape{std::span(bytes).last(shapeBytes)};
    shape.skip(2);
    result.columns = shape.u16();
    shape.skip(2);
    result.dots = shape.u16();
    result.offset = frame.offset + frame.headerBytes + frame.variableBytes + shapeBytes;
    return result;
}

/// A point of the sample at which curves were recorded.
struct curve_point {
    double x = 0.0, y = 0.0;
    const char* units = "";                  ///< of both
    std::uint32_t forward = 0, backward = 0; ///< samples
};

base::read_error too_few(std::uint64_t offset)
{
    return {offset, "the points ask for more samples than the frame holds"};
}

/// Appends a curve of 16-bit samples and moves `offset` behind it.
bool add_curve(source& file, const mdt_frame& frame, std::uint64_t& offset, std::uint64_t count, std::string name,
               std::vector<named_curve>& curves)
{
    if (!holds_numbers(frame.offset + frame.size, offset, count, sizeof(std::int16_t))) return false;
    named_curve curve{std::move(name), {}};
    if (!read_numbers(file, offset, count, SPM_ARRAY_INT16, byte_order::little, curve.values)) return false;
    offset += count * sizeof(std::int16_t);
    if (count != 0) curves.push_back(std::move(curve));
    return true;
}

base::read_result<std::vector<curve_point>> read_points(source& file, const mdt_frame& frame, curve_frame& shape)
{
    constexpr std::uint64_t headerBytes = 14, pointBytes = 16;
    const std::uint64_t end = frame.offset + frame.size;
    if (!holds_numbers(end, shape.offset, headerBytes + shape.dots * pointBytes, 1)) return too_few(shape.offset);
    const auto bytes =
        read_frame_bytes(file, frame, shape.offset - frame.offset, headerBytes + shape.dots * pointBytes);
    base::byte_reader in(bytes);
    in.skip(4 + 4 + 4); // sizes that follow from the layout, and its version
    const mdt_unit unit = mdt_unit_of(in.i16());
    std::vector<curve_point> points;
    for (unsigned i = 0; i < shape.dots; ++i) {
        curve_point point;
        point.x = in.f32() * unit.factor;
        point.y = in.f32() * unit.factor;
        point.units = unit.units;
        const std::int32_t forward = in.i32(), backward = in.i32();
        if (forward < 0 || backward < 0) return base::read_error{shape.offset, "negative number of samples"};
        point.forward = static_cast<std::uint32_t>(forward);
        point.backward = static_cast<std::uint32_t>(backward);
        points.push_back(point);
    }
    shape.offset += bytes.size();
    return points;
}

std::string describe_points(const std::vector<curve_point>& points)
{
    std::string text;
    for (const curve_point& point : points) {
        text += (text.empty() ? "" : "; ") + base::general(point.x) + " " + base::general(point.y);
        if (*point.units) text += std::string(" ") + point.units;
    }
    return text;
}

} // namespace

base::read_result<mdt_content> read_mdt_curves(source& file, const mdt_frame& frame)
{
    const auto read = read_frame(file, frame);
    if (!read) return read.error();
    curve_frame shape = *read;
    std::vector<named_curve> curves;
    std::string places;
    if (frame.type == 1) {
        shape.offset += std::uint64_t{shape.dots} * 4;
        if (!add_curve(file, frame, shape.offset, shape.columns, "", curves)) return too_few(shape.offset);
    } else {
        const auto points = read_points(file, frame, shape);
        if (!points) return points.error();
        places = describe_points(*points);
        for (std::size_t i = 0; i < points->size(); ++i) {
            const std::string name = "Point " + std::to_string(i + 1) + ", ";
            if (!add_curve(file, frame, shape.offset, (*points)[i].forward, name + "Forward", curves) ||
                !add_curve(file, frame, shape.offset, (*points)[i].backward, name + "Reverse", curves))
                return too_few(shape.offset);
        }
    }
    if (curves.empty()) return base::read_error{frame.offset, "the frame holds no samples"};
    if (!is_modest_padding(curves)) return base::read_error{frame.offset, "curves of too different lengths"};
    const mdt_texts texts = read_mdt_texts(file, frame, shape.offset);
    const std::string label = texts.title.empty() ? "Curve" : texts.title;
    const value_scale scale{shape.y.step, shape.y.offset, shape.y.units,
                            "z axis of frame " + std::to_string(frame.number)};
    mdt_content content;
    recorded_image image =
        make_curve_group(label, label, VLAxis(shape.x.offset, shape.x.step, shape.x.units.c_str()), scale, curves);
    image.strings.insert(texts.strings.begin(), texts.strings.end());
    image.notes = notes_on_steps({{"x", &shape.x}, {"z", &shape.y}});
    if (!places.empty()) image.strings["Points"] = places;
    content.emplace_back(std::move(image));
    return content;
}

} // namespace vldv::formats
