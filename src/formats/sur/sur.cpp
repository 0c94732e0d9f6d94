#include "formats/sur/sur.h"

#include "base/text.h"
#include "formats/shared/file_group.h"
#include "formats/shared/finish_recording.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/left_out.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"
#include "formats/sur/sur_object.h"
#include "formats/sur/sur_samples.h"

#include <algorithm>
#include <cmath>

using namespace vldv;

namespace vldv::formats {

namespace {

value_scale scale_of(const sur_object& object)
{
    return {object.zStep, object.zOffset, object.zUnits, "z step, z offset, unit of the z step"};
}

/// Where its numbers lie: a curve's lines are sub-images, a map's spectra run fastest.
recorded_image make_stream(const sur_object& object, const std::string& id, const std::string& label)
{
    const auto type = object.sampleBits == 16 ? SPM_ARRAY_INT16 : SPM_ARRAY_INT32;
    const extent x{object.width, object.x}, y{object.height, object.y}, spectrum{object.pointValues, object.spectral};
    if (object.isCurve()) return make_samples(id, label, std::span(&x, 1), object.height, scale_of(object), type);
    const extent plane[] = {x, y}, volume[] = {spectrum, x, y};
    return make_samples(id, label, object.isMap() ? std::span<const extent>(volume) : std::span<const extent>(plane), 1,
                        scale_of(object), type);
}

/// Files hold the top row first.
template <class T>
void flip_rows(std::span<T> samples, std::size_t rowLength, std::size_t rows)
{
    for (std::size_t low = 0, high = rows - 1; low < high; ++low, --high)
        std::swap_ranges(samples.begin() + static_cast<std::ptrdiff_t>(low * rowLength),
                         samples.begin() + static_cast<std::ptrdiff_t>((low + 1) * rowLength),
                         samples.begin() + static_cast<std::ptrdiff_t>(high * rowLength));
}

template <class T>
void settle(const sur_object& object, recorded_image& image)
{
    const std::span<T> samples = elements_of<T>(image);
    if (!object.isCurve()) flip_rows(samples, std::size_t{object.width} * object.pointValues, object.height);
    std::vector<void_range> voids;
    for (std::size_t i = 0; object.hasVoids && i < samples.size(); ++i) {
        if (samples[i] != object.voidValue) continue;
        if (!voids.empty() && voids.back().first + voids.back().count == i)
            ++voids.back().count;
        else
            voids.push_back({i, 1});
    }
    settle_samples(image, voids);
}

void add_string(recorded_image& image, const char* key, const std::string& value)
{
    if (!value.empty()) image.strings[key] = value;
}

std::string date_of(const sur_object& object)
{
    const auto [second, minute, hour, day, month, year] = object.time;
    if (day < 1 || month < 1 || year < 1) return {};
    return base::formatted("%04d-%02d-%02d %02d:%02d:%02d", year, month, day, hour, minute, second);
}

const char* acquisition_name(int acquisition) noexcept
{
    return acquisition == 6 ? "AFM" : acquisition == 7 ? "STM" : "";
}

void add_strings(const sur_object& object, const std::string& comment, recorded_image& image)
{
    add_string(image, "\\Date", date_of(object));
    add_string(image, "Object name", object.name);
    add_string(image, "Operator", object.user);
    add_string(image, "X axis", object.xName);
    add_string(image, "Y axis", object.yName);
    add_string(image, "Z axis", object.zName);
    if (object.isMap()) add_string(image, "Spectral axis", object.spectralName);
    add_string(image, "Acquisition", acquisition_name(object.acquisition));
    if (object.seconds > 0.0 && std::isfinite(object.seconds))
        add_string(image, "Duration", base::general(object.seconds) + " s");
    add_string(image, "Comment", comment);
}

std::string label_of(const sur_object& object)
{
    if (!object.name.empty()) return object.name;
    return object.zName.empty() ? "Image" : object.zName;
}

/// What keeps the values at `offset` from being read. Objects that are no maps can state a number of values per point
/// that their data do not have.
std::string settle_size(source& file, sur_object& object, std::uint64_t offset)
{
    std::string reason = check_sur_values(file, object, offset);
    if (reason.empty() || object.kind == sur_kind::spectral_map || object.pointValues == 1) return reason;
    object.pointValues = 1;
    return check_sur_values(file, object, offset).empty() ? std::string() : reason;
}

/// Reads the object at `offset`, of which the header stands already, and moves behind it.
base::read_result<recorded_image> read_object(source& file, sur_object object, const std::string& id,
                                              std::uint64_t& offset)
{
    const std::uint64_t start = offset;
    offset += surHeaderBytes + object.commentBytes + object.privateBytes;
    if (std::string reason = settle_size(file, object, offset); !reason.empty())
        return base::read_error{start, std::move(reason)};
    recorded_image image = make_stream(object, id, label_of(object));
    const std::span bytes(static_cast<std::byte*>(image.stream.array_data()),
                          std::size_t{image.stream.array_length()} * image.stream.array_element_size());
    if (std::string reason = read_sur_values(file, object, offset, bytes); !reason.empty())
        return base::read_error{offset, std::move(reason)};
    const axis_fields x{"the x step", "the x offset"}, y{"the y step", "the y offset"};
    if (object.isMap())
        name_axis_fields(image, {{"the spectral step", "the spectral offset"}, x, y});
    else if (object.isCurve())
        name_axis_fields(image, {x});
    else
        name_axis_fields(image, {x, y});
    if (object.sampleBits == 16)
        settle<std::int16_t>(object, image);
    else
        settle<std::int32_t>(object, image);
    std::string comment(object.commentBytes, '\0');
    if (!file.read(start + surHeaderBytes, std::as_writable_bytes(std::span(comment)))) comment.clear();
    add_strings(object, header_text(comment), image);
    return image;
}

/// Objects that a file must hold by its first header; a composite kind is several of them.
std::size_t stated_objects(const sur_object& first)
{
    const std::size_t parts = first.kind == sur_kind::rgb_image               ? 3
                              : first.kind == sur_kind::rgb_surface           ? 4
                              : first.kind == sur_kind::rgb_intensity_surface ? 2
                                                                              : 1;
    return std::max<std::size_t>(first.objects, parts);
}

/// True when another object begins at `offset`. What follows the last object is not looked at.
bool has_object(source& file, std::uint64_t offset)
{
    std::byte magic[surMagic.size()];
    return offset == 0 || (file.read(offset, magic) && is_sur_header(magic));
}

} // namespace

base::read_result<recording> read_sur_group(source& file) { return read_file_group(file, sur_reader); }

bool sniff_sur(std::span<const std::byte> head) { return is_sur_header(head); }

} // namespace vldv::formats

