#include "base/streams/array_memory.h"
#include "base/streams/element_access.h"
#include "base/streams/element_range.h"
#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

using namespace vldv;

namespace vldv::base {

namespace {

bool is_convertible(const SPMVar& array, SPMVarArrayType target)
{
    const unsigned size = element_size(array.array_type());
    return array.is_array() && size != 0 && size == array.array_element_size() && element_size(target) != 0 &&
           target != array.array_type();
}

/// True when every number of the source type is one of the target type (64-bit ones in double precision).
bool holds_type(SPMVarArrayType source, SPMVarArrayType target)
{
    double low = 0, high = 0, targetLow = 0, targetHigh = 0;
    if (!integer_limits(target, targetLow, targetHigh)) return true;
    return integer_limits(source, low, high) && low >= targetLow && high <= targetHigh;
}

/// `round_half_up` and `element_from` in one for targets that an `int` holds: no call, no branch, the same bits.
template <class Target>
inline Target nearest_element(double v) noexcept
{
    constexpr double low = std::numeric_limits<Target>::min(), high = std::numeric_limits<Target>::max();
    const double raised = v > low ? v : low; // NaN goes here, too
    const double held = raised < high ? raised : high;
    int whole = static_cast<int>(held); // towards 0
    whole -= held < whole ? 1 : 0;
    return static_cast<Target>(whole + (held - whole >= 0.5 ? 1 : 0));
}

template <class Source, class Target>
void rewrite(const Source* source, Target* target, std::size_t count, const element_map* map) noexcept
{
    if (!map) {
        for (std::size_t i = 0; i < count; ++i) {
            if constexpr (std::is_integral_v<Source> && std::is_integral_v<Target> && sizeof(Source) == 8)
                target[i] = static_cast<Target>(source[i]); // a 64-bit number that fits loses no digits
            else
                target[i] = element_from<Target>(static_cast<double>(source[i]));
        }
        return;
    }
    const double from = map->from, factor = map->factor, to = map->to; // the target cannot alias them
    for (std::size_t i = 0; i < count; ++i) {
        const double mapped = (static_cast<double>(source[i]) - from) * factor + to;
        if constexpr (std::is_integral_v<Target> && sizeof(Target) <= 2)
            target[i] = nearest_element<Target>(mapped);
        else
            target[i] = element_from<Target>(std::is_integral_v<Target> ? round_half_up(mapped) : mapped);
    }
}

/// Whole numbers compare as they are; the order of doubles is theirs.
template <class T>
void widen_whole(const T* data, std::size_t count, element_range& found) noexcept
{
    if (count == 0) return;
    T lowest = data[0], highest = data[0];
    for (std::size_t i = 1; i < count; ++i) {
        lowest = data[i] < lowest ? data[i] : lowest;
        highest = data[i] > highest ? data[i] : highest;
    }
    found.lowest = static_cast<double>(lowest);
    found.highest = static_cast<double>(highest);
    found.anyFinite = true;
}

} // namespace

bool integer_limits(SPMVarArrayType type, double& lowest, double& highest) noexcept
{
    bool isInteger = false;
    with_element_type(type, [&](auto* element) {
        using T = std::remove_pointer_t<decltype(element)>;
        isInteger = std::is_integral_v<T>;
        lowest = static_cast<double>(std::numeric_limits<T>::lowest());
        highest = static_cast<double>(std::numeric_limits<T>::max());
    });
    return isInteger;
}

element_range find_element_range(const SPMVar& array)
{
    element_range found;
    if (element_size(array.array_type()) != array.array_element_size()) return found;
    with_element_type(array.array_type(), [&](auto* element) {
        using T = std::remove_pointer_t<decltype(element)>;
        const T* data = static_cast<const T*>(array.array_data());
        if constexpr (std::is_integral_v<T>) return widen_whole(data, array.array_length(), found);
        for (unsigned i = 0; i < array.array_length(); ++i) {
            const double v = static_cast<double>(data[i]);
            if (!std::isfinite(v)) {
                found.allWhole = false;
                continue;
            }
            if (v != std::floor(v)) found.allWhole = false;
            found.lowest = found.anyFinite ? std::min(found.lowest, v) : v;
            found.highest = found.anyFinite ? std::max(found.highest, v) : v;
            found.anyFinite = true;
        }
    });
    return found;
}

void rewrite_elements(SPMVar& array, SPMVarArrayType target, const element_map* map)
{
    if (!is_convertible(array, target)) return;
    SPMVar::array_value& block = array.value.block;
    void* rewritten = zeroed_array(std::size_t{block.length} * element_size(target));
    with_element_type(block.elementType, [&](auto* from) {
        with_element_type(target, [&](auto* to) {
            rewrite(static_cast<decltype(from)>(block.data), static_cast<decltype(to)>(rewritten), block.length, map);
        });
    });
    free_array(block.data);
    block.data = rewritten;
    block.elementType = target;
    block.elementSize = element_size(target);
}

} // namespace vldv::base

void SPMVar::convert_array(SPMVarArrayType target, double* lo, double* hi)
{
    if (!base::is_convertible(*this, target)) return;
    if (base::holds_type(array_type(), target)) return base::rewrite_elements(*this, target, nullptr);
    base::element_range range;
    if (!lo || !hi) range = base::find_element_range(*this);
    const double low = lo ? *lo : range.lowest, high = hi ? *hi : range.highest;
    double targetLow = 0.0, targetHigh = 0.0;
    base::integer_limits(target, targetLow, targetHigh);
    base::element_map map{low, targetLow, (targetHigh - targetLow) / (high - low)};
    const bool usable = low < high && std::isfinite(map.factor) && std::isfinite(high - low);
    if (!usable) {
        map = {0.0, 0.0, 0.0};
        targetLow = targetHigh = 0.0;
    }
    // 0 * infinity is NaN, which becomes the lowest number: an unusable range is filled instead.
    base::rewrite_elements(*this, target, &map);
    if (!usable && data_size() != 0) std::fill_n(static_cast<unsigned char*>(value.block.data), data_size(), 0);
    if (lo) *lo = targetLow;
    if (hi) *hi = targetHigh;
}
