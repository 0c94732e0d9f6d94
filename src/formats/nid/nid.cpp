#include "formats/nid/nid.h"

#include "base/text.h"
#include "base/units.h"
#include "formats/nid/nid_channel.h"
#include "formats/nid/nid_curves.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/force/force_order.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>

namespace vldv::formats {

namespace {

using string_table = std::map<std::string, std::string>;

/// "D[48]*[N/m]" is "48 N/m"; other texts stay.
std::string plain_property(const std::string& text)
{
    const std::size_t open = text.find('['), close = text.find(']');
    if (open != 1 || close == std::string::npos || text.compare(close, 3, "]*[") != 0 || !text.ends_with(']'))
        return text;
    const std::string value = text.substr(2, close - 2), units = text.substr(close + 3, text.size() - close - 4);
    return units.empty() ? value : value + " " + units;
}

string_table strings_of(const nid_header& header)
{
    string_table strings;
    if (const nid_section* info = header.find("DataSet-Info")) {
        for (const auto& [key, value] : info->entries) {
            if (value.empty()) continue;
            strings.emplace(key == "Date" ? "\\Date" : key == "Scan direction" ? "\\Scan direction" : key, value);
        }
        if (const std::string time = info->text("Time"); !time.empty() && strings.contains("\\Date"))
            strings["\\Date"] += " " + time;
    }
    if (const nid_section* lever = header.find("DataSet\\Calibration\\Cantilever"))
        for (const auto& [key, value] : lever->entries) strings.emplace("Cantilever " + key, plain_property(value));
    return strings;
}

VLAxis image_axis(const nid_section& section, const char* dimension, unsigned points)
{
    const nid_range range = nid_dimension(section, dimension);
    if (!section.find(std::string(dimension) + "Range")) return {};
    return VLAxis(range.start, range.range / points, range.units.c_str());
}

channel_plane plane_of(const nid_channel& channel)
{
    channel_plane plane;
    plane.channel = channel.name;
    plane.pass = channel.pass() + "/" + std::to_string(channel.sampleBytes);
    plane.direction = channel.direction();
    VLAxis x = image_axis(*channel.section, "Dim0", channel.points);
    // The ways to and fro of a curve may differ in length and range.
    if (channel.isSpectroscopy()) x = VLAxis(0.0, 1.0, x.get_units());
    plane.frame = {channel.isSpectroscopy() ? 1 : channel.points, channel.lines, 1, x,
                   image_axis(*channel.section, "Dim1", channel.lines)};
    plane.scale = channel.scale;
    return plane;
}

/// Finds lines behind the last one measured, unless they hold something: a scan that starts again counts anew.
void add_unmeasured_lines(const nid_channel& channel, std::span<const std::byte> samples, std::uint64_t first,
                          std::vector<void_range>& voids)
{
    const std::size_t lineBytes = std::size_t{channel.points} * channel.sampleBytes;
    for (unsigned line = channel.measuredLines; line < channel.lines; ++line)
        if (is_uniform(samples.subspan(line * lineBytes, lineBytes), channel.sampleBytes))
            voids.push_back({first + std::uint64_t{line} * channel.points, channel.points});
}

base::read_result<recorded_image> load_image(source& file, const std::vector<const nid_channel*>& channels,
                                             const std::string& id)
{
    const nid_channel& first = *channels.front();
    const extent plane[] = {{first.points, image_axis(*first.section, "Dim0", first.points)},
                            {first.lines, image_axis(*first.section, "Dim1", first.lines)}};
    recorded_image image =
        make_samples(id, first.label(), plane, static_cast<unsigned>(channels.size()), first.scale, first.type());
    name_axis_fields(image, {{"Dim0Range", "Dim0Min"}, {"Dim1Range", "Dim1Min"}});
    auto* out = static_cast<std::byte*>(image.stream.array_data());
    std::vector<void_range> voids;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const nid_channel& channel = *channels[i];
        const std::span samples(out, static_cast<std::size_t>(channel.samples()) * channel.sampleBytes);
        if (!file.read(channel.offset, samples)) return channel.unreadable();
        to_native(samples, channel.sampleBytes, byte_order::little);
        add_unmeasured_lines(channel, samples, i * channel.samples(), voids);
        out += samples.size();
    }
    settle_samples(image, voids);
    return image;
}

/// A height that was measured, not only asked for, is what force curves are seen against.
bool is_position_channel(const nid_channel& channel)
{
    return channel.isSpectroscopy() && base::lower_ascii(channel.name).find("z-axis sensor") != std::string::npos;
}

/// Spectra over a length are force curves.
bool is_force_channel(const nid_channel& channel)
{
    return channel.isSpectroscopy() &&
           units_convertable(nid_dimension(*channel.section, "Dim0").units.c_str(), "m") > 0;
}

/// Reads the groups of a file one by one.
class nid_loader {
public:
    nid_loader(source& file_, const nid_header& header_, const std::vector<nid_channel>& channels_)
        : file(file_), header(header_), channels(channels_), places(find_nid_places(header_))
    {
    }

