#include "formats/shared/sample_middle.h"

#include "base/streams/element_access.h"

#include <algorithm>
#include <span>

namespace vldv::formats {

namespace {

constexpr double muchFurther = 5000.0;
constexpr std::size_t leastSamples = 8, outsideShare = 1000;
constexpr std::size_t leastOfHalf = 4;

/// How many of `count` samples lie below the middle, and as many above.
std::size_t outside(std::size_t count) noexcept { return std::max<std::size_t>(count / outsideShare, 1); }

template <class T>
class middle_search {
public:
    middle_search(std::span<const T> samples_, const std::vector<bool>& isVoid_) : samples(samples_), isVoid(isVoid_) {}

    /// True when more than a thousandth lies on either side of a stretch of at least `width`.
    bool spreadsOver(double width) const
    {
        const auto some = stretchOfSome(10);
        if (!some) return false;
        const auto [low, high] = *some;
        if (!(static_cast<double>(high) - static_cast<double>(low) >= width)) return false;
        const std::size_t enough = outside(samples.size());
        std::size_t below = 0, above = 0;
        constexpr std::size_t block = 4096;
        for (std::size_t at = 0; at < samples.size() && (below <= enough || above <= enough); at += block)
            for (std::size_t i = at; i < std::min(at + block, samples.size()); ++i) {
                below += isMeasured(i) && samples[i] <= low ? 1 : 0;
                above += isMeasured(i) && samples[i] >= high ? 1 : 0;
            }
        return below > enough && above > enough;
    }

    std::optional<middle_range> find() const
    {
        std::vector<T> measured = every(1);
        if (measured.size() < leastSamples) return std::nullopt;
        const auto low = measured.begin() + static_cast<std::ptrdiff_t>(outside(measured.size()));
        const auto high = measured.end() - static_cast<std::ptrdiff_t>(outside(measured.size())) - 1;
        std::nth_element(measured.begin(), low, measured.end());
        const T lowest = *low;
        std::nth_element(low, high, measured.end());
        return middle_range{static_cast<double>(lowest), static_cast<double>(*high)};
    }

    /// What `share` (4: a quarter) of some samples lies below, and as many above.
    std::optional<std::pair<T, T>> stretchOfSome(std::size_t share) const
    {
        constexpr std::size_t few = 1000;
        std::vector<T> some = every(std::max<std::size_t>(samples.size() / few, 1));
        if (some.size() < leastOfHalf) return std::nullopt;
        std::ranges::sort(some);
        return std::pair(some[some.size() / share], some[some.size() - 1 - some.size() / share]);
    }

private:
    bool isMeasured(std::size_t i) const { return isVoid.empty() || !isVoid[i]; }

    /// The measured ones among every `distance`-th sample.
    std::vector<T> every(std::size_t distance) const
    {
        std::vector<T> taken;
        taken.reserve(samples.size() / distance + 1);
        for (std::size_t i = 0; i < samples.size(); i += distance)
            if (isMeasured(i)) taken.push_back(samples[i]);
        return taken;
    }

    std::span<const T> samples;
    const std::vector<bool>& isVoid;
};

} // namespace

std::optional<middle_range> narrow_middle(const SPMDataStream& stream, const std::vector<bool>& isVoid, double lowest,
                                          double highest)
{
    std::optional<middle_range> middle;
    const double width = (highest - lowest) / muchFurther;
    if (!(width > 0.0)) return middle;
    base::with_element_type(stream.array_type(), [&](auto* element) {
        using T = std::remove_pointer_t<decltype(element)>;
        const middle_search<T> search({static_cast<const T*>(stream.array_data()), stream.array_length()}, isVoid);
        if (!search.spreadsOver(width)) middle = search.find();
    });
    if (middle && middle->span() > width) middle.reset();
    return middle;
}

std::optional<middle_range> half_of_samples(const SPMDataStream& stream, const std::vector<bool>& isVoid)
{
    std::optional<middle_range> half;
    base::with_element_type(stream.array_type(), [&](auto* element) {
        using T = std::remove_pointer_t<decltype(element)>;
        const middle_search<T> search({static_cast<const T*>(stream.array_data()), stream.array_length()}, isVoid);
        if (const auto some = search.stretchOfSome(4))
            half = middle_range{static_cast<double>(some->first), static_cast<double>(some->second)};
    });
    return half;
}

} // namespace vldv::formats
