#include "document/formats/force_order.h"

#include "base/text.h"
#include "base/units.h"
#include "document/formats/curve_lengths.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <optional>
#include <vector>

namespace formats {

namespace {

constexpr const char* orderKey = "\\Recorded order";

std::size_t points_of(const recorded_image& image) noexcept
{
    return image.stream.get_dimensions_number() ? image.stream.get_dimension(0).length : 0;
}

template <class T>
void turn_curve(std::byte* curve, std::size_t length, std::size_t points)
{
    auto* const samples = reinterpret_cast<T*>(curve);
    std::reverse(samples, samples + length);
    std::fill(samples + length, samples + points, samples[length - 1]);
}

void turn_curve(SPMDataStream& stream, std::size_t index, std::size_t length, std::size_t points)
{
    const std::size_t bytes = element_size(stream.array_type());
    std::byte* const curve = static_cast<std::byte*>(stream.array_data()) + index * points * bytes;
    if (length == 0) return;
    if (bytes == 1) turn_curve<std::uint8_t>(curve, length, points);
    if (bytes == 2) turn_curve<std::uint16_t>(curve, length, points);
    if (bytes == 4) turn_curve<std::uint32_t>(curve, length, points);
    if (bytes == 8) turn_curve<std::uint64_t>(curve, length, points);
}

/// All axes of dimension 0, read from the other end; one that only counts the samples goes on doing so.
void turn_axes(SPMDataStream& stream)
{
    SPMDataStream::dimension& along = stream.get_dimension(0);
    for (unsigned i = 0; i < along.get_axes_number(); ++i) {
        VLAxis axis = along.get_axis(i);
        if (axis == VLAxis()) continue;
        axis.start = axis.at(along.length - 1.0);
        axis.scale = -axis.scale;
        along.set_axis(i, axis);
    }
}

/// Axes of curves that were turned one by one: distances from the contact.
void count_from_contact(SPMDataStream& stream)
{
    SPMDataStream::dimension& along = stream.get_dimension(0);
    for (unsigned i = 0; i < along.get_axes_number(); ++i) {
        VLAxis axis = along.get_axis(i);
        axis.start = 0.0;
        axis.scale = std::fabs(axis.scale);
        along.set_axis(i, axis);
    }
}

const char* words_for(contact_end end) noexcept
{
    return end == contact_end::last ? "free end first" : "contact first";
}

/// How the curves of each way lie in the file.
class recorded_orders {
public:
    void add(force_way way, contact_end end)
    {
        if (end == contact_end::unknown) return;
        auto& seen = ends[static_cast<std::size_t>(way)];
        seen = seen == contact_end::unknown || seen == end ? end : contact_end::unknown;
        isMixed[static_cast<std::size_t>(way)] |= seen == contact_end::unknown;
    }
    /// "Approach: free end first; Retract: contact first"; empty when nothing is known.
    std::string text() const
    {
        static constexpr const char* names[] = {"", "Approach: ", "Retract: "};
        std::string out;
        for (std::size_t way = 0; way < std::size(names); ++way) {
            if (ends[way] == contact_end::unknown && !isMixed[way]) continue;
            out += (out.empty() ? "" : "; ") + std::string(names[way]) +
                   (isMixed[way] ? "some free end first, some contact first" : words_for(ends[way]));
        }
        return out;
    }

private:
    contact_end ends[3] = {};
    bool isMixed[3] = {};
};

double mean_of(std::span<const double> values)
{
    double sum = 0.0;
    for (const double value : values) sum += value;
    return sum / static_cast<double>(values.size());
}

std::string text_of(const char* text) { return text ? text : ""; }

bool is_length(const char* units) { return units_convertable(units, "m") > 0; }
bool is_force(const char* units) { return units_convertable(units, "N") > 0; }

/// Force or vertical deflection along one dimension of which no order is told.
bool is_unordered_force(const recorded_image& image)
{
    const SPMDataStream& stream = image.stream;
    if (stream.get_dimensions_number() != 1 || stream.values.get_axes_number() == 0 || image.strings.contains(orderKey))
        return false;
    const std::string label = base::lower_ascii(stream.get_description());
    if (label.find("friction") != std::string::npos || label.find("lateral") != std::string::npos) return false;
    return is_force(stream.values.get_axis(0).get_units()) || is_deflection_name(label);
}

recorded_image* image_named(recording& content, const char* id)
{
    for (auto& item : content.items)
        if (auto* const image = std::get_if<recorded_image>(&item);
            id && image && !std::strcmp(image->stream.get_name(), id))
            return image;
    return nullptr;
}

/// A 16-bit sample of a curve in physical units.
double value_at(const recorded_image& image, std::size_t curve, std::size_t points, std::size_t sample)
{
    const auto* const samples = static_cast<const std::int16_t*>(image.stream.array_data());
    return image.stream.values.get_axis(0).at(samples[curve * points + sample]);
}

/// A force image and where its samples lie: on its axis, or in a stream of as many samples.
struct placed_forces {
    recorded_image& image;
    recorded_image* positions; ///< null for the axis
    std::size_t points;
    std::vector<std::size_t> lengths;