    base::read_result<recording> load()
    {
        std::vector<channel_plane> planes;
        for (const nid_channel& channel : channels) planes.push_back(plane_of(channel));
        const auto groups = join_directions(planes);
        for (std::size_t i = 0; i < groups.size(); ++i) {
            if (!file.progress(static_cast<double>(i) / static_cast<double>(groups.size())))
                return base::read_error{0, "reading was cancelled"};
            if (auto failure = loadGroup(groups[i]); !failure.reason.empty()) return failure;
        }
        linkPositions();
        orderForces();
        result.strings = strings_of(header);
        if (!isGridUsed && !curves.empty() && !places.text.empty()) result.strings["Curve places"] = places.text;
        return std::move(result);
    }

private:
    /// The curves of one shape, with what they are seen against.
    struct curve_item {
        std::size_t index; ///< in the recording
        std::string shape; ///< frame, points and lines
        bool isPosition;
        bool isForce;             ///< the probe moves up and down
        std::string ownPositions; ///< id of the stream made from the lines' axes; may be empty
    };

    base::read_error loadGroup(const plane_group& group)
    {
        std::vector<const nid_channel*> members;
        for (const std::size_t index : group) members.push_back(&channels[index]);
        const nid_channel& first = *members.front();
        const std::string id = unique_id(first.label(), ids);
        auto image = first.isImage() ? load_image(file, members, id) : loadCurveGroup(members, id);
        if (!image) return image.error();
        if (first.isImage()) name_directions(*image, group, first.direction());
        std::string& frames = image->strings["\\Line direction"];
        for (const nid_channel* channel : members) frames += (frames.empty() ? "" : " / ") + channel->frame;
        result.items.emplace_back(std::move(*image));
        return {};
    }

    base::read_result<recorded_image> loadCurveGroup(const std::vector<const nid_channel*>& members,
                                                     const std::string& id)
    {
        const nid_channel& first = *members.front();
        auto layout = lay_out_curves(places, members);
        if (!layout) return layout.error();
        auto image = read_nid_curves(file, members, *layout, id);
        if (!image) return image;
        curve_item item{0, first.pass(), is_position_channel(first), is_force_channel(first), ""};
        for (const nid_channel* channel : members)
            item.shape += "/" + std::to_string(channel->points) + "/" + std::to_string(channel->lines);
        if (layout->hasOwnAxes) {
            item.ownPositions = unique_id(id + "_position", ids);
            result.items.emplace_back(make_nid_positions(*layout, first, item.ownPositions));
        }
        item.index = result.items.size();
        curves.push_back(item);
        isGridUsed = isGridUsed || layout->grid;
        return image;
    }

    void linkPositions()
    {
        for (const curve_item& item : curves) {
            const auto measured = std::ranges::find_if(
                curves, [&](const curve_item& other) { return other.isPosition && other.shape == item.shape; });
            auto& stream = streamOf(item);
            if (item.isPosition || measured == curves.end())
                stream.set_parameter_stream(item.ownPositions.c_str());
            else
                stream.set_parameter_stream(streamOf(*measured).get_name());
        }
    }

    /// Turns the curves of spectra over a length, and their positions with them.
    void orderForces()
    {
        std::vector<std::pair<recorded_image*, std::vector<contact_end>>> found; // before anything turns
        for (const curve_item& item : curves) {
            recorded_image& image = imageOf(item);
            recorded_image* const positions = item.isPosition ? &image : named(image.stream.get_parameter_stream());
            if (!item.isForce) continue;
            found.emplace_back(&image, nid_contacts(image, positions, forcesLike(item)));
            if (recorded_image* const own = item.ownPositions.empty() ? nullptr : named(item.ownPositions.c_str()))
                found.emplace_back(own, found.back().second);
        }
        for (auto& [image, ends] : found) {
            order_from_contact(*image, ends);
            note_deflection_sign(*image);
        }
    }

    /// The forces or deflections that were taken with a channel; null without them.
    const recorded_image* forcesLike(const curve_item& item)
    {
        for (const curve_item& other : curves)
            if (const recorded_image& image = imageOf(other);
                other.isForce && other.shape == item.shape && holds_forces(image.stream))
                return &image;
        return nullptr;
    }

    recorded_image* named(const char* id)
    {
        for (auto& item : result.items)
            if (auto* const image = std::get_if<recorded_image>(&item);
                id && id == std::string(image->stream.get_name()))
                return image;
        return nullptr;
    }

    recorded_image& imageOf(const curve_item& item) { return std::get<recorded_image>(result.items[item.index]); }
    SPMDataStream& streamOf(const curve_item& item) { return imageOf(item).stream; }

    source& file;
    const nid_header& header;
    const std::vector<nid_channel>& channels;
    nid_places places;
    bool isGridUsed = false; // the axes of a volume tell the places
    recording result;
    std::vector<std::string> ids;
    std::vector<curve_item> curves;
};

} // namespace

bool sniff_nid(std::span<const std::byte> head) { return is_nid_header(as_text(head)); }

base::read_result<recording> read_nid(source& file)
{
    const auto header = read_nid_header(file);
    if (!header) return header.error();
    left_out missing;
    const auto channels = find_nid_channels(*header, file.size(), missing);
    if (!channels) return channels.error();
    auto result = nid_loader(file, *header, *channels).load();
    if (result) missing.tell(*result);
    return result;
}

} // namespace vldv::formats
