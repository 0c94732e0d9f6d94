#include "formats/shared/void_points.h"

#include "base/streams/element_access.h"
#include "base/streams/stream_fitting.h"

#include <algorithm>
#include <cmath>
#include <limits>

// What happens to samples that are no measurement.

namespace vldv::formats {

namespace {

constexpr double absurdMagnitude = 1e30; ///< from here on a number is a mark or damage, whatever its unit
constexpr double absurdDistance = 1e6;   ///< from the middle, in spans of it

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
    std::size_t countIn(std::size_t first, std::size_t many) const
    {
        if (flags.empty()) return 0;
        const auto begin = flags.begin() + static_cast<std::ptrdiff_t>(first);
        return static_cast<std::size_t>(std::count(begin, begin + static_cast<std::ptrdiff_t>(many), true));
    }
    const std::vector<bool>& all() const noexcept { return flags; }
    std::vector<void_range> ranges() const
    {
        std::vector<void_range> out;
        for (auto at = std::ranges::find(flags, true); at != flags.end();) {
            const auto end = std::find(at, flags.end(), false);
            out.push_back({static_cast<std::uint64_t>(at - flags.begin()), static_cast<std::uint64_t>(end - at)});
            at = std::find(end, flags.end(), true);
        }
        return out;
    }

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

/// A number on the way from one sample to another.
template <class T>
T between(T from, T to, double share) noexcept
{
    const double number = static_cast<double>(from) + share * (static_cast<double>(to) - static_cast<double>(from));
    if constexpr (std::is_integral_v<T>) return static_cast<T>(std::llround(number));
    return static_cast<T>(number);
}

/// Fills the gaps of a curve along straight lines, those at its ends with the nearest sample.
/// \param isVoid  of a sample's place in the curve \return false for a curve without a sample
template <class T, class Predicate>
bool bridge(std::span<T> curve, Predicate isVoid)
{
    const std::size_t none = curve.size();
    std::size_t before = none; // the last measured sample
    for (std::size_t i = 0; i < curve.size(); ++i) {
        if (isVoid(i)) continue;
        for (std::size_t gap = before == none ? 0 : before + 1; gap < i; ++gap)
            curve[gap] = before == none ? curve[i]
                                        : between(curve[before], curve[i],
                                                  static_cast<double>(gap - before) / static_cast<double>(i - before));
        before = i;
    }
    if (before == none) return false;
    std::fill(curve.begin() + static_cast<std::ptrdiff_t>(before) + 1, curve.end(), curve[before]);
    return true;
}

bool holds_curves(const SPMDataStream& stream) noexcept
{
    return stream.get_dimensions_number() == 1 || stream.get_dimensions_number() == 3;
}

template <class T>
std::span<T> elements_of(SPMDataStream& stream) noexcept
{
    return {static_cast<T*>(stream.array_data()), stream.array_length()};
}

/// \return whether curves were bridged
template <class T>
bool fill_voids(SPMDataStream& stream, const void_mask& voids)
{
    if (voids.count() == 0) return false;
    const std::span<T> samples = elements_of<T>(stream);
    const T lowest = lowest_number<T>(stream, samples, [&](std::size_t i) { return voids[i]; });
    const bool areCurves = holds_curves(stream);
    const std::size_t points = areCurves ? stream.get_dimension(0).length : samples.size();
    bool anyBridged = false;
    for (std::size_t first = 0; points != 0 && first + points <= samples.size(); first += points) {
        const std::span<T> part = samples.subspan(first, points);
        const auto isVoid = [&](std::size_t i) { return voids[first + i]; };
        if (voids.countIn(first, points) == 0) continue;
        if (areCurves && bridge(part, isVoid)) {
            anyBridged = true;
            continue;
        }
        for (std::size_t i = 0; i < points; ++i)
            if (isVoid(i)) part[i] = lowest;
    }
    return anyBridged;
}

/// Calls `use` with the samples as a span of their type; not for samples without one.
template <class Use>
void with_samples(SPMDataStream& stream, Use&& use)
{
    if (element_size(stream.array_type()) != stream.array_element_size()) return;
    base::with_element_type(stream.array_type(),
                            [&](auto* element) { use(elements_of<std::remove_pointer_t<decltype(element)>>(stream)); });
}

void fill_voids_of_type(SPMDataStream& stream, const void_mask& voids, void_count& count)
{
    with_samples(stream, [&](auto samples) {
        count.areBridged |= fill_voids<typename decltype(samples)::element_type>(stream, voids);
    });
    count.all = voids.count();
    count.ranges = voids.ranges();
}

} // namespace

filled_samples fill_unmeasured(SPMDataStream& stream, std::span<const void_range> ranges)
{
    filled_samples out;
    void_mask voids(stream.array_length());
    for (const void_range& range : ranges) voids.add(range);
    with_samples(stream, [&](auto samples) {
        using T = typename decltype(samples)::element_type;
        out.voids.absurd = mark_implausible(std::span<const T>(samples), voids);
    });
    fill_voids_of_type(stream, voids, out.voids);
    if (stream.array_type() == SPM_ARRAY_INT16) return out;
    out.range = base::find_element_range(stream);
    if (stream.array_element_size() > 2)
        out.middle = narrow_middle(stream, voids.all(), out.range.lowest, out.range.highest);
    if (!out.middle) out.half = half_of_samples(stream, voids.all());
    std::size_t far = 0;
    if (out.middle)
        with_samples(stream, [&](auto samples) {
            using T = typename decltype(samples)::element_type;
            far = mark_far(std::span<const T>(samples), *out.middle, voids);
        });
    if (far == 0) return out;
    out.voids.absurd += far;
    fill_voids_of_type(stream, voids, out.voids);
    out.range = base::find_element_range(stream);
    return out;
}

void_count fill_marked(SPMDataStream& stream, std::span<const std::int16_t> markers)
{
    const auto samples = elements_of<std::int16_t>(stream);
    void_mask voids(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i)
        if (std::ranges::find(markers, samples[i]) != markers.end()) voids.add(i);
    void_count count;
    fill_voids_of_type(stream, voids, count);
    return count;
}

std::vector<void_range> convert_measured(SPMDataStream& stream, const char* told)
{
    std::vector<void_range> ranges = void_ranges(stream, told);
    if (stream.array_type() == SPM_ARRAY_INT16 || element_size(stream.array_type()) != stream.array_element_size())
        return ranges;
    const filled_samples filled = fill_unmeasured(stream, ranges);
    base::fit_stream(stream, SPM_ARRAY_INT16, filled.range);
    return filled.voids.ranges;
}

std::size_t count_implausible(const SPMDataStream& stream)
{
    std::size_t count = 0;
    if (element_size(stream.array_type()) != stream.array_element_size()) return count;
    base::with_element_type(stream.array_type(), [&](auto* element) {
        using T = std::remove_pointer_t<decltype(element)>;
        const std::span samples(static_cast<const T*>(stream.array_data()), stream.array_length());
        if constexpr (std::is_floating_point_v<T>)
            count =
                static_cast<std::size_t>(std::ranges::count_if(samples, [](T each) { return !is_plausible(each); }));
    });
    return count;
}

} // namespace vldv::formats