    bool isOverLength() const
    {
        const SPMDataStream& stream = image.stream;
        if (stream.array_type() != SPM_ARRAY_INT16) return false;
        if (!positions) return is_length(stream.get_dimension(0).get_axis(0).get_units());
        return positions->stream.array_type() == SPM_ARRAY_INT16 &&
               positions->stream.array_length() == stream.array_length() &&
               is_length(positions->stream.values.get_axis(0).get_units());
    }
    double positionAt(std::size_t curve, std::size_t sample) const
    {
        return positions ? value_at(*positions, curve, points, sample)
                         : image.stream.get_dimension(0).get_axis(0).at(static_cast<double>(sample));
    }
    /// Where the first curve that tells its contact has it.
    std::optional<double> contact() const
    {
        for (std::size_t curve = 0; curve < lengths.size(); ++curve) {
            std::vector<double> forces;
            for (std::size_t i = 0; i < lengths[curve]; ++i) forces.push_back(value_at(image, curve, points, i));
            const contact_end end = contact_by_force(forces);
            if (end == contact_end::first) return positionAt(curve, 0);
            if (end == contact_end::last) return positionAt(curve, lengths[curve] - 1);
        }
        return std::nullopt;
    }
    std::vector<contact_end> ends(double contact) const
    {
        std::vector<contact_end> out;
        for (std::size_t curve = 0; curve < lengths.size(); ++curve) {
            const std::size_t length = lengths[curve];
            out.push_back(length == 0
                              ? contact_end::unknown
                              : contact_by_position(positionAt(curve, 0), positionAt(curve, length - 1), contact));
        }
        return out;
    }
};

void order_as_told_by_forces(recorded_image& image, std::span<const contact_end> ends)
{
    order_from_contact(image, ends);
    if (std::string& text = image.strings[orderKey]; !text.empty()) text += ", as the forces tell";
}

} // namespace

std::vector<std::size_t> curve_lengths_of(const recorded_image& image)
{
    const auto told = image.strings.find(curveLengthsKey);
    return curve_lengths(image.stream, told == image.strings.end() ? nullptr : told->second.c_str());
}

force_way way_of_part(std::string_view name) noexcept
{
    if (name.find("Approach") != std::string_view::npos) return force_way::approach;
    return name.find("Retract") != std::string_view::npos ? force_way::retract : force_way::unknown;
}

contact_end contact_in_time(force_way way) noexcept
{
    if (way == force_way::approach) return contact_end::last;
    return way == force_way::retract ? contact_end::first : contact_end::unknown;
}

contact_end contact_by_position(double first, double last, double contact) noexcept
{
    const double toFirst = std::fabs(first - contact), toLast = std::fabs(last - contact);
    if (toFirst < toLast) return contact_end::first;
    return toLast < toFirst ? contact_end::last : contact_end::unknown;
}

contact_end contact_by_force(std::span<const double> forces)
{
    constexpr std::size_t fewest = 20;
    constexpr double leastShare = 0.2, leastNoise = 10.0;
    if (forces.size() < fewest) return contact_end::unknown;
    const std::size_t part = forces.size() / 10;
    const double difference = mean_of(forces.first(part)) - mean_of(forces.last(part));
    const auto [lowest, highest] = std::ranges::minmax(forces);
    std::vector<double> steps;
    for (std::size_t i = 1; i < forces.size(); ++i) steps.push_back(std::fabs(forces[i] - forces[i - 1]));
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::ranges::nth_element(steps, middle);
    if (!(std::fabs(difference) > std::max(leastShare * (highest - lowest), leastNoise * *middle)))
        return contact_end::unknown;
    return difference > 0.0 ? contact_end::first : contact_end::last;
}

void order_from_contact(recorded_image& image, std::span<const contact_end> ends)
{
    const std::vector<std::size_t> lengths = curve_lengths_of(image);
    const std::size_t points = points_of(image);
    if (ends.empty() || lengths.empty() || lengths.size() % ends.size() != 0) return;
    const std::size_t curves = lengths.size(), each = curves / ends.size();
    const std::vector<smart_string>& names = image.stream.subimage_names();
    const auto way_of = [&](std::size_t curve) {
        return names.empty() ? force_way::unknown : way_of_part(text_of(names[curve * names.size() / curves].text));
    };
    recorded_orders orders;
    bool anyTurned = false, allTurned = true;
    for (std::size_t i = 0; i < curves; ++i) {
        if (lengths[i] == 0) continue; // not measured
        const contact_end end = ends[i / each];
        orders.add(way_of(i), end);
        anyTurned |= end == contact_end::last;
        allTurned &= end == contact_end::last;
        if (end == contact_end::last) turn_curve(image.stream, i, lengths[i], points);
    }
    if (anyTurned) allTurned ? turn_axes(image.stream) : count_from_contact(image.stream);
    if (const std::string text = orders.text(); !text.empty()) image.strings[orderKey] = text;
}

void order_by_forces(recording& content)
{
    for (auto& item : content.items) {
        auto* const image = std::get_if<recorded_image>(&item);
        if (!image || !is_unordered_force(*image)) continue;
        const char* const parameter = image->stream.get_parameter_stream();
        const placed_forces forces{*image, image_named(content, parameter), points_of(*image),
                                   curve_lengths_of(*image)};
        if ((parameter && !forces.positions) || !forces.isOverLength()) continue;
        const auto contact = forces.contact();
        if (!contact) continue;
        const std::vector<contact_end> ends = forces.ends(*contact);
        const std::string id = parameter ? parameter : "";
        if (!forces.positions) order_as_told_by_forces(*image, ends);
        // Whatever is measured against the same positions turns with them.
        for (auto& other : content.items)
            if (auto* const each = std::get_if<recorded_image>(&other); forces.positions && each)
                if (each == forces.positions || id == text_of(each->stream.get_parameter_stream()))
                    order_as_told_by_forces(*each, ends);
    }
}

bool is_deflection_name(std::string_view label)
{
    const std::string name = base::lower_ascii(label);
    if (name.find("hdefl") != std::string::npos || name.find("lateral") != std::string::npos ||
        name.find("horizontal") != std::string::npos)
        return false;
    return name.find("defl") != std::string::npos || name.find("dfl") != std::string::npos;
}

void note_deflection_sign(recorded_image& image)
{
    const VLAxesContainer& values = image.stream.values;
    if (!is_deflection_name(image.stream.get_description()) || values.get_axes_number() < 2) return;
    std::string falling;
    for (unsigned i = 1; i < values.get_axes_number(); ++i)
        if (values.get_axis(i).scale * values.get_axis(0).scale < 0.0)
            falling += (falling.empty() ? "" : ", ") + std::string(values.get_axis(i).get_units());
    if (falling.empty()) return;
    image.strings["\\Deflection sign"] =
        falling + " falls where " + values.get_axis(0).get_units() + " rises: the sensitivity is below 0";
}

} // namespace formats
