#include "formats/jpk/jpk_image.h"

#include "formats/jpk/jpk_plane.h"
#include "formats/shared/left_out.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace vldv::formats {

namespace {

/// Fills `out` with the rows of a plane, the bottom row first.
bool read_rows(source& file, const jpk_plane& plane, byte_order order, std::span<std::byte> out)
{
    const std::uint64_t rowBytes = std::uint64_t{plane.plane.frame.width} * element_size(plane.type);
    const std::uint64_t rows = plane.plane.frame.height;
    for (std::uint64_t row = 0; row < rows; row += plane.rowsPerStrip) {
        const auto strip = static_cast<std::size_t>(row / plane.rowsPerStrip);
        const std::uint64_t bytes = std::min<std::uint64_t>(plane.rowsPerStrip, rows - row) * rowBytes;
        const auto part = out.subspan(static_cast<std::size_t>(row * rowBytes), static_cast<std::size_t>(bytes));
        if (!file.read(static_cast<std::uint64_t>(plane.offsets[strip]), part)) return false;
    }
    to_native(out, element_size(plane.type), order);
    if (!plane.isTopFirst) return true;
    for (std::uint64_t low = 0, high = rows - 1; low < high; ++low, --high)
        std::swap_ranges(out.begin() + static_cast<std::ptrdiff_t>(low * rowBytes),
                         out.begin() + static_cast<std::ptrdiff_t>((low + 1) * rowBytes),
                         out.begin() + static_cast<std::ptrdiff_t>(high * rowBytes));
    return true;
}

/// Adds the samples of a plane that hold its number for "not measured". \param first  place of its first sample
void find_unmeasured(const jpk_plane& plane, std::span<const std::byte> raw, std::uint64_t first,
                     std::vector<void_range>& voids)
{
    if (!plane.unmeasured) return;
    std::vector<double> row(plane.plane.frame.width);
    const std::size_t rowBytes = row.size() * element_size(plane.type);
    for (; !raw.empty(); raw = raw.subspan(rowBytes), first += row.size()) {
        decode_numbers(raw.first(rowBytes), plane.type, byte_order::little, row);
        for (std::size_t i = 0; i < row.size(); ++i)
            if (row[i] == *plane.unmeasured) voids.push_back({first + i, 1});
    }
}

bool same_scale(const value_scale& a, const value_scale& b) noexcept
{
    return a.step == b.step && a.offset == b.offset && a.units == b.units;
}

/// How a further calibration follows from values of the one that is shown.
value_scale from_shown(const jpk_plane& plane, const value_scale& other)
{
    const value_scale& shown = plane.plane.scale;
    const double slope = other.step / shown.step;
    return {slope, other.offset - shown.offset * slope, other.units, other.origin};
}

/// True when a further calibration of one direction means the same for the other.
bool holds_for(const jpk_plane& plane, const value_scale& wanted)
{
    constexpr double rounding = 1e-6;
    return std::ranges::any_of(plane.others, [&](const value_scale& other) {
        const value_scale own = from_shown(plane, other);
        return own.units == wanted.units && own.origin == wanted.origin &&
               std::fabs(own.step - wanted.step) <= rounding * std::fabs(wanted.step) &&
               std::fabs(own.offset - wanted.offset) <= rounding * std::fabs(wanted.offset);
    });
}

/// Two directions, each with numbers of its own scale: as physical values.
base::read_result<recorded_image> load_values(source& file, std::span<const jpk_plane* const> planes, byte_order order,
                                              const std::string& id, std::vector<void_range>& voids)
{
    const channel_plane& first = planes.front()->plane;
    const extent sides[] = {{first.frame.width, first.frame.x}, {first.frame.height, first.frame.y}};
    const value_scale scale{1.0, 0.0, first.scale.units, first.scale.origin + " of each direction"};
    recorded_image image =
        make_samples(id, first.channel, sides, static_cast<unsigned>(planes.size()), scale, SPM_ARRAY_FLOAT64);
    auto rest = elements_of<double>(image);
    const std::size_t samples = rest.size() / planes.size();
    std::vector<std::byte> raw(samples * element_size(planes.front()->type));
    for (const jpk_plane* plane : planes) {
        if (!read_rows(file, *plane, order, raw))
            return base::read_error{0, "samples of " + first.channel + " cannot be read"};
        find_unmeasured(*plane, raw, image.stream.array_length() - rest.size(), voids);
        const auto values = rest.first(samples);
        decode_numbers(raw, plane->type, byte_order::little, values);
        for (double& value : values) value = value * plane->plane.scale.step + plane->plane.scale.offset;
        rest = rest.subspan(samples);
    }
    for (const value_scale& each : planes.front()->others) {
        const value_scale other = from_shown(*planes.front(), each);
        if (holds_for(*planes.back(), other)) add_calibration(image, scale, other);
    }
    return image;
}

base::read_result<recorded_image> load_numbers(source& file, std::span<const jpk_plane* const> planes, byte_order order,
                                               const std::string& id, std::vector<void_range>& voids)
{
    const jpk_plane& first = *planes.front();
    const image_frame& frame = first.plane.frame;
    const extent sides[] = {{frame.width, frame.x}, {frame.height, frame.y}};
    recorded_image image = make_samples(id, first.plane.channel, sides, static_cast<unsigned>(planes.size()),
                                        first.plane.scale, first.type);
    const std::span all(static_cast<std::byte*>(image.stream.array_data()),
                        std::size_t{image.stream.array_length()} * element_size(first.type));
    const std::size_t planeBytes = all.size() / planes.size();
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const auto part = all.subspan(i * planeBytes, planeBytes);
        if (!read_rows(file, *planes[i], order, part))
            return base::read_error{0, "samples of " + first.plane.channel + " cannot be read"};
        find_unmeasured(*planes[i], part, i * planeBytes / element_size(first.type), voids);
    }
    for (const value_scale& other : first.others) add_calibration(image, first.plane.scale, other);
    return image;
}

