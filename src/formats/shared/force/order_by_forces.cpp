#include "base/units.h"
#include "formats/shared/force/force_order.h"
#include "formats/shared/left_out.h"
#include "formats/shared/void_ranges.h"

#include <algorithm>
#include <cstring>
#include <optional>

// Where the contact lies in records of which the file does not say it.

namespace vldv::formats {

namespace {

std::string text_of(const char* text) { return text ? text : ""; }

unsigned dimensions_of(const recorded_image& image) { return image.stream.get_dimensions_number(); }

/// Force or vertical deflection of which no order is told.
bool is_unordered_force(const recorded_image& image)
{
    return (dimensions_of(image) == 1 || dimensions_of(image) == 3) && image.stream.array_type() == SPM_ARRAY_INT16 &&
           image.stream.values.get_axes_number() != 0 && !image.strings.contains(recordedOrderKey) &&
           holds_forces(image.stream);
}

recorded_image* image_named(recording& content, const char* id)
{
    for (auto& item : content.items)
        if (auto* const image = std::get_if<recorded_image>(&item);
            id && image && !std::strcmp(image->stream.get_name(), id))
            return image;
    return nullptr;
}

/// True when sample i of both images was taken at the same moment: they have one shape and are measured against the
/// same, or `other` is what `force` is measured against or stands beside that.
bool is_of_same_samples(const recorded_image& force, const recorded_image& other)
{
    const SPMDataStream &a = force.stream, &b = other.stream;
    if (dimensions_of(force) != dimensions_of(other) || a.array_length() != b.array_length()) return false;
    for (unsigned d = 0; d < dimensions_of(force); ++d)
        if (a.get_dimension(d).length != b.get_dimension(d).length) return false;
    const std::string parameter = text_of(b.get_parameter_stream());
    return curve_lengths_of(force) == curve_lengths_of(other) &&
           a.get_dimension(0).get_axis(0) == b.get_dimension(0).get_axis(0) &&
           (parameter.empty() || parameter == text_of(a.get_parameter_stream()));
}

/// The curves of an image, sub-image by sub-image.
struct curve_table {
    const recorded_image& image;
    std::size_t points;
    std::vector<std::size_t> lengths;
    std::size_t each; ///< curves of a sub-image
    std::vector<void_range> voids;

    explicit curve_table(const recorded_image& image_)
        : image(image_), points(image_.stream.get_dimension(0).length), lengths(curve_lengths_of(image_)), each(1)
    {
        for (unsigned d = 1; d < dimensions_of(image); ++d) each *= image.stream.get_dimension(d).length;
        if (const auto told = image.strings.find(voidRangesKey); told != image.strings.end())
            voids = void_ranges(image.stream, told->second.c_str());
    }
    double value(std::size_t curve, std::size_t sample) const
    {
        const auto* const samples = static_cast<const std::int16_t*>(image.stream.array_data());
        return image.stream.values.get_axis(0).at(samples[curve * points + sample]);
    }
    /// Of the measured samples.
    std::vector<double> values(std::size_t curve) const
    {
        const measured_part part = measured_part_of(lengths[curve], {{voids, curve * points}});
        std::vector<double> out;
        for (std::size_t i = part.first; i < part.end; ++i)
            if (part.gaps.empty() || !part.gaps[i - part.first]) out.push_back(value(curve, i));
        return out;
    }
    /// The way that the name of a curve's sub-image tells, else that of the image.
    force_way wayOf(std::size_t curve) const
    {
        const auto& names = image.stream.subimage_names();
        const std::size_t sub = curve / each;
        const force_way way = sub < names.size() ? way_of_part(text_of(names[sub].text)) : force_way::unknown;
        return way != force_way::unknown ? way : way_of_part(text_of(image.stream.get_description()));
    }
};

/// What the forces of a curve tell.
struct told_curve {
    std::size_t image, curve;
    contact_end end;
};

/// Force images whose samples were taken together.
class force_group {
public:
    force_group(recording& content_, recorded_image& first) : content(content_)
    {
        const char* const parameter = first.stream.get_parameter_stream();
        recorded_image* const positions = image_named(content, parameter);
        isLost = parameter && (!positions || positions->stream.array_type() != SPM_ARRAY_INT16 ||
                               positions->stream.array_length() != first.stream.array_length());
        if (positions && !isLost) places.emplace(*positions);
        for (auto& item : content.items) {
            auto* const image = std::get_if<recorded_image>(&item);
            if (!image || image->strings.contains(recordedOrderKey)) continue;
            if (image != positions && !is_of_same_samples(first, *image)) continue;
            const bool isForce =
                is_unordered_force(*image) && text_of(image->stream.get_parameter_stream()) == text_of(parameter);
            (isForce ? forces : others).push_back(image);
        }
        for (const recorded_image* each : forces) tables.emplace_back(*each);
    }

    const std::vector<recorded_image*>& images() const noexcept { return forces; }

    void order()
    {
        const VLAxis x =
            places ? places->image.stream.values.get_axis(0) : forces.front()->stream.get_dimension(0).get_axis(0);
        const bool isClock = units_convertable(x.get_units(), "s") > 0;
        if (isLost || (!isClock && *x.get_units() && units_convertable(x.get_units(), "m") <= 0)) return;
        ask();
        if (isClock)
            turn(endsInTime(), ", as forces and names tell");
        else if (const auto contact = commonContact())
            turn(endsNear(*contact), ", as the forces tell");
        else if (runInTime())
            turn(endsInTime(), ", as forces and names tell");
        else if (!told.empty())
            turn(std::vector(forces.size(), std::vector{contact_end::unclear}), "");
    }

private:
    using image_ends = std::vector<std::vector<contact_end>>; ///< of each force image, one a curve or one for all

