#include "base/element_access.h"
#include "base/stream_fitting.h"
#include "base/text.h"
#include "document/formats/sample_middle.h"
#include "document/formats/stream_shape.h"

#include <algorithm>
#include <cmath>

// How the numbers of files become 16-bit samples, and what happens to those that are no measurement.

namespace formats {

namespace {

constexpr double absurdMagnitude = 1e30; ///< from here on a number is a mark or damage, whatever its unit
constexpr double absurdDistance = 1e6;   ///< from the middle, in spans of it
constexpr double coarseStep = 0.1;       ///< of the span of the middle

/// Which samples were not measured. Takes no memory while there is none.
class void_mask {
public:
    explicit void_mask(std::size_t length_) : length(length_) {}
    void add(std::size_t index)
    {
        if (flags.empty()) flags.resize(length);
        counted += flags[index] ? 0 : 1;
        flags[index] = true;
    }
    /// The part of the range that lies in the array.
    void add(const void_range& range)
    {
        const std::uint64_t first = std::min<std::uint64_t>(range.first, length);
        for (std::uint64_t i = 0; i < std::min<std::uint64_t>(range.count, length - first); ++i)
            add(static_cast<std::size_t>(first + i));
    }
    bool operator[](std::size_t index) const { return !flags.empty() && flags[index]; }
    std::size_t count() const noexcept { return counted; }
    const std::vector<bool>& all() const noexcept { return flags; }

private:
    std::size_t length, counted = 0;
    std::vector<bool> flags;
};

/// The number of the lowest physical value among those that `isVoid` does not name. When there is none the number of
/// the value 0, as near as the type has it.
template <class T, class Predicate>
T lowest_number(const SPMDataStream& stream, std::span<const T> samples, Predicate isVoid)
{
    const VLAxis axis = stream.values.get_axes_number() != 0 ? stream.values.get_axis(0) : VLAxis();
    const bool isFalling = axis.scale < 0.0;
    T lowest{};
    bool any = false;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (isVoid(i)) continue;
        if (!any || (isFalling ? samples[i] > lowest : samples[i] < lowest)) lowest = samples[i];
        any = true;
    }
    if constexpr (std::is_floating_point_v<T>)
        if (const double zero = -axis.start / axis.scale; !any && std::isfinite(zero)) lowest = static_cast<T>(zero);
    return lowest;
}

template <class T>
bool is_plausible(T sample) noexcept
{
    if constexpr (std::is_floating_point_v<T>) return static_cast<double>(std::fabs(sample)) < absurdMagnitude;
    return true;
}

/// Marks what is no number, infinite or of absurd magnitude. \return how many of the last two
template <class T>
std::size_t mark_implausible(std::span<const T> samples, void_mask& voids)
{
    std::size_t absurd = 0;
    if (std::is_integral_v<T> || std::ranges::all_of(samples, is_plausible<T>)) return absurd;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (is_plausible(samples[i])) continue;
        voids.add(i);
        absurd += samples[i] == samples[i] ? 1 : 0; // not those that are no number
    }
    return absurd;
}

/// Marks samples that lie too far from the middle of all. \return how many
template <class T>
std::size_t mark_far(std::span<const T> samples, const middle_range& middle, void_mask& voids)
{
    const double most = absurdDistance * middle.span();
    if (!(most > 0.0)) return 0;
    const std::size_t before = voids.count();
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double value = static_cast<double>(samples[i]);
        if (middle.lowest - value > most || value - middle.highest > most) voids.add(i);
    }
    return voids.count() - before;
}

template <class T>
void fill_voids(recorded_image& image, const void_mask& voids)
{
    if (voids.count() == 0) return;
    const std::span<T> samples = elements_of<T>(image);
    const T lowest = lowest_number<T>(image.stream, samples, [&](std::size_t i) { return voids[i]; });
    for (std::size_t i = 0; i < samples.size(); ++i)
        if (voids[i]) samples[i] = lowest;
}

/// Calls `use` with the samples as a span of their type.
template <class Use>
void with_samples(recorded_image& image, Use&& use)
{
    base::with_element_type(image.stream.array_type(), [&](auto* element) {
        using T = std::remove_pointer_t<decltype(element)>;
        use(std::span<const T>(elements_of<T>(image)));
    });
}

