#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

namespace vldv::primitives {

/// One count for each height that 16 bits hold, the lowest first: height z stands at z + 32768.
constexpr std::size_t heightCount = 65536;

/// Adds how often each height occurs. No count may pass 32 bits.
void count_heights(std::span<const std::int16_t> heights, std::span<std::uint32_t, heightCount> counts) noexcept;

} // namespace vldv::primitives
