#include "formats/scala/scala.h"

#include "base/text.h"
#include "formats/scala/scala_data.h"
#include "formats/scala/scala_parameters.h"
#include "formats/scala/scala_points.h"
#include "formats/shared/file_start.h"
#include "formats/shared/finish_recording.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/force/directions.h"
#include "formats/shared/left_out.h"

#include <algorithm>
#include <map>

namespace vldv::formats {

namespace {

constexpr std::uint64_t largestParameterFile = 4u << 20;

base::read_result<std::string> read_parameter_text(source& file)
{
    if (file.size() > largestParameterFile) return base::read_error{0, "too large for an Omicron parameter file"};
    std::string text(static_cast<std::size_t>(file.size()), '\0');
    if (!file.read(0, std::as_writable_bytes(std::span(text)))) return base::read_error{0, "cannot be read"};
    if (!is_scala_header(text)) return base::read_error{0, "not an Omicron parameter file"};
    return text;
}

/// What the parameter file of a set is called, in lower case.
std::string lower_parameter_name(const std::string& name)
{
    return base::lower_ascii(name.substr(0, name.rfind('.'))) + ".par";
}

/// The parameter file of the set that a data file belongs to.
std::unique_ptr<source> find_parameter_file(source& data)
{
    const std::string wanted = lower_parameter_name(data.name());
    const std::vector<std::string> names = data.siblings();
    const auto found =
        std::ranges::find(names, wanted, [](const std::string& each) { return base::lower_ascii(each); });
    return found != names.end() && *found != data.name() ? data.sibling(*found) : nullptr;
}

/// Reads the channels of a set; what cannot be read is noted and does not stop the others.
class scala_loader {
public:
    scala_loader(source& file_, std::string parameterName_, const scala_parameters& parameters_)
        : file(file_), parameterName(std::move(parameterName_)), parameters(parameters_)
    {
    }

    base::read_result<recording> load()
    {
        for (const scala_channel& channel : parameters.channels) findChannel(channel);
        const auto groups = joinedChannels();
        for (std::size_t i = 0; i < groups.size(); ++i) {
            if (!file.progress(static_cast<double>(i) / static_cast<double>(groups.size())))
                return base::read_error{0, "reading was cancelled"};
            if (is_scala_points(*found[groups[i].front()].channel))
                loadPoints(groups[i]);
            else
                loadGroup(groups[i]);
        }
        if (result.items.empty()) return base::read_error{0, "none of its data files can be read: " + missing};
        result.strings = parameters.values;
        rename("Date", "\\Date");
        rename("Scan Direction", "\\Scan direction");
        if (!missing.empty()) leave_note(result, "Missing channels", missing);
        for (const auto& [size, field] : {std::pair(parameters.width, "X"), std::pair(parameters.height, "Y")})
            if (!size)
                add_warning(result,
                            "no Field " + std::string(field) + " Size in nm: " + field + " is counted in points");
        return std::move(result);
    }

private:
    struct found_channel {
        const scala_channel* channel;
        std::unique_ptr<source> data;
        std::vector<extent> extents; ///< empty for curves at single points
    };

    void note(const scala_channel& channel, const std::string& why)
    {
        if (!missing.empty()) missing += "; ";
        missing += channel.label() + " (" + channel.fileName + "): " + why;
    }

    void findChannel(const scala_channel& channel)
    {
        auto data = find_scala_data(file, parameterName, channel);
        if (!data) return note(channel, "there is no such file");
        if (is_scala_points(channel)) {
            found.push_back({&channel, std::move(data), {}});
            return;
        }
        auto extents = scala_extents(parameters, channel);
        if (extents.empty()) return note(channel, "number of points, Spectroscopy Points in X or Lines in Y is 0");
        std::uint64_t room = data->size() / 2;
        for (const extent& each : extents) room /= each.length;
        if (room == 0) return note(channel, "the file is cut short");
        std::uint64_t needed = 2; // no more than the file has
        for (const extent& each : extents) needed *= each.length;
        if (data->size() != needed) return note(channel, "the file is longer than its points take");
        found.push_back({&channel, std::move(data), std::move(extents)});
    }

    static channel_plane planeOf(const found_channel& each)
    {
        channel_plane plane;
        plane.channel = each.channel->label();
        plane.direction = each.channel->direction;
        plane.scale = each.channel->scale;
        if (each.extents.empty()) {
            plane.pass = "points"; // positions and lengths of curves may differ
            plane.scale = each.channel->lsbScale;
            return plane;
        }
        plane.pass = each.channel->isSpectroscopy ? "spectroscopy" : "";
        plane.frame = {each.extents[0].length, each.extents[1].length, 1, each.extents[0].axis, each.extents[1].axis};
        return plane;
    }

