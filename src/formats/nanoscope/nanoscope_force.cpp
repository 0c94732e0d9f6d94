#include "formats/nanoscope/nanoscope_force.h"

#include "base/text.h"
#include "formats/nanoscope/nanoscope_scale.h"
#include "formats/nanoscope/nanoscope_strings.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <iterator>

namespace vldv::formats {

namespace {

constexpr std::uint64_t maxSide = 65536;

/// Whole numbers at the start of a line, at most two.
std::vector<std::uint64_t> counts(const std::string* text)
{
    std::vector<std::uint64_t> numbers;
    if (!text) return numbers;
    std::string_view left = *text;
    for (double number = 0.0; numbers.size() < 2 && take_number(left, number);) {
        if (!(number >= 0) || number > static_cast<double>(maxSide)) break;
        numbers.push_back(static_cast<std::uint64_t>(number));
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
    double x = 0.0, y = 0.0;
    if (!take_number(left, x)) return;
    const double height = take_number(left, y) && !(y <= 0) ? y : x;
    const std::string units = nanoscope_units(left);
    const auto start = [&](const char* key) { return nanoscope_offset(header, *channel.section, key, units); };
    channel.x = stated_side(start("x offset"), x, static_cast<unsigned>(columns), units);
    channel.y = stated_side(start("y offset"), height, rows ? static_cast<unsigned>(rows) : channel.rows, units);
}

bool is_height(const nanoscope_section& section)
{
    const std::string* typed = section.findTyped("image data");
    return (typed && parse_nanoscope_value(*typed).bracket == "ZSensor") ||
           nanoscope_channel(section) == "Height Sensor";
}

/// A channel and its image of approach and retract among the items.
struct placed_channel {
    nanoscope_force channel;
    std::size_t item = 0;
};

SPMDataStream& stream_of(recording& out, const placed_channel& placed)
{
    return std::get<recorded_image>(out.items[placed.item]).stream;
}

/// Draws curves over the measured height of as many samples on both ways, at as many points.
void set_parameter_stream(recording& out, const std::vector<placed_channel>& channels, const placed_channel& height)
{
    for (const placed_channel& each : channels) {
        const nanoscope_force &own = each.channel, &measured = height.channel;
        const bool isAlike = !own.isVariable && !measured.isVariable && own.columns == measured.columns &&
                             own.rows == measured.rows && own.approach == measured.approach &&
                             own.retract == measured.retract;
        if (each.item != height.item && isAlike)
            stream_of(out, each).set_parameter_stream(stream_of(out, height).get_name());
    }
}

/// Approach and retract of different counts run over the same ramp, which no axis can show: a stream "Ramp" does.
void add_ramps(recording& out, const std::vector<placed_channel>& channels, std::vector<std::string>& ids)
{
    std::vector<std::pair<const nanoscope_force*, std::string>> made;
    for (const placed_channel& each : channels) {
        const nanoscope_force& channel = each.channel;
        if (!channel.isPadded() || channel.ramp == VLAxis() || stream_of(out, each).get_parameter_stream()) continue;
        auto same = std::ranges::find_if(made, [&](const auto& other) {
            return other.first->approach == channel.approach && other.first->retract == channel.retract &&
                   other.first->ramp == channel.ramp;
        });
        if (same == made.end()) {
            recorded_image ramp = make_nanoscope_ramp(channel, ids);
            made.emplace_back(&channel, ramp.stream.get_name());
            same = std::prev(made.end());
            out.items.emplace_back(std::move(ramp));
        }
        stream_of(out, each).set_parameter_stream(same->second.c_str());
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
    out.notes = nanoscope_force_doubts(header, section);
    out.isOverTime = is_nanoscope_time(header, section);
    out.isOverBias = is_nanoscope_bias(header, section);
    const std::string* context = section.find("start context");
    if (!context) context = header.setting("start context"); // of the file list
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
    for (std::string& doubt : nanoscope_ramp_doubts(header, section)) out.notes.push_back(std::move(doubt));
    set_grid_axes(header, out, columns, rows);
    return {};
}

std::optional<base::read_error> add_nanoscope_force(source& file, const nanoscope_header& header,
                                                    std::uint64_t bytesLeft, left_out& missing, recording& out)
{
    std::vector<std::string> ids;
    for (const auto& item : out.items) ids.emplace_back(std::get<recorded_image>(item).stream.get_name());
    std::vector<placed_channel> channels;
    std::optional<std::size_t> height;
    std::size_t number = 0;
    for (const nanoscope_section& section : header.sections) {
        if (section.kind != nanoscope_list::force_image) continue;
        nanoscope_force channel;
        const std::string problem = describe_nanoscope_force(header, section, file.size(), channel);
        const std::string title = "force channel " + std::to_string(++number) + " (" + channel.channel + "): ";
        if (!problem.empty()) {
            missing.add({channel.offset, title + problem});
            continue;
        }
        if (channel.length > bytesLeft)
            return base::read_error{channel.offset, title + "channels overlap, together they exceed the file"};
        bytesLeft -= channel.length;
        auto images = load_nanoscope_force(file, channel, ids);
        if (!images) return images.error();
        if (!height && is_height(section)) height = channels.size();
        if (!images->empty())
            images->front().notes.insert(images->front().notes.end(), channel.notes.begin(), channel.notes.end());
        channels.push_back({std::move(channel), out.items.size()});
        for (recorded_image& image : *images) {
            add_shared_strings(image.strings, header);
            out.items.emplace_back(std::move(image));
        }
    }
    if (height) set_parameter_stream(out, channels, channels[*height]);
    add_ramps(out, channels, ids);
    return std::nullopt;
}

} // namespace vldv::formats
