#include "base/text.h"
#include "formats/jpk/jpk_layout.h"
#include "formats/jpk/jpk_strings.h"
#include "formats/shared/finish_recording.h"
#include "formats/shared/force/curve_group.h"
#include "formats/shared/force/force_order.h"
#include "formats/shared/left_out.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>

// Turns the segments of an archive into images: one a channel, one sub-image a segment.

namespace vldv::formats {

namespace {

/// Repeats the last of `points` numbers to the end.
void pad(std::span<std::byte> out, std::uint64_t points, unsigned bytes)
{
    const std::size_t filled = static_cast<std::size_t>(points) * bytes;
    for (std::size_t at = filled; at + bytes <= out.size(); at += bytes)
        std::copy_n(out.begin() + static_cast<std::ptrdiff_t>(filled - bytes), bytes,
                    out.begin() + static_cast<std::ptrdiff_t>(at));
}

/// Unpacks numbers of one part. \return empty, or what was wrong
std::string unpack_part(const jpk_archive& archive, const jpk_channel_part& part, std::span<std::byte> out)
{
    const std::string name = part.segment->folder + part.channel->file;
    const zip_reader::entry& entry = *archive.zip.find(name);
    if (entry.bytes % element_size(part.channel->type) != 0)
        return name + ": its size is no multiple of that of a number";
    const std::string problem = archive.zip.unpack(entry, out);
    if (!problem.empty()) return name + ": " + problem;
    to_native(out, element_size(part.channel->type), byte_order::big);
    return {};
}

/// Converts a part to numbers of the base slot, or with a slot to its physical values.
std::string convert_part(const jpk_archive& archive, const jpk_channel_part& part, const value_scale* slot,
                         std::span<double> out)
{
    const jpk_channel& channel = *part.channel;
    const auto values = out.first(static_cast<std::size_t>(part.points));
    if (channel.isComputed) {
        for (std::size_t i = 0; i < out.size(); ++i) {
            out[i] = channel.start + channel.step * static_cast<double>(std::min(i, values.size() - 1));
            if (slot) out[i] = out[i] * slot->step + slot->offset;
        }
        return {};
    }
    std::vector<std::byte> raw(static_cast<std::size_t>(part.points) * element_size(channel.type));
    const std::string problem = unpack_part(archive, part, raw);
    if (!problem.empty()) return problem;
    decode_numbers(raw, channel.type, byte_order::little, values);
    for (double& value : values) {
        value = value * channel.encoderFactor + channel.encoderOffset;
        if (slot) value = value * slot->step + slot->offset;
    }
    std::fill(out.begin() + static_cast<std::ptrdiff_t>(values.size()), out.end(), values.back());
    return {};
}

/// Names of the segments, each once: "Pause", "Approach", "Pause 2".
std::vector<std::string> segment_names(const jpk_archive& archive, const jpk_layout& layout)
{
    std::vector<std::string> names;
    std::map<std::string, int> seen;
    for (std::size_t s = 0; s < layout.segments; ++s) {
        const auto curve = std::find_if(archive.curves.begin(), archive.curves.end(), [&](const jpk_curve& each) {
            return each.segments.size() > s && !each.segments[s].name.empty();
        });
        std::string name = curve == archive.curves.end() ? "Segment" : curve->segments[s].name;
        if (const int count = ++seen[name]; count > 1) name += " " + std::to_string(count);
        if (layout.columns || archive.curves.size() == 1) {
            names.push_back(std::move(name));
            continue;
        }
        for (const jpk_curve& each : archive.curves)
            names.push_back("Curve " + std::to_string(each.number) + ", " + name);
    }
    return names;
}

/// Time of the samples when all segments of the archive took as long for a sample, else their number.
VLAxis sample_axis(const jpk_archive& archive)
{
    double spacing = 0.0;
    for (const jpk_curve& curve : archive.curves)
        for (const jpk_segment& segment : curve.segments) {
            if (segment.name.empty()) continue; // its header is lost
            if (!(segment.duration > 0) || segment.points == 0) return {};
            const double own = segment.duration / static_cast<double>(segment.points);
            if (spacing == 0.0) spacing = own;
            if (std::fabs(own - spacing) > 1e-4 * spacing) return {};
        }
    return spacing > 0.0 ? VLAxis(0.0, spacing, "s") : VLAxis();
}

/// Makes the streams of channels.
class channel_loader {
public:
    channel_loader(source& file_, const jpk_archive& archive_, const jpk_layout& layout_)
        : file(file_),
          archive(archive_),
          layout(layout_),
          names(segment_names(archive_, layout_)),
          axis(sample_axis(archive_))
    {
    }