    std::vector<plane_group> joinedChannels() const
    {
        std::vector<channel_plane> planes;
        for (const found_channel& each : found) planes.push_back(planeOf(each));
        return join_directions(planes);
    }

    void loadPoints(const plane_group& group)
    {
        std::vector<scala_points> parts;
        for (const std::size_t index : group) {
            const scala_channel& channel = *found[index].channel;
            auto points = read_scala_points(*found[index].data, channel);
            if (!points) {
                note(channel, points.error().reason);
                continue;
            }
            if (points->raw.size() < points->stated)
                note(channel, "cut short: " + std::to_string(points->raw.size()) + " of " +
                                  std::to_string(points->stated) + " curves");
            else if (points->stated != 0 && points->raw.size() > points->stated)
                note(channel, "n_curves states " + std::to_string(points->stated) + " curves, there are " +
                                  std::to_string(points->raw.size()));
            parts.push_back(std::move(*points));
        }
        if (parts.empty()) return;
        auto images = make_scala_points(parts, ids);
        if (!images) return note(*parts.front().channel, images.error().reason);
        for (recorded_image& image : *images) result.items.emplace_back(std::move(image));
    }

    void loadGroup(const plane_group& group)
    {
        const found_channel& first = found[group.front()];
        recorded_image image = make_samples(unique_id(first.channel->label(), ids), first.channel->label(),
                                            first.extents, static_cast<unsigned>(group.size()), first.channel->scale);
        const axis_fields x{"Field X Size in nm", "X Offset"}, y{"Field Y Size in nm", "Y Offset"};
        if (first.channel->isSpectroscopy)
            name_axis_fields(image, {{"Start, End and increment of the channel", "its Start"}, x, y});
        else
            name_axis_fields(image, {x, y});
        const auto samples = elements_of<std::int16_t>(image);
        const std::size_t frame = samples.size() / group.size();
        for (std::size_t i = 0; i < group.size(); ++i) {
            const found_channel& part = found[group[i]];
            const std::string reason = read_scala_samples(*part.data, *part.channel, samples.subspan(i * frame, frame));
            if (!reason.empty()) return note(*part.channel, reason);
        }
        name_directions(image, group, first.channel->direction);
        result.items.emplace_back(std::move(image));
    }

    void rename(const char* from, const char* to)
    {
        auto node = result.strings.extract(from);
        if (node.empty()) return;
        node.key() = to;
        result.strings.insert(std::move(node));
    }

    source& file;
    std::string parameterName;
    const scala_parameters& parameters;
    recording result;
    std::vector<std::string> ids;
    std::vector<found_channel> found;
    std::string missing;
};

base::read_result<recording> read_set(source& file, source& parameterFile)
{
    const auto text = read_parameter_text(parameterFile);
    if (!text) return text.error();
    const auto parameters = parse_scala_parameters(*text);
    if (!parameters) return parameters.error();
    return scala_loader(file, parameterFile.name(), *parameters).load();
}

} // namespace

base::read_result<recording> read_scala(source& file)
{
    if (is_scala_header(read_start(file, 200))) return read_set(file, file);
    const auto beside = find_parameter_file(file);
    if (!beside || base::equal_ignoring_case(beside->name(), file.name()))
        return base::read_error{0, "not an Omicron parameter file, and none with its name lies beside it"};
    return read_set(file, *beside);
}

std::vector<std::string> scala_leaders(const std::vector<std::string>& names)
{
    std::map<std::string, const std::string*> first; // of the names that differ in case alone
    for (const std::string& name : names) first.try_emplace(base::lower_ascii(name), &name);
    std::vector<std::string> leaders;
    for (const std::string& name : names) {
        const auto found = first.find(lower_parameter_name(name));
        leaders.push_back(found != first.end() ? *found->second : name);
    }
    return leaders;
}

bool sniff_scala(std::span<const std::byte> head)
{
    return is_scala_header(as_text(head)) || is_scala_points_text(as_text(head));
}

bool possible_scala(std::span<const std::byte> head)
{
    // Samples of 16 bits have bytes that no text has; a parameter file without the mark is another instrument's.
    return std::ranges::any_of(as_text(head), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r' && byte != '\f';
    });
}

} // namespace vldv::formats
