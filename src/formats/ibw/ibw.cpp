#include "formats/ibw/ibw.h"

#include "base/units.h"
#include "formats/ibw/ibw_channels.h"
#include "formats/ibw/ibw_header.h"
#include "formats/ibw/ibw_note.h"
#include "formats/shared/force/curve_group.h"
#include "formats/shared/force/force_order.h"
#include "formats/shared/left_out.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

VLAxis axis_of(const ibw_wave& wave, std::size_t dimension)
{
    return {wave.start[dimension], wave.step[dimension], wave.dimensionUnits[dimension].c_str()};
}

bool is_length(const std::string& units) { return units_convertable(units.c_str(), "m") > 0; }

/// Two dimensions are an image when both are lengths or equal; else they are curves.
bool is_image(const ibw_wave& wave)
{
    if (wave.dimensions.size() == 3) return true;
    return wave.dimensions.size() == 2 && ((is_length(wave.dimensionUnits[0]) && is_length(wave.dimensionUnits[1])) ||
                                           wave.dimensions[0] == wave.dimensions[1]);
}

/// The axes of images. The microscope's program leaves their start at 0 and notes where the scan lay, in metres.
void set_image_axes(const ibw_wave& wave, image_frame& frame)
{
    frame.x = axis_of(wave, 0);
    frame.y = axis_of(wave, 1);
    if (!is_mfp3d(wave) || !is_length(wave.dimensionUnits[0]) || !is_length(wave.dimensionUnits[1])) return;
    if (frame.x.start != 0.0 || frame.y.start != 0.0) return;
    const auto start = [&](const char* key, const VLAxis& axis) {
        if (!wave.note.contains(key)) return 0.0;
        return convert_size("m", axis.get_units(), ibw_note_number(wave, key).value_or(std::nan("")));
    };
    frame.x.start = start("XOffset", frame.x);
    frame.y.start = start("YOffset", frame.y);
}

std::string label_of(const ibw_wave& wave, std::size_t dimension, std::size_t item)
{
    const auto& labels = wave.labels[dimension];
    return item < labels.size() ? labels[item] : std::string();
}

void add_strings(const ibw_wave& wave, std::map<std::string, std::string>& strings)
{
    for (const auto& [key, text] : wave.note) strings.emplace(key, text);
    const auto text = [&](const char* key) {
        const auto found = wave.note.find(key);
        return found == wave.note.end() ? std::string() : found->second;
    };
    if (!text("Date").empty())
        strings.emplace("\\Date", text("Date") + (text("Time").empty() ? "" : " " + text("Time")));
    else if (wave.created != 0)
        strings.emplace("\\Date", ibw_date(wave.created));
    if (!text("ScanRate").empty()) strings.emplace("\\Scan rate", text("ScanRate"));
    if (!text("ScanDown").empty()) strings.emplace("\\Frame direction", text("ScanDown") == "1" ? "Down" : "Up");
    if (!text("SpringConstant").empty()) strings.emplace("Spring Constant", text("SpringConstant") + " N/m");
}

/// Reads the layers of a group into one image. Complex numbers give two sub-images a layer.
base::read_result<recorded_image> load_layers(source& file, const ibw_wave& wave, const channel_plane& plane,
                                              const plane_group& layers, const std::string& label,
                                              const std::string& id)
{
    const extent sides[] = {{plane.frame.width, plane.frame.x}, {plane.frame.height, plane.frame.y}};
    const unsigned parts = wave.isComplex ? 2 : 1;
    recorded_image image = make_samples(id, label, sides, static_cast<unsigned>(layers.size()) * parts, plane.scale,
                                        wave.isComplex ? SPM_ARRAY_FLOAT64 : wave.type);
    const std::uint64_t samples = std::uint64_t{plane.frame.width} * plane.frame.height * parts;
    const std::uint64_t bytes = samples * element_size(wave.type);
    const std::span all(static_cast<std::byte*>(image.stream.array_data()),
                        std::size_t{image.stream.array_length()} * element_size(image.stream.array_type()));
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const std::uint64_t at = wave.dataAt + layers[i] * bytes;
        const auto unreadable = base::read_error{at, "numbers cannot be read"};
        if (!wave.isComplex) {
            const auto out = all.subspan(static_cast<std::size_t>(i * bytes), static_cast<std::size_t>(bytes));
            if (!file.read(at, out)) return unreadable;
            continue;
        }
        std::vector<double> pairs;
        if (!read_numbers(file, at, samples, wave.type, wave.order, pairs)) return unreadable;
        const auto out = elements_of<double>(image).subspan(static_cast<std::size_t>(i * samples));
        for (std::size_t k = 0; k < pairs.size(); ++k) out[k % 2 * (pairs.size() / 2) + k / 2] = pairs[k];
    }
    name_axis_fields(image, {{"the step of dimension 1", "the start of dimension 1 or XOffset of the note"},
                             {"the step of dimension 2", "the start of dimension 2 or YOffset of the note"}});
    if (!wave.isComplex) to_native(all, element_size(wave.type), wave.order);
    settle_samples(image);
    return image;
}

