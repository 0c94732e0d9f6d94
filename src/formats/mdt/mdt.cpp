#include "formats/mdt/mdt.h"

#include "base/text.h"
#include "formats/mdt/mdt_frame.h"
#include "formats/shared/finish_recording.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>

namespace vldv::formats {

namespace {

constexpr std::string_view magic("\x01\xB0\x93\xFF", 4);
constexpr std::uint64_t firstFrame = 33;
constexpr unsigned headerBytes = 22;
constexpr double framesShare = 0.5; // of the progress; the rest is for the samples of planes

enum frame_type : unsigned {
    scan = 0,
    curve = 1,
    text = 3,
    oldArray = 105,
    array = 106,
    palette = 107,
    points = 190,
    pointCurves = 201
};

/// Parts of a file that cannot be shown.
class frames_left_out {
public:
    void add(const std::string& what) { all += (all.empty() ? "" : "; ") + what; }
    const std::string& text() const noexcept { return all; }

private:
    std::string all;
};

mdt_frame parse_frame(std::span<const std::byte> header, std::uint64_t offset)
{
    base::byte_reader in(header);
    mdt_frame frame;
    frame.offset = offset;
    frame.size = in.u32();
    frame.type = in.u16();
    in.skip(2);
    const unsigned year = in.u16(), month = in.u16(), day = in.u16();
    const unsigned hour = in.u16(), minute = in.u16(), second = in.u16();
    frame.date = base::formatted("%04u-%02u-%02u %02u:%02u:%02u", year, month, day, hour, minute, second);
    frame.variableBytes = in.u16();
    frame.headerBytes = headerBytes;
    return frame;
}

/// The frames that lie wholly in the file.
std::vector<mdt_frame> find_frames(source& file, unsigned claimed, frames_left_out& missing)
{
    std::vector<mdt_frame> frames;
    for (std::uint64_t at = firstFrame; frames.size() < claimed;) {
        const std::string title = "frame " + std::to_string(frames.size() + 1) + ": ";
        std::byte header[headerBytes];
        if (at > file.size() || file.size() - at < headerBytes || !file.read(at, header)) {
            missing.add(title + "the file ends before it");
            break;
        }
        mdt_frame frame = parse_frame(header, at);
        if (frame.size < headerBytes || frame.size > file.size() - at) {
            missing.add(title + "its size of " + std::to_string(frame.size) + " bytes does not fit the file");
            break;
        }
        frame.number = static_cast<unsigned>(frames.size()) + 1;
        frame.done = framesShare * static_cast<double>(at) / static_cast<double>(file.size());
        at += frame.size;
        frames.push_back(std::move(frame));
    }
    return frames;
}

base::read_result<mdt_content> read_frame(source& file, const mdt_frame& frame)
{
    switch (frame.type) {
    case scan:
        return read_mdt_scan(file, frame);
    case curve:
    case pointCurves:
        return read_mdt_curves(file, frame);
    case array:
        return read_mdt_array(file, frame);
    case points:
        return read_mdt_points(file, frame);
    case text:
    case palette:
        return mdt_content();
    default:
        return base::read_error{frame.offset,
                                "the layout of frames of type " + std::to_string(frame.type) + " is not known"};
    }
}

/// Gives streams ids that are unique in the file; a parameter stream follows its name.
class id_giver {
public:
    void rename(recorded_image& image)
    {
        const std::string old = image.stream.get_name();
        const std::string id = unique_id(old, used);
        if (const char* parameter = image.stream.get_parameter_stream(); parameter && parameter == lastOld)
            image.stream.set_parameter_stream(lastNew.c_str());
        image.stream.set_name(id.c_str());
        lastOld = old;
        lastNew = id;
    }
    std::string next(const std::string& channel) { return unique_id(channel, used); }

private:
    std::vector<std::string> used;
    std::string lastOld, lastNew;
};

base::read_result<recorded_image> load_group(source& file, const std::vector<const mdt_plane*>& planes,
                                             const plane_group& group, const std::string& id)
{
    const mdt_plane& first = *planes[group.front()];
    const extent sides[] = {{first.plane.frame.width, first.plane.frame.x},
                            {first.plane.frame.height, first.plane.frame.y}};
    recorded_image image = make_samples(id, first.plane.channel, sides, static_cast<unsigned>(group.size()),
                                        first.plane.scale, first.type);
    auto rest = std::span(static_cast<std::byte*>(image.stream.array_data()),
                          std::size_t{image.stream.array_length()} * element_size(first.type));
    const std::size_t frameBytes = rest.size() / group.size();
    for (const std::size_t each : group) {
        if (!file.read(planes[each]->offset, rest.first(frameBytes)))
            return base::read_error{planes[each]->offset, "samples of " + first.plane.channel + " cannot be read"};
        rest = rest.subspan(frameBytes);
        image.strings.insert(planes[each]->strings.begin(), planes[each]->strings.end());
        for (const std::string& note : planes[each]->notes)
            if (std::ranges::find(image.notes, note) == image.notes.end()) image.notes.push_back(note);
    }
    settle_samples(image);
    if (group.size() == 1 && first.plane.direction != scan_direction::unknown)
        image.strings["\\Line direction"] = first.plane.direction == scan_direction::forward ? "Forward" : "Reverse";
    name_directions(image, group, first.plane.direction);
    return image;
}

base::read_error cancelled() { return {0, "reading was cancelled"}; }

/// Loads the planes of all frames, two directions of a channel together, each where its first frame stood.
base::read_result<recording> assemble(source& file, mdt_content content)
{
    recording result;
    id_giver ids;
    std::vector<const mdt_plane*> planes;
    std::vector<channel_plane> keys;
    for (const auto& item : content)
        if (const auto* plane = std::get_if<mdt_plane>(&item)) {
            planes.push_back(plane);
            keys.push_back(plane->plane);
            // Directions of different scans, or before and after processing, are no pair.
            keys.back().pass += " " + std::to_string(plane->type) + " " + plane->strings.at("\\Date");
        }
    std::map<std::size_t, plane_group> groups; // by their first plane
    for (plane_group& group : join_directions(keys))
        groups.emplace(*std::min_element(group.begin(), group.end()), std::move(group));
    std::size_t plane = 0, done = 0;
    for (auto& item : content) {
        const double share = static_cast<double>(done++) / static_cast<double>(content.size());
        if (!file.progress(framesShare + (1.0 - framesShare) * share)) return cancelled();
        if (auto* image = std::get_if<recorded_image>(&item)) {
            ids.rename(*image);
            result.items.emplace_back(std::move(*image));
            continue;
        }
        const auto group = groups.find(plane++);
        if (group == groups.end()) continue; // shown with its partner
        auto image = load_group(file, planes, group->second, ids.next(planes[group->first]->plane.channel));
        if (!image) return image.error();
        result.items.emplace_back(std::move(*image));
    }
    return result;
}

} // namespace

bool sniff_mdt(std::span<const std::byte> head) { return base::byte_reader(head).tag(magic); }

base::read_result<recording> read_mdt(source& file)
{
    std::byte header[firstFrame];
    if (file.size() < firstFrame || !file.read(0, header) || !sniff_mdt(header))
        return base::read_error{0, "the header of the file is cut short"};
    base::byte_reader in(header);
    in.seek(12);
    frames_left_out missing;
    mdt_content content;
    for (const mdt_frame& frame : find_frames(file, in.u16() + 1u, missing)) {
        if (!file.progress(frame.done)) return cancelled();
        auto read = read_frame(file, frame);
        if (!read) {
            missing.add("frame " + std::to_string(frame.number) + ": " + read.error().reason);
            continue;
        }
        std::ranges::move(*read, std::back_inserter(content));
    }
    if (!file.progress(framesShare)) return cancelled(); // perhaps within the last frame
    if (content.empty())
        return base::read_error{firstFrame, missing.text().empty() ? "no frame holds an image or a curve"
                                                                   : "no frame can be shown: " + missing.text()};
    auto result = assemble(file, std::move(content));
    if (result && !missing.text().empty()) leave_note(*result, "Frames left out", missing.text());
    return result;
}

} // namespace vldv::formats
