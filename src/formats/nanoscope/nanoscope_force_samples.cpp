#include "formats/nanoscope/nanoscope_force.h"
#include "formats/nanoscope/nanoscope_strings.h"
#include "formats/shared/force/curve_group.h"
#include "formats/shared/force/force_order.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>

// Turns the samples of a force channel into images.

namespace vldv::formats {

namespace {

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

bool is_hold(const curve_part& part) { return std::string_view(part.name) == "Hold"; }

/// The ramp as an axis of another count of samples.
VLAxis ramp_of(const nanoscope_force& channel, unsigned points)
{
    VLAxis axis = channel.ramp;
    if (points != channel.approach && points > 1) axis.scale *= (channel.approach - 1.0) / (points - 1.0);
    return axis;
}

/// An image to be and the parts that are its sub-images.
struct part_image {
    std::vector<curve_part> parts;
    recorded_image image;

    /// Samples of the longest part.
    unsigned points() const { return std::ranges::max_element(parts, {}, &curve_part::count)->count; }
};

void make_part_image(const nanoscope_force& channel, bool isOwn, std::vector<std::string>& ids, part_image& out)
{
    const curve_part& first = out.parts.front();
    const std::string label = isOwn ? channel.channel + " " + first.name : channel.channel;
    std::vector<extent> dimensions{{out.points(), is_hold(first) ? VLAxis() : ramp_of(channel, first.count)}};
    if (channel.columns) {
        dimensions.push_back({channel.columns, channel.x});
        dimensions.push_back({channel.rows, channel.y});
    }
    out.image = make_samples(unique_id(label, ids), label, dimensions, static_cast<unsigned>(out.parts.size()),
                             channel.scales.front(), channel.sampleBytes == 4 ? SPM_ARRAY_INT32 : SPM_ARRAY_INT16);
    if (channel.columns)
        name_axis_fields(out.image, {{"the ramp", "the ramp"}, {"Scan Size", "X Offset"}, {"Scan Size", "Y Offset"}});
    std::vector<std::string> names;
    std::vector<unsigned> lengths;
    for (const curve_part& part : out.parts) {
        names.emplace_back(part.name);
        lengths.push_back(part.count);
    }
    name_subimages(out.image, names);
    note_curve_lengths(out.image, out.points(), lengths);
    add_section_strings(out.image.strings, *channel.section);
    for (std::size_t i = 1; i < channel.scales.size(); ++i)
        add_calibration(out.image, channel.scales.front(), channel.scales[i]);
}

/// Approach and retract, then every part by itself that lies on no such axis.
std::vector<part_image> make_part_images(const nanoscope_force& channel, std::vector<std::string>& ids)
{
    std::vector<part_image> images(1);
    for (const curve_part& part : parts_of(channel)) {
        if (!is_hold(part) && (part.count == channel.approach || channel.isPadded()))
            images.front().parts.push_back(part);
        else
            images.push_back({{part}, {}});
    }
    for (std::size_t i = 0; i < images.size(); ++i) make_part_image(channel, i != 0, ids, images[i]);
    return images;
}

/// Copies a curve's part to its sub-image, turned round as it is shown, and fills up with its last value.
template <class T>
void copy_part(std::span<const T> part, bool isTurned, std::span<T> out)
{
    if (isTurned)
        std::reverse_copy(part.begin(), part.end(), out.begin());
    else
        std::copy(part.begin(), part.end(), out.begin());
    std::fill(out.begin() + static_cast<std::ptrdiff_t>(part.size()), out.end(), out[part.size() - 1]);
}

/// Copies curves to their sub-images. Approach and retract are stored from the contact on and stay so; a bias is shown
/// from its begin.
template <class T>
void distribute(const nanoscope_force& channel, std::span<const T> block, std::uint64_t firstCurve,
                std::vector<part_image>& images)
{
    const std::size_t curves = block.size() / channel.samples();
    for (part_image& target : images) {
        const unsigned points = target.points();
        for (std::size_t s = 0; s < target.parts.size(); ++s) {
            const curve_part& part = target.parts[s];
            auto out = elements_of<T>(target.image).subspan((s * channel.curves() + firstCurve) * points);
            for (std::size_t i = 0; i < curves; ++i)
                copy_part(block.subspan(i * channel.samples() + part.first, part.count),
                          channel.isOverBias && !channel.isOverTime && !is_hold(part), out.subspan(i * points, points));
        }
    }
}

/// Tells in the texts where the contact lies and which way the deflection goes.
void note_contact(const nanoscope_force& channel, part_image& target)
{
    std::vector<contact_end> ends;
    for (const curve_part& part : target.parts)
        ends.push_back(channel.startsAtContact() && !is_hold(part) ? contact_end::first : contact_end::unknown);
    order_from_contact(target.image, ends);
    note_deflection_sign(target.image);
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

} // namespace

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
        note_contact(channel, each);
        result.push_back(std::move(each.image));
    }
    return result;
}

recorded_image make_nanoscope_ramp(const nanoscope_force& channel, std::vector<std::string>& ids)
{
    std::vector<named_curve> curves;
    for (const curve_part& part : parts_of(channel)) {
        if (is_hold(part)) continue;
        const VLAxis axis = ramp_of(channel, part.count);
        named_curve curve{part.name, {}};
        for (unsigned i = 0; i < part.count; ++i) curve.values.push_back(axis.start + axis.scale * i);
        curves.push_back(std::move(curve));
    }
    return make_curve_group(unique_id("Ramp", ids), "Ramp", {}, {1.0, 0.0, channel.ramp.get_units(), "ramp settings"},
                            curves);
}

} // namespace vldv::formats