/// Directions and the two parts of complex numbers are sub-images.
void name_parts(recorded_image& image, const ibw_wave& wave, const plane_group& group, scan_direction first)
{
    static const std::string parts[] = {"Real", "Imaginary"},
                             both[] = {"Forward Real", "Forward Imaginary", "Reverse Real", "Reverse Imaginary"};
    if (!wave.isComplex)
        name_directions(image, group, first);
    else if (group.size() == 1)
        name_subimages(image, parts);
    else
        name_subimages(image, both);
}

base::read_result<recording> read_images(source& file, const ibw_wave& wave)
{
    if (!is_image_side(wave.dimensions[0]) || !is_image_side(wave.dimensions[1]))
        return base::read_error{0, "a side of the image is above 65536"};
    const std::size_t count = wave.dimensions.size() > 2 ? static_cast<std::size_t>(wave.dimensions[2]) : 1;
    std::vector<channel_plane> planes;
    for (std::size_t i = 0; i < count; ++i) {
        const ibw_channel channel = split_ibw_channel(label_of(wave, 2, i));
        channel_plane plane;
        plane.channel = channel.channel.empty() ? wave.name.empty() ? "Image" : wave.name : channel.channel;
        plane.direction = channel.direction;
        plane.pass = channel.suffix;
        plane.frame.width = static_cast<unsigned>(wave.dimensions[0]);
        plane.frame.height = static_cast<unsigned>(wave.dimensions[1]);
        set_image_axes(wave, plane.frame);
        plane.scale = ibw_channel_scale(wave, channel.channel);
        planes.push_back(std::move(plane));
    }
    std::vector<std::string> ids;
    recording result;
    for (const plane_group& group : join_directions(planes)) {
        if (!file.progress(static_cast<double>(group.front()) / static_cast<double>(count)))
            return base::read_error{0, "reading was cancelled"};
        const channel_plane& plane = planes[group.front()];
        const std::string label = plane.channel + plane.pass;
        auto image = load_layers(file, wave, plane, group, label, unique_id(label, ids));
        if (!image) return image.error();
        name_parts(*image, wave, group, plane.direction);
        add_ibw_deflection(*image, wave, plane.channel, plane.scale);
        if (group.size() == 1 && plane.direction != scan_direction::unknown)
            image->strings["\\Line direction"] = plane.direction == scan_direction::forward ? "Trace" : "Retrace";
        result.items.emplace_back(std::move(*image));
    }
    add_strings(wave, result.strings);
    return result;
}

/// One column as its segments.
std::vector<named_curve> cut(const std::vector<double>& values, const std::vector<ibw_segment>& segments)
{
    std::vector<named_curve> curves;
    for (const ibw_segment& segment : segments) {
        const auto first = values.begin() + static_cast<std::ptrdiff_t>(segment.first);
        curves.push_back({segment.name, {first, first + static_cast<std::ptrdiff_t>(segment.count)}});
    }
    return curves;
}

/// Draws the columns of a force curve over the height sensor, else over the piezo.
void set_parameter_streams(recording& result)
{
    const SPMDataStream* parameter = nullptr;
    for (const char* name : {"Raw", "ZSnsr"})
        for (const auto& item : result.items)
            if (const SPMDataStream& stream = std::get<recorded_image>(item).stream;
                std::string_view(stream.get_description()) == name)
                parameter = &stream;
    if (!parameter) return;
    for (auto& item : result.items) {
        SPMDataStream& stream = std::get<recorded_image>(item).stream;
        const std::string_view name = stream.get_description();
        if (name != "Raw" && name != "ZSnsr") stream.set_parameter_stream(parameter->get_name());
    }
}