    /// \param damaged  receives the parts that cannot be read: they count as not measured
    base::read_result<recorded_image> load(const jpk_channel_parts& parts, const std::string& id, double start,
                                           double share, counted_problem& damaged)
    {
        const jpk_channel& first = *parts.first;
        const bool isRaw = parts.sameEncoding && parts.sameSlots && !first.isComputed;
        const bool isShown = !parts.sameSlots; // values of the base slot keep the other calibrations
        value_scale scale = isRaw ? first.ofRaw(first.slots.front()) : first.slots.front();
        if (isShown) scale = {1.0, 0.0, parts.units, first.slotIn(parts.units)->origin + " of each curve"};
        recorded_image image = make(parts, id, scale, isRaw ? first.type : SPM_ARRAY_FLOAT64);
        std::vector<void_range> voids;
        std::vector<unsigned> lengths;
        for (std::size_t i = 0; i < parts.parts.size(); ++i) {
            const jpk_channel_part& part = parts.parts[i];
            lengths.push_back(static_cast<unsigned>(part.points));
            if (i % 256 == 0 &&
                !file.progress(start + share * static_cast<double>(i) / static_cast<double>(parts.parts.size())))
                return base::read_error{0, "reading was cancelled"};
            if (part.points == 0) {
                voids.push_back({i * parts.longest, parts.longest});
                continue;
            }
            const std::string problem = isRaw ? fillRaw(image, parts, i) : fillValues(image, parts, i, isShown);
            if (problem.empty()) continue;
            damaged.add(problem);
            voids.push_back({i * parts.longest, parts.longest});
            lengths.back() = 0;
        }
        clearVoids(image, voids);
        if (!isShown)
            for (std::size_t i = 1; i < first.slots.size(); ++i)
                add_calibration(image, scale, isRaw ? first.ofRaw(first.slots[i]) : first.slots[i]);
        settle_samples(image, voids);
        note_curve_lengths(image, static_cast<unsigned>(parts.longest), lengths);
        name_subimages(image, names);
        order_from_contact(image, endsOf(parts));
        note_deflection_sign(image);
        return image;
    }

private:
    /// Segments are stored in the order of time.
    static std::vector<contact_end> endsOf(const jpk_channel_parts& parts)
    {
        std::vector<contact_end> ends;
        for (const jpk_channel_part& part : parts.parts)
            ends.push_back(part.segment ? contact_in_time(way_of_part(part.segment->name)) : contact_end::unknown);
        return ends;
    }

    recorded_image make(const jpk_channel_parts& parts, const std::string& id, const value_scale& scale,
                        SPMVarArrayType type)
    {
        std::vector<extent> dimensions{{static_cast<unsigned>(parts.longest), axis}};
        auto frames = static_cast<unsigned>(layout.segments);
        if (layout.columns) {
            dimensions.push_back({layout.columns, layout.x});
            dimensions.push_back({layout.rows, layout.y});
        } else {
            frames *= static_cast<unsigned>(layout.curves());
        }
        recorded_image image = make_samples(id, parts.name, dimensions, frames, scale, type);
        const axis_fields samples{"duration and num-points", nullptr};
        if (layout.columns)
            name_axis_fields(image, {samples, {"ulength of the grid", "xcenter"}, {"vlength of the grid", "ycenter"}});
        return image;
    }

    std::string fillRaw(recorded_image& image, const jpk_channel_parts& parts, std::size_t i)
    {
        const jpk_channel_part& part = parts.parts[i];
        const unsigned bytes = element_size(part.channel->type);
        const auto room = static_cast<std::size_t>(parts.longest) * bytes;
        const std::span out(static_cast<std::byte*>(image.stream.array_data()) + i * room, room);
        const std::string problem =
            unpack_part(archive, part, out.first(static_cast<std::size_t>(part.points) * bytes));
        if (problem.empty()) pad(out, part.points, bytes);
        return problem;
    }

    std::string fillValues(recorded_image& image, const jpk_channel_parts& parts, std::size_t i, bool shown)
    {
        const auto room = static_cast<std::size_t>(parts.longest);
        const value_scale* slot = shown ? parts.parts[i].channel->slotIn(parts.units) : nullptr;
        return convert_part(archive, parts.parts[i], slot, elements_of<double>(image).subspan(i * room, room));
    }

    static void clearVoids(recorded_image& image, std::span<const void_range> voids)
    {
        const std::size_t bytes = element_size(image.stream.array_type());
        for (const void_range& each : voids)
            std::fill_n(static_cast<std::byte*>(image.stream.array_data()) + each.first * bytes, each.count * bytes,
                        std::byte{0});
    }

