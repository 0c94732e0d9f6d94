#pragma once
#include <cstdint>
#include <span>

namespace vldv::primitives {

/// Smallest and largest of a block; empty (minimum above maximum) for an empty one.
struct height_range {
    std::int16_t minimum = 32767;
    std::int16_t maximum = -32768;
    bool operator==(const height_range&) const = default;
    /// Makes it hold `other`, too.
    constexpr void include(const height_range& other) noexcept
    {
        if (other.minimum < minimum) minimum = other.minimum;
        if (other.maximum > maximum) maximum = other.maximum;
    }
};

/// Smallest and largest of `heights`, in one pass. Any length, any alignment; empty in, empty range out.
[[nodiscard]] height_range find_range(std::span<const std::int16_t> heights) noexcept;
/// The plain loop that defines the answer. Every faster path equals it in every bit.
[[nodiscard]] height_range find_range_reference(std::span<const std::int16_t> heights) noexcept;

} // namespace vldv::primitives
