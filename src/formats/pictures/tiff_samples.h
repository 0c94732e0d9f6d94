#pragma once
#include "formats/pictures/tiff_page.h"

#include <cstdint>
#include <span>

namespace vldv::formats {

/// The place of one channel in a decoded row.
struct channel_layout {
    unsigned bits;     ///< of a sample
    unsigned first;    ///< samples before the first one
    unsigned distance; ///< samples from one to the next
};

/// Where channel `sample` of a page is in the rows of its plane.
channel_layout layout_of(const tiff_page& page, unsigned sample) noexcept;

// A row's samples of one channel; `row` must hold out.size() of them.

/// Unsigned samples of 1 to 32 bits.
void read_natural(std::span<const std::byte> row, const channel_layout& layout, std::span<std::uint32_t> out);
/// Samples of any kind and width, in floating point.
void read_values(std::span<const std::byte> row, const channel_layout& layout, sample_kind kind, std::span<double> out);
/// `value` with its highest bit, of `bits`, as the sign.
std::int32_t with_sign(std::uint32_t value, unsigned bits) noexcept;

} // namespace vldv::formats