    source& file;
    const jpk_archive& archive;
    const jpk_layout& layout;
    std::vector<std::string> names;
    VLAxis axis;
};

/// How well a channel tells the position of the probe; 0 for those that do not.
int position_rank(const std::string& name)
{
    static const char* const ranked[] = {"height", "head-height", "strainGaugeHeight", "capacitiveSensorHeight",
                                         "measuredHeight"};
    for (int i = 0; i < static_cast<int>(std::size(ranked)); ++i)
        if (name == ranked[i]) return i + 1;
    return base::lower_ascii(name).find("height") != std::string::npos ? -1 : 0; // smoothed copies and the like
}

bool has_same_shape(const SPMDataStream& a, const SPMDataStream& b)
{
    bool isSame = a.array_length() == b.array_length() && a.get_dimensions_number() == b.get_dimensions_number();
    for (unsigned d = 0; isSame && d < a.get_dimensions_number(); ++d)
        isSame = a.get_dimension(d).length == b.get_dimension(d).length;
    return isSame;
}

/// Draws every channel over the best position channel.
void set_parameter_streams(recording& result)
{
    const SPMDataStream* best = nullptr;
    int bestRank = 0;
    for (const auto& item : result.items) {
        const SPMDataStream& stream = std::get<recorded_image>(item).stream;
        const int rank = position_rank(stream.get_description());
        if (rank > bestRank) {
            best = &stream;
            bestRank = rank;
        }
    }
    if (!best) return;
    for (auto& item : result.items) {
        SPMDataStream& stream = std::get<recorded_image>(item).stream;
        const bool isPosition = position_rank(stream.get_description()) != 0;
        if (!isPosition && has_same_shape(stream, *best)) stream.set_parameter_stream(best->get_name());
    }
}

std::string first_of(const counted_problem& problem)
{
    return std::to_string(problem.count) + (problem.count == 1 ? " is" : " are") + ", the first: " + problem.first;
}

/// Says what of an archive is not shown, or not as the file meant it.
void tell_problems(const jpk_archive& archive, const jpk_layout& layout, const jpk_problems& problems,
                   recording& result)
{
    for (const std::string& doubt : archive.grid.doubts) add_warning(result, doubt);
    if (archive.grid.points() > 1 && layout.columns == 0)
        add_warning(result, "the curves do not fit, or are scattered over, the grid of " +
                                std::to_string(archive.grid.columns) + " x " + std::to_string(archive.grid.rows) +
                                " points: they stand one after another");
    if (archive.lostPlaces.count != 0)
        add_warning(result, "places of curves that cannot be read: " + first_of(archive.lostPlaces));
    std::string missing;
    for (const auto& [name, reason] : problems.leftOut) missing += (missing.empty() ? "" : "; ") + name + ": " + reason;
    if (!missing.empty()) leave_note(result, "Channels left out", missing);
    if (archive.lostHeaders.count != 0)
        add_warning(result, "headers of segments that cannot be read: " + first_of(archive.lostHeaders));
    for (const auto& [name, part] : problems.parts)
        if (!problems.leftOut.contains(name))
            add_warning(result, name + ": segments that count as not measured: " + first_of(part));
    for (const auto& [name, conversions] : problems.conversions)
        add_warning(result, name + ": conversions left out: " + conversions);
    for (const jpk_curve& curve : archive.curves)
        for (const jpk_segment& segment : curve.segments)
            if (segment.isTimeDamaged)
                return add_warning(result, "samples are counted: the duration or num-points of " + segment.folder +
                                               " is no number above 0");
}

/// Why nothing can be shown.
std::string why_empty(const jpk_archive& archive, const jpk_problems& problems)
{
    if (!problems.leftOut.empty()) return problems.leftOut.begin()->first + ": " + problems.leftOut.begin()->second;
    return archive.lostHeaders.count == 0 ? "no channel of the archive holds samples" : archive.lostHeaders.first;
}

std::size_t measured(const jpk_channel_parts& parts)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(parts.parts, [](const jpk_channel_part& part) { return part.points != 0; }));
}

} // namespace

base::read_result<recording> read_jpk_curves(source& file, const jpk_archive& archive, std::vector<std::string>& ids)
{
    constexpr double headerShare = 0.2;
    const jpk_layout layout = jpk_layout_of(archive);
    jpk_problems problems;
    if (const std::string reason = unlikely_jpk_archive(file, archive, layout); !reason.empty())
        return base::read_error{0, reason};
    const std::vector<jpk_channel_parts> channels = collect_jpk_parts(archive, layout, problems);
    recording result;
    result.strings = jpk_document_strings(archive);
    channel_loader loader(file, archive, layout);
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const jpk_channel_parts& parts = channels[i];
        if (!is_modest_padding(parts.longest * parts.parts.size(), parts.samples)) {
            problems.leftOut.emplace(parts.name, "curves of too different lengths");
            continue;
        }
        const double share = (1.0 - headerShare) / static_cast<double>(channels.size());
        counted_problem damaged;
        auto image = loader.load(parts, unique_id(parts.name, ids), headerShare + share * static_cast<double>(i), share,
                                 damaged);
        if (!image) return image.error();
        if (damaged.count == measured(parts)) {
            problems.leftOut.emplace(parts.name, damaged.first);
            continue;
        }
        if (damaged.count != 0) problems.parts[parts.name].add(damaged);
        add_jpk_strings(archive, parts, image->strings);
        result.items.emplace_back(std::move(*image));
    }
    if (result.items.empty()) return base::read_error{0, why_empty(archive, problems)};
    tell_problems(archive, layout, problems, result);
    set_parameter_streams(result);
    return result;
}

} // namespace vldv::formats