/// Segments are stored in the order of time; "Direction" of the note gave them their names.
void order_in_time(recorded_image& image, std::span<const named_curve> curves)
{
    std::vector<contact_end> ends;
    for (const named_curve& curve : curves) ends.push_back(contact_in_time(way_of_part(curve.name)));
    order_from_contact(image, ends);
}

/// Columns with names are channels, others are curves of one channel.
base::read_result<recording> read_curves(source& file, const ibw_wave& wave)
{
    constexpr std::size_t maxChannels = 256;
    const auto points = static_cast<std::size_t>(wave.dimensions[0]);
    const std::size_t columns = wave.dimensions.size() > 1 ? static_cast<std::size_t>(wave.dimensions[1]) : 1;
    const std::size_t parts = wave.isComplex ? 2 : 1;
    std::vector<double> all;
    if (!read_numbers(file, wave.dataAt, wave.points * parts, wave.type, wave.order, all))
        return base::read_error{wave.dataAt, "numbers cannot be read"};
    const auto column = [&](std::size_t number, std::size_t part) {
        std::vector<double> values(points);
        for (std::size_t i = 0; i < points; ++i) values[i] = all[(number * points + i) * parts + part];
        return values;
    };
    std::vector<std::string> ids;
    recording result;
    const auto add = [&](const std::string& label, const std::vector<named_curve>& curves) {
        const value_scale scale = ibw_channel_scale(wave, label);
        recorded_image image = make_curve_group(unique_id(label, ids), label, axis_of(wave, 0), scale, curves);
        name_axis_fields(image, {{"the step of dimension 1", "the start of dimension 1"}});
        add_ibw_deflection(image, wave, label, scale);
        order_in_time(image, curves);
        note_deflection_sign(image);
        result.items.emplace_back(std::move(image));
    };
    const std::string waveLabel = wave.name.empty() ? "Curve" : wave.name;
    const bool areChannels = !wave.isComplex && !label_of(wave, 1, 0).empty() && columns <= maxChannels;
    if (areChannels) {
        const auto segments = ibw_segments(wave, points);
        for (std::size_t i = 0; i < columns; ++i) {
            const std::string label = label_of(wave, 1, i);
            add(label.empty() ? waveLabel : label, cut(column(i, 0), segments));
        }
        set_parameter_streams(result);
    } else {
        std::vector<named_curve> curves;
        for (std::size_t i = 0; i < columns; ++i)
            for (std::size_t part = 0; part < parts; ++part) {
                const std::string name = columns > 1 ? "Curve " + std::to_string(i + 1) : "";
                const char* partName = wave.isComplex ? part ? "Imaginary" : "Real" : "";
                curves.push_back({name + (name.empty() || !wave.isComplex ? "" : ", ") + partName, column(i, part)});
            }
        add(waveLabel, curves);
    }
    add_strings(wave, result.strings);
    return result;
}

} // namespace

bool sniff_ibw(std::span<const std::byte> head)
{
    byte_order order;
    unsigned version = 0;
    return is_ibw_header(head, order, version);
}

bool possible_ibw(std::span<const std::byte> head)
{
    base::byte_reader little(head), big(head);
    const unsigned first = little.u16(), other = big.big<std::uint16_t>();
    for (const unsigned version : {1u, 2u, 3u, 5u, 7u})
        if (first == version || other == version) return true;
    return false;
}

base::read_result<recording> read_ibw(source& file)
{
    const auto wave = read_ibw_wave(file);
    if (!wave) return wave.error();
    if (wave->isText) return base::read_error{0, "the wave holds texts, there is nothing to show"};
    if (wave->points == 0) return base::read_error{0, "the wave holds no points, there is nothing to show"};
    if (wave->dimensions.size() > 3) return base::read_error{0, "waves of four dimensions cannot be shown"};
    auto result = is_image(*wave) ? read_images(file, *wave) : read_curves(file, *wave);
    if (result)
        for (const std::string& note : wave->notes) add_warning(*result, note);
    return result;
}

} // namespace vldv::formats
