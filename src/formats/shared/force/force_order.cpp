#include "formats/shared/force/force_order.h"

#include "base/text.h"
#include "base/units.h"
#include "formats/shared/force/curve_lengths.h"
#include "formats/shared/void_ranges.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <vector>

namespace vldv::formats {

namespace {

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

std::string text_of(const char* text) { return text ? text : ""; }

void turn_voids(recorded_image& image, const std::vector<bool>& turned, std::span<const std::size_t> lengths)
{
    const auto told = image.strings.find(voidRangesKey);
    if (told == image.strings.end()) return;
    const std::vector<void_range> ranges = void_ranges(image.stream, told->second.c_str());
    told->second =
        void_ranges_text(image.stream.array_length(), turned_ranges(ranges, turned, lengths, points_of(image)));
}

const char* words_for(contact_end end) noexcept
{
    if (end == contact_end::unclear) return "not clear, as recorded";
    return end == contact_end::last ? "free end first" : "contact first";
}

/// How the curves of each way lie in the file.
class recorded_orders {
public:
    void add(force_way way, contact_end end)
    {
        seen[static_cast<std::size_t>(way)][static_cast<std::size_t>(end)] = true;
    }
    /// "Approach: free end first; Retract: contact first"; empty when nothing is known.
    std::string text() const
    {
        static constexpr const char* names[] = {"", "Approach: ", "Retract: "};
        std::string out;
        for (std::size_t way = 0; way < std::size(names); ++way) {
            if (const std::string words = wordsOf(seen[way]); !words.empty())
                out += (out.empty() ? "" : "; ") + std::string(names[way]) + words;
        }
        return out;
    }

private:
    using seen_ends = std::array<bool, 4>; ///< one a value of contact_end

    static std::string wordsOf(const seen_ends& ends)
    {
        std::vector<std::string> words;
        for (const contact_end end : {contact_end::last, contact_end::first, contact_end::unclear})
            if (ends[static_cast<std::size_t>(end)]) words.emplace_back(words_for(end));
        if (words.size() < 2) return words.empty() ? std::string() : words[0];
        std::string out;
        for (const std::string& each : words) out += (out.empty() ? "some " : ", some ") + each;
        return out;
    }

    std::array<seen_ends, 3> seen{};
};

} // namespace

std::vector<std::size_t> curve_lengths_of(const recorded_image& image)
{
    const auto told = image.strings.find(curveLengthsKey);
    return curve_lengths(image.stream, told == image.strings.end() ? nullptr : told->second.c_str());
}

void order_from_contact(recorded_image& image, std::span<const contact_end> ends)
{
    const std::vector<std::size_t> lengths = curve_lengths_of(image);
    const std::size_t points = points_of(image);
    if (ends.empty() || lengths.empty() || lengths.size() % ends.size() != 0) return;
    const std::size_t curves = lengths.size(), each = curves / ends.size();
    const std::vector<smart_string>& names = image.stream.subimage_names();
    const auto wayOf = [&](std::size_t curve) {
        return names.empty() ? force_way::unknown : way_of_part(text_of(names[curve * names.size() / curves].text));
    };
    recorded_orders orders;
    std::vector<bool> turned(curves);
    bool anyTurned = false, allTurned = true;
    for (std::size_t i = 0; i < curves; ++i) {
        if (lengths[i] == 0) continue; // not measured
        const contact_end end = ends[i / each];
        orders.add(wayOf(i), end);
        anyTurned |= end == contact_end::last;
        allTurned &= end == contact_end::last;
        turned[i] = end == contact_end::last;
        if (turned[i]) turn_curve(image.stream, i, lengths[i], points);
    }
    if (anyTurned) turn_voids(image, turned, lengths);
    if (anyTurned) allTurned ? turn_axes(image.stream) : count_from_contact(image.stream);
    if (const std::string text = orders.text(); !text.empty()) image.strings[recordedOrderKey] = text;
}

bool is_deflection_name(std::string_view label)
{
    const std::string name = base::lower_ascii(label);
    if (name.find("hdefl") != std::string::npos || name.find("lateral") != std::string::npos ||
        name.find("horizontal") != std::string::npos)
        return false;
    return name.find("defl") != std::string::npos || name.find("dfl") != std::string::npos;
}

bool holds_forces(const SPMDataStream& stream)
{
    const std::string label = text_of(stream.get_description());
    const std::string name = base::lower_ascii(label.empty() ? text_of(stream.get_name()) : label);
    for (const char* other : {"friction", "lateral", "torsion", "hdefl", "horizontal"})
        if (name.find(other) != std::string::npos) return false;
    const bool isForce =
        stream.values.get_axes_number() > 0 && units_convertable(stream.values.get_axis(0).get_units(), "N") > 0;
    return isForce || name.find("force") != std::string::npos || is_deflection_name(name);
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

} // namespace vldv::formats