void fill_voids_of_type(recorded_image& image, const void_mask& voids)
{
    with_samples(image, [&](auto samples) {
        fill_voids<std::remove_const_t<typename decltype(samples)::element_type>>(image, voids);
    });
}

void note_voids(recorded_image& image, std::size_t count, std::size_t absurd)
{
    if (count != 0) image.strings["\\Void points"] = std::to_string(count);
    if (absurd == 0) return;
    image.strings["\\Absurd points"] = std::to_string(absurd);
    image.notes.push_back(std::to_string(absurd) + (absurd == 1 ? " sample counts" : " samples count") +
                          " as not measured: 1e30 or more, or further from the middle 99.8 % of all than 10^6 times "
                          "their span");
}

/// Says so when 16 bits cannot resolve what most samples tell. `span` is that of their middle, in the value's unit.
void note_coarse_step(recorded_image& image, double span)
{
    const VLAxis& axis = image.stream.values.get_axis(0);
    if (!(span > 0.0) || !(std::fabs(axis.scale) > coarseStep * span)) return;
    const std::string units = *axis.get_units() ? std::string(" ") + axis.get_units() : std::string();
    image.notes.push_back("values are rounded to steps of " + base::general(std::fabs(axis.scale)) + units +
                          ", while the middle 99.8 % of them span " + base::general(span) + units);
}

/// Whole numbers from 0 to 65535 keep every bit: they move down by 32768 and the axes up.
void shift_to_signed(SPMDataStream& stream)
{
    constexpr double middle = 32768.0;
    const base::element_map down{middle, 0.0, 1.0};
    base::rewrite_elements(stream, SPM_ARRAY_INT16, &down);
    for (unsigned i = 0; i < stream.values.get_axes_number(); ++i) {
        VLAxis axis = stream.values.get_axis(i);
        axis.start += middle * axis.scale;
        stream.values.set_axis(i, axis);
    }
}

/// Whole numbers that 16 bits hold stay as they are. \return false, with nothing done, for others
bool keep_numbers(SPMDataStream& stream, const base::element_range& range)
{
    if (base::fits_as_it_stands(range, SPM_ARRAY_INT16))
        base::fit_stream(stream, SPM_ARRAY_INT16, range);
    else if (base::fits_as_it_stands(range, SPM_ARRAY_UINT16))
        shift_to_signed(stream);
    else
        return false;
    return true;
}

} // namespace

void settle_samples(recorded_image& image, std::span<const void_range> ranges)
{
    SPMDataStream& stream = image.stream;
    void_mask voids(stream.array_length());
    for (const void_range& range : ranges) voids.add(range);
    std::size_t absurd = 0;
    with_samples(image, [&](auto samples) { absurd = mark_implausible(samples, voids); });
    fill_voids_of_type(image, voids);
    if (stream.array_type() == SPM_ARRAY_INT16) return note_voids(image, voids.count(), absurd);
    base::element_range range = base::find_element_range(stream);
    const auto middle = stream.array_element_size() > 2
                            ? narrow_middle(stream, voids.all(), range.lowest, range.highest)
                            : std::nullopt;
    std::size_t far = 0;
    if (middle) with_samples(image, [&](auto samples) { far = mark_far(samples, *middle, voids); });
    if (far != 0) {
        fill_voids_of_type(image, voids);
        range = base::find_element_range(stream);
    }
    note_voids(image, voids.count(), absurd + far);
    if (keep_numbers(stream, range)) return;
    const double span = middle ? middle->span() * std::fabs(stream.values.get_axis(0).scale) : 0.0;
    base::fit_stream(stream, SPM_ARRAY_INT16, range);
    note_coarse_step(image, span);
}

void settle_markers(recorded_image& image, std::span<const std::int16_t> markers)
{
    const auto samples = elements_of<std::int16_t>(image);
    void_mask voids(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i)
        if (std::ranges::find(markers, samples[i]) != markers.end()) voids.add(i);
    fill_voids<std::int16_t>(image, voids);
    note_voids(image, voids.count(), 0);
}

} // namespace formats