base::read_result<formats::recording> sur_reader(formats::source& file)
{
    using namespace formats;
    recording result;
    std::vector<std::string> ids;
    std::byte header[surHeaderBytes];
    std::size_t stated = 1;
    std::uint64_t offset = 0;
    // What cannot be read ends the file: the length of the object is not known. What stands before it is whole.
    const auto refuse = [&](base::read_error why) -> base::read_result<recording> {
        if (result.items.empty()) return why;
        leave_note(result, "Objects left out", why.reason);
        return std::move(result);
    };
    while (has_object(file, offset)) {
        if (!file.read(offset, header)) return refuse({offset, "header cut short"});
        const auto object = parse_sur_object(header);
        if (!object) return refuse({offset, object.error().reason});
        if (offset == 0) stated = stated_objects(*object);
        if (!file.progress(static_cast<double>(offset) / static_cast<double>(file.size())))
            return base::read_error{offset, "reading was cancelled"};
        auto image = read_object(file, *object, unique_id(label_of(*object), ids), offset);
        if (!image) return refuse(image.error());
        result.items.emplace_back(std::move(*image));
    }
    if (const std::string surplus = told_surplus("the objects", offset, file.size()); !surplus.empty())
        add_warning(result, surplus);
    if (result.items.size() < stated)
        return refuse({offset, "cut short: " + std::to_string(result.items.size()) + " of " + std::to_string(stated) +
                                   " objects"});
    return result;
}
