#include "document/formats/nanoscope_force.h"

#include "base/text.h"
#include "document/formats/curve_group.h"
#include "document/formats/nanoscope_scale.h"
#include "document/formats/nanoscope_strings.h"
#include "document/formats/sample_numbers.h"
#include "document/formats/stream_shape.h"

#include <algorithm>
#include <cstring>

namespace formats {

namespace {

constexpr std::uint64_t maxSide = 65536;

/// Whole numbers at the start of a line, at most two.
std::vector<std::uint64_t> counts(const std::string* text)
{
    std::vector<std::uint64_t> numbers;
    if (!text) return numbers;
    std::string_view left = *text;
    std::size_t used = 0;
    while (numbers.size() < 2) {
        const auto number = base::leading_number(left, &used);
        if (!number || !(*number >= 0) || *number > static_cast<double>(maxSide)) break;
        numbers.push_back(static_cast<std::uint64_t>(*number));
        left.remove_prefix(used);
    }
    return numbers;
}

/// Samples of the parts of a curve.
struct curve_shape {
    std::uint64_t approach = 0, retract = 0, hold = 0;
    std::uint64_t sum() const noexcept { return approach + retract + hold; }
};

/// What the header offers, the likeliest first: a single number stands for both ways.
std::vector<curve_shape> offered_shapes(const nanoscope_header& header, const nanoscope_section& section)
{
    auto numbers = counts(section.find("samps/line"));
    if (const nanoscope_section* force = header.section("ciao force list"); force && numbers.empty())
        numbers = counts(force->find("samps/line"));
    if (numbers.empty() || numbers[0] == 0) return {};
    const auto held = counts(header.setting("hold samples"));
    const std::uint64_t hold = held.empty() ? 0 : held[0];
    const std::uint64_t first = numbers[0], second = numbers.size() > 1 ? numbers[1] : first;
    return {{first, second, hold}, {first, second, 0}, {first, first, hold}, {first, first, 0}, {first, 0, 0}};
}

bool is_volume(const nanoscope_header& header)
{
    const std::string* mode = header.setting("operating mode");
    if (mode && base::lower_ascii(*mode).starts_with("force volume")) return true;
    for (const nanoscope_section& section : header.sections) // "Image" in a file of peak force curves
        if (const std::string* context = section.find("start context"); context && context->starts_with("FVOL"))
            return true;
    return false;
}

/// Chooses the shape, the grid and the width of a sample that make up the length of the data.
bool choose_shape(const nanoscope_header& header, nanoscope_force& channel, std::uint64_t columns, std::uint64_t rows)
{
    constexpr std::uint32_t firstWide = 0x09200000;
    const unsigned expected = header.version() >= firstWide ? 4 : 2;
    const auto take = [&](const curve_shape& shape, unsigned bytes, std::uint64_t takenRows) {
        channel.approach = static_cast<unsigned>(shape.approach);
        channel.retract = static_cast<unsigned>(shape.retract);
        channel.hold = static_cast<unsigned>(shape.hold);
        channel.sampleBytes = bytes;
        channel.columns = takenRows ? static_cast<unsigned>(columns) : 0;
        channel.rows = static_cast<unsigned>(takenRows);
        return true;
    };
    const auto shapes = offered_shapes(header, *channel.section);
    const std::uint64_t grid = columns * rows;
    for (const unsigned bytes : {expected, 6u - expected})
        for (const curve_shape& shape : shapes)
            if (grid != 0 && shape.sum() * bytes * grid == channel.length) return take(shape, bytes, rows);
    for (const unsigned bytes : {expected, 6u - expected})
        for (const curve_shape& shape : shapes)
            if (shape.sum() * bytes == channel.length) return take(shape, bytes, 0);
    for (const curve_shape& shape : shapes) { // a volume that was stopped early
        const std::uint64_t row = shape.sum() * expected * columns;
        if (row != 0 && channel.length % row == 0 && is_image_side(channel.length / row))
            return take(shape, expected, channel.length / row);
    }
    return false;
}

/// The scan's size belongs to all its lines.
void set_grid_axes(const nanoscope_header& header, nanoscope_force& channel, std::uint64_t columns, std::uint64_t rows)
{
    const std::string* size = header.setting("scan size");
    if (!size || channel.columns == 0) return;
    std::string_view left = *size;
    std::size_t used = 0;
    const auto x = base::leading_number(left, &used);
    if (!x || !(*x > 0)) return;
    left.remove_prefix(used);
    const auto y = base::leading_number(left, &used);
    if (y) left.remove_prefix(used);
    const std::string units = nanoscope_units(left);
    const double height = y && *y > 0 ? *y : *x;
    channel.x = VLAxis(0.0, *x / static_cast<double>(columns), units.c_str());
    channel.y = VLAxis(0.0, height / static_cast<double>(rows ? rows : channel.rows), units.c_str());
}

/// A part of a curve as it stands in the file.
struct curve_part {
    const char* name;
    unsigned first, count;
};

/// In the order in which they are shown.
std::vector<curve_part> parts_of(const nanoscope_force& channel)
{
    const curve_part all[] = {{"Approach", 0, channel.approach},
                              {"Hold", channel.approach + channel.retract, channel.hold},
                              {"Retract", channel.approach, channel.retract}};
    std::vector<curve_part> parts;
    std::copy_if(std::begin(all), std::end(all), std::back_inserter(parts),
                 [](const curve_part& part) { return part.count != 0; });
    return parts;
}

/// An image to be and the parts that are its sub-images.
struct part_image {
    std::vector<curve_part> parts;
    recorded_image image;
};

recorded_image make_part_image(const nanoscope_force& channel, const std::vector<curve_part>& parts, bool isOwn,
                               std::vector<std::string>& ids)
{
    const std::string label = isOwn ? channel.channel + " " + parts.front().name : channel.channel;
    VLAxis axis = channel.ramp;
    if (isOwn && std::string_view(parts.front().name) == "Hold")
        axis = VLAxis();
    else if (parts.front().count != channel.approach && parts.front().count > 1)
        axis.scale *= (channel.approach - 1.0) / (parts.front().count - 1.0);
    std::vector<extent> dimensions{{parts.front().count, axis}};
    if (channel.columns) {
        dimensions.push_back({channel.columns, channel.x});
        dimensions.push_back({channel.rows, channel.y});
    }
    recorded_image image =
        make_samples(unique_id(label, ids), label, dimensions, static_cast<unsigned>(parts.size()),
                     channel.scales.front(), channel.sampleBytes == 4 ? SPM_ARRAY_INT32 : SPM_ARRAY_INT16);
    std::vector<std::string> names;
    for (const curve_part& part : parts) names.emplace_back(part.name);
    name_subimages(image, names);
    add_section_strings(image.strings, *channel.section);
    for (std::size_t i = 1; i < channel.scales.size(); ++i)
        add_calibration(image, channel.scales.front(), channel.scales[i]);
    return image;
}

/// The approach with all parts of as many samples, then every other part by itself.
std::vector<part_image> make_part_images(const nanoscope_force& channel, std::vector<std::string>& ids)
{
    std::vector<part_image> images(1);
    for (const curve_part& part : parts_of(channel)) {
        if (part.count == channel.approach)
            images.front().parts.push_back(part);
        else
            images.push_back({{part}, {}});
    }
    for (std::size_t i = 0; i < images.size(); ++i)
        images[i].image = make_part_image(channel, images[i].parts, i != 0, ids);
    return images;
}

/// Copies curves to their sub-images. Approach and retract are stored from the contact on and shown from the free end.
template <class T>
void distribute(const nanoscope_force& channel, std::span<const T> block, std::uint64_t firstCurve,
                std::vector<part_image>& images)
{
    const std::size_t curves = block.size() / channel.samples();
    for (part_image& target : images)
        for (std::size_t s = 0; s < target.parts.size(); ++s) {
            const curve_part& part = target.parts[s];
            const bool isHold = std::string_view(part.name) == "Hold";
            auto out = elements_of<T>(target.image).subspan((s * channel.curves() + firstCurve) * part.count);
            for (std::size_t i = 0; i < curves; ++i) {
                const auto curve = block.subspan(i * channel.samples() + part.first, part.count);
                if (isHold)
                    std::copy(curve.begin(), curve.end(), out.begin() + static_cast<std::ptrdiff_t>(i * part.count));
                else
                    std::reverse_copy(curve.begin(), curve.end(),
                                      out.begin() + static_cast<std::ptrdiff_t>(i * part.count));
            }
        }
}

/// Fills the images. \return empty, or what went wrong
template <class T>
std::string load_curves(source& file, const nanoscope_force& channel, std::vector<part_image>& images)
{
    constexpr std::size_t blockBytes = 1u << 20; // in cache between reading and copying
    const std::uint64_t curveBytes = std::uint64_t{channel.samples()} * sizeof(T);
    const std::uint64_t atOnce = std::max<std::uint64_t>(1, blockBytes / curveBytes);
    std::vector<T> block(static_cast<std::size_t>(std::min(atOnce, channel.curves()) * channel.samples()));
    for (std::uint64_t curve = 0; curve < channel.curves(); curve += atOnce) {
        if (!file.progress(static_cast<double>(curve) / static_cast<double>(channel.curves())))
            return "reading was cancelled";
        const auto count = static_cast<std::size_t>(std::min(atOnce, channel.curves() - curve));
        const auto part = std::span(block).first(count * channel.samples());
        if (!file.read(channel.offset + curve * curveBytes, std::as_writable_bytes(part)))
            return "samples of " + channel.channel + " cannot be read";
        distribute<T>(channel, part, curve, images);
    }
    return {};
}

/// Rows of 16-bit samples, each behind its count.
base::read_result<recorded_image> load_rows(source& file, const nanoscope_force& channel, std::vector<std::string>& ids)
{
    std::vector<named_curve> rows;
    const auto refuse = [&](const char* reason) { return base::read_error{channel.offset, channel.channel + reason}; };
    for (std::uint64_t done = 0; channel.length - done >= 2;) {
        std::byte countBytes[2];
        if (!file.read(channel.offset + done, countBytes)) return refuse(": samples cannot be read");
        const unsigned count = base::byte_reader(countBytes).u16();
        done += sizeof countBytes;
        if (!holds_numbers(channel.length, done, count, 2)) return refuse(": the count of a row exceeds Data length");
        named_curve row{"Row " + std::to_string(rows.size() + 1), {}};
        if (!read_numbers(file, channel.offset + done, count, SPM_ARRAY_INT16, byte_order::little, row.values))
            return refuse(": samples cannot be read");
        done += std::uint64_t{count} * 2;
        if (count != 0) rows.push_back(std::move(row));
    }
    if (rows.empty()) return refuse(": no row holds samples");
    if (!is_modest_padding(rows)) return refuse(": rows of too different lengths");
    recorded_image image =
        make_curve_group(unique_id(channel.channel, ids), channel.channel, {}, channel.scales.front(), rows);
    add_section_strings(image.strings, *channel.section);
    return image;
}

bool is_height(const nanoscope_section& section)
{
    const std::string* typed = section.find_typed("image data");
    return (typed && parse_nanoscope_value(*typed).bracket == "ZSensor") ||
           nanoscope_channel(section) == "Height Sensor";
}

/// Draws single curves over the measured height.
void set_parameter_stream(std::span<std::variant<recorded_image, picture>> items, std::size_t height)
{
    const SPMDataStream& parameter = std::get<recorded_image>(items[height]).stream;
    for (std::size_t i = 0; i < items.size(); ++i) {
        SPMDataStream& stream = std::get<recorded_image>(items[i]).stream;
        if (i != height && stream.get_dimensions_number() == 1 && stream.array_length() == parameter.array_length() &&
            stream.get_dimension(0).length == parameter.get_dimension(0).length)
            stream.set_parameter_stream(parameter.get_name());
    }
}

} // namespace

std::string describe_nanoscope_force(const nanoscope_header& header, const nanoscope_section& section,
                                     std::uint64_t fileSize, nanoscope_force& out)
{
    out.section = &section;
    out.channel = nanoscope_channel(section);
    const std::string *offsetText = section.find("data offset"), *lengthText = section.find("data length");
    const auto offset = offsetText ? leading_count(*offsetText) : std::nullopt;
    const auto length = lengthText ? leading_count(*lengthText) : std::nullopt;
    if (!offset) return "Data offset is missing or no number";
    if (!length || *length == 0) return "Data length is missing, 0 or no number";
    if (*offset < header.length().value_or(0)) return "Data offset lies inside the header";
    if (!holds_numbers(fileSize, *offset, *length, 1))
        return "Data offset " + std::to_string(*offset) + " and Data length " + std::to_string(*length) +
               " reach beyond the end of the file, which is cut short";
    out.offset = *offset;
    out.length = *length;
    out.scales = nanoscope_force_scales(header, section);
    const std::string* context = section.find("start context");
    out.isVariable = context && context->ends_with("VAR");
    if (out.isVariable) return {};
    std::uint64_t columns = 0, rows = 0;
    if (is_volume(header)) {
        const auto perLine = counts(header.setting("force/line")), lines = counts(header.setting("lines"));
        columns = perLine.empty() ? 0 : perLine[0];
        rows = lines.empty() ? columns : lines[0];
    }
    if (!choose_shape(header, out, columns, rows))
        return "Samps/line, Hold Samples and force/line do not fit Data length " + std::to_string(*length);
    out.ramp = nanoscope_ramp(header, section, out.approach);
    set_grid_axes(header, out, columns, rows);
    return {};
}

base::read_result<std::vector<recorded_image>> load_nanoscope_force(source& file, const nanoscope_force& channel,
                                                                    std::vector<std::string>& ids)
{
    std::vector<recorded_image> result;
    if (channel.isVariable) {
        auto rows = load_rows(file, channel, ids);
        if (!rows) return rows.error();
        result.push_back(std::move(*rows));
        return result;
    }
    std::vector<part_image> images = make_part_images(channel, ids);
    const std::string problem = channel.sampleBytes == 4 ? load_curves<std::int32_t>(file, channel, images)
                                                         : load_curves<std::int16_t>(file, channel, images);
    if (!problem.empty()) return base::read_error{channel.offset, problem};
    for (part_image& each : images) {
        settle_samples(each.image);
        result.push_back(std::move(each.image));
    }
    return result;
}

std::optional<base::read_error> add_nanoscope_force(source& file, const nanoscope_header& header,
                                                    std::uint64_t bytesLeft, recording& out)
{
    std::vector<std::string> ids;
    for (const auto& item : out.items) ids.emplace_back(std::get<recorded_image>(item).stream.get_name());
    const std::size_t before = out.items.size();
    std::optional<std::size_t> height;
    std::size_t number = 0;
    for (const nanoscope_section& section : header.sections) {
        if (section.kind != nanoscope_list::force_image) continue;
        nanoscope_force channel;
        std::string problem = describe_nanoscope_force(header, section, file.size(), channel);
        if (problem.empty() && channel.length > bytesLeft) problem = "channels overlap, together they exceed the file";
        if (!problem.empty())
            return base::read_error{channel.offset, "force channel " + std::to_string(number + 1) + " (" +
                                                        channel.channel + "): " + problem};
        bytesLeft -= channel.length;
        ++number;
        auto images = load_nanoscope_force(file, channel, ids);
        if (!images) return images.error();
        if (!height && is_height(section)) height = out.items.size() - before;
        for (recorded_image& image : *images) {
            add_shared_strings(image.strings, header);
            out.items.emplace_back(std::move(image));
        }
    }
    if (height) set_parameter_stream(std::span(out.items).subspan(before), *height);
    return std::nullopt;
}

} // namespace formats