    /// Asks the curves; of a volume some of each sub-image.
    void ask()
    {
        constexpr std::size_t asked = 64;
        for (std::size_t i = 0; i < tables.size(); ++i) {
            const curve_table& table = tables[i];
            const std::size_t stride = std::max<std::size_t>(1, table.each / asked);
            for (std::size_t curve = 0; curve < table.lengths.size(); ++curve)
                if (curve % table.each % stride == 0)
                    if (const contact_end end = contact_by_force(table.values(curve)); end != contact_end::unknown)
                        told.push_back({i, curve, end});
        }
    }

    double positionAt(const told_curve& each, bool isFirst) const
    {
        const curve_table& table = tables[each.image];
        return position(table, each.curve, isFirst ? 0 : table.lengths[each.curve] - 1);
    }
    double position(const curve_table& table, std::size_t curve, std::size_t sample) const
    {
        return places ? places->value(curve, sample)
                      : table.image.stream.get_dimension(0).get_axis(0).at(static_cast<double>(sample));
    }

    /// Where the curves have their contact, when most of those that tell it agree.
    std::optional<double> commonContact() const
    {
        std::vector<double> found;
        for (const told_curve& each : told)
            if (is_known(each.end)) found.push_back(positionAt(each, each.end == contact_end::first));
        if (found.empty()) return std::nullopt;
        const auto middle = found.begin() + static_cast<std::ptrdiff_t>(found.size() / 2);
        std::ranges::nth_element(found, middle);
        const auto agrees = [&](const told_curve& each) {
            return each.end == contact_by_position(positionAt(each, true), positionAt(each, false), *middle);
        };
        const auto agreeing = static_cast<std::size_t>(std::ranges::count_if(told, agrees));
        return 4 * agreeing >= 3 * found.size() ? std::optional(*middle) : std::nullopt;
    }

    image_ends endsNear(double contact) const
    {
        image_ends out;
        for (const curve_table& table : tables) {
            auto& ends = out.emplace_back(table.lengths.size(), contact_end::unknown);
            for (std::size_t curve = 0; curve < ends.size(); ++curve)
                if (const std::size_t length = table.lengths[curve])
                    ends[curve] =
                        contact_by_position(position(table, curve, 0), position(table, curve, length - 1), contact);
        }
        return out;
    }

    /// True when all that is told is what the names mean in time.
    bool runInTime() const
    {
        const auto isInTime = [&](const told_curve& each) {
            return each.end == contact_in_time(tables[each.image].wayOf(each.curve));
        };
        return !told.empty() && std::ranges::all_of(told, isInTime);
    }

    /// Of the curves of each sub-image: what their names mean in time, and what most of those that tell it tell.
    image_ends endsInTime() const
    {
        image_ends out;
        for (std::size_t i = 0; i < tables.size(); ++i) {
            const curve_table& table = tables[i];
            auto& ends = out.emplace_back();
            for (std::size_t curve = 0; curve < table.lengths.size(); ++curve)
                ends.push_back(curve % table.each ? ends.back()
                                                  : agreed(contact_in_time(table.wayOf(curve)), toldOf(i, curve)));
        }
        return out;
    }
    /// What the forces of the sub-image tell that begins with a curve.
    contact_end toldOf(std::size_t image, std::size_t first) const
    {
        std::vector<contact_end> ends;
        for (const told_curve& each : told)
            if (each.image == image && each.curve >= first && each.curve - first < tables[image].each)
                ends.push_back(each.end);
        return contact_of_most(ends);
    }
    static contact_end agreed(contact_end byName, contact_end byForce) noexcept
    {
        if (byName == contact_end::unknown || byForce == contact_end::unknown)
            return byName == contact_end::unknown ? byForce : byName;
        return byName == byForce ? byName : contact_end::unclear;
    }

    /// Turns the images; what was measured at the same samples goes with them where they agree, and with positions in a
    /// stream of their own they have to.
    void turn(image_ends ends, const char* toldBy)
    {
        const bool areAlike = std::ranges::all_of(ends, [&](const auto& each) { return each == ends.front(); });
        if (places && !areAlike) ends.assign(ends.size(), {contact_end::unclear});
        for (std::size_t i = 0; i < forces.size(); ++i) turnOne(*forces[i], ends[i], toldBy);
        for (recorded_image* const each : others)
            if (areAlike) turnOne(*each, ends.front(), toldBy);
        if (std::ranges::any_of(ends, [](const auto& each) { return std::ranges::count(each, contact_end::unclear); }))
            add_warning(content, "\"" + text_of(forces.front()->stream.get_description()) +
                                     "\": where the contact lies is not clear, as with inverted deflections; the order "
                                     "stays as recorded");
    }
    static void turnOne(recorded_image& image, std::span<const contact_end> ends, const char* toldBy)
    {
        order_from_contact(image, ends);
        if (const auto text = image.strings.find(recordedOrderKey);
            text != image.strings.end() && std::ranges::any_of(ends, is_known))
            text->second += toldBy;
    }

    recording& content;
    bool isLost; ///< the positions are not there
    std::vector<recorded_image*> forces, others;
    std::optional<curve_table> places; ///< of the positions; nothing: the axis
    std::vector<curve_table> tables;   ///< of the forces
    std::vector<told_curve> told;      ///< by curves whose forces tell something
};

} // namespace

void order_by_forces(recording& content)
{
    std::vector<const recorded_image*> done;
    for (auto& item : content.items) {
        auto* const image = std::get_if<recorded_image>(&item);
        if (image && is_unordered_force(*image) && !std::ranges::count(done, image)) {
            force_group group(content, *image);
            group.order();
            for (const recorded_image* each : group.images()) done.push_back(each);
        }
    }
}

} // namespace vldv::formats