base::read_result<recorded_image> load_group(source& file, const std::vector<jpk_plane>& planes,
                                             const plane_group& group, byte_order order, const std::string& id)
{
    std::vector<const jpk_plane*> parts;
    for (const std::size_t index : group) parts.push_back(&planes[index]);
    const bool isOneScale = same_scale(parts.front()->plane.scale, parts.back()->plane.scale);
    std::vector<void_range> voids;
    auto image = isOneScale ? load_numbers(file, parts, order, id, voids) : load_values(file, parts, order, id, voids);
    if (!image) return image;
    settle_samples(*image, voids);
    name_axis_fields(*image, {{"tag 0x8042", "tag 0x8040"}, {"tag 0x8043", "tag 0x8041"}});
    name_directions(*image, group, parts.front()->plane.direction);
    image->strings.insert(parts.front()->strings.begin(), parts.front()->strings.end());
    return image;
}

/// " (height)", or nothing for a directory without a name.
std::string name_in_brackets(const std::string& name) { return name.empty() ? name : " (" + name + ")"; }

/// What has to agree between two directions. Samples of 16 bits keep every bit, so they need one scale; wider ones are
/// converted in any case, each with its own.
std::vector<channel_plane> joining_keys(const std::vector<jpk_plane>& planes)
{
    std::vector<channel_plane> keys;
    for (const jpk_plane& each : planes) {
        keys.push_back(each.plane);
        if (element_size(each.type) > 2) keys.back().scale = {1.0, 0.0, each.plane.scale.units, {}};
    }
    return keys;
}

} // namespace

base::read_result<recording> read_jpk_image(source& file, std::vector<std::string>& ids)
{
    byte_order order = byte_order::little;
    left_out missing;
    const auto directories = read_tiff_directories(file, order, missing);
    if (!directories) return directories.error();
    if (directories->empty() || !directories->front().has(jpkGridTag))
        return base::read_error{0, "the grid's length (tag 0x8042) is missing: not an image of this instrument"};
    std::vector<jpk_plane> planes;
    std::uint64_t samplesLeft = file.size(); // directories may claim the same strips
    for (std::size_t i = 0; i < directories->size(); ++i) {
        const tiff_directory& directory = (*directories)[i];
        if (i == 0 && is_jpk_thumbnail(directory)) continue;
        auto plane = describe_jpk_plane(file.size(), directory, directories->front());
        if (!plane) {
            missing.add({0, "channel " + std::to_string(i) + name_in_brackets(jpk_channel_name(directory)) + ": " +
                                plane.error().reason});
            continue;
        }
        const std::uint64_t samples = std::uint64_t{plane->plane.frame.width} * plane->plane.frame.height;
        if (samples > samplesLeft) return base::read_error{0, "the channels together exceed the file"};
        samplesLeft -= samples;
        planes.push_back(std::move(*plane));
    }
    if (planes.empty())
        return missing.empty() ? base::read_error{0, "the file holds a thumbnail alone"} : missing.first();
    recording result;
    result.strings = jpk_document_texts(directories->front());
    missing.tell(result);
    for (const plane_group& group : join_directions(joining_keys(planes))) {
        if (!file.progress(static_cast<double>(group.front()) / static_cast<double>(planes.size())))
            return base::read_error{0, "reading was cancelled"};
        auto image = load_group(file, planes, group, order, unique_id(planes[group.front()].plane.channel, ids));
        if (!image) return image.error();
        for (const char* shown : {"\\Date", "\\Scan rate"})
            if (const auto found = result.strings.find(shown); found != result.strings.end())
                image->strings.insert(*found);
        result.items.emplace_back(std::move(*image));
    }
    return result;
}

} // namespace vldv::formats
