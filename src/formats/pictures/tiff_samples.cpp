#include "formats/pictures/tiff_samples.h"

#include <bit>
#include <cstring>

namespace vldv::formats {

namespace {

/// Samples of whole bytes; the library has put them into the machine's order.
template <class T, class Out>
void read_whole(std::span<const std::byte> row, const channel_layout& layout, std::span<Out> out)
{
    const std::byte* next = row.data() + layout.first * sizeof(T);
    for (Out& sample : out) {
        T value;
        std::memcpy(&value, next, sizeof value);
        sample = static_cast<Out>(value);
        next += layout.distance * sizeof(T);
    }
}

void read_triples(std::span<const std::byte> row, const channel_layout& layout, std::span<std::uint32_t> out)
{
    constexpr bool isLittle = std::endian::native == std::endian::little;
    for (std::size_t i = 0; i < out.size(); ++i) {
        const std::byte* at = row.data() + (layout.first + i * layout.distance) * 3;
        const auto byte = [&](std::size_t k) { return std::to_integer<std::uint32_t>(at[isLittle ? k : 2 - k]); };
        out[i] = byte(0) | byte(1) << 8 | byte(2) << 16;
    }
}

/// Samples of other widths lie bit by bit, the most significant first.
void read_packed(std::span<const std::byte> row, const channel_layout& layout, std::span<std::uint32_t> out)
{
    for (std::size_t i = 0; i < out.size(); ++i) {
        std::size_t bit = (layout.first + i * layout.distance) * layout.bits;
        std::uint32_t value = 0;
        for (unsigned k = 0; k < layout.bits; ++k, ++bit)
            value = value << 1 | (std::to_integer<std::uint32_t>(row[bit / 8]) >> (7 - bit % 8) & 1);
        out[i] = value;
    }
}

} // namespace

channel_layout layout_of(const tiff_page& page, unsigned sample) noexcept
{
    return page.isSeparate ? channel_layout{page.bits, 0, 1} : channel_layout{page.bits, sample, page.samples};
}

void read_natural(std::span<const std::byte> row, const channel_layout& layout, std::span<std::uint32_t> out)
{
    switch (layout.bits) {
    case 8:
        return read_whole<std::uint8_t>(row, layout, out);
    case 16:
        return read_whole<std::uint16_t>(row, layout, out);
    case 24:
        return read_triples(row, layout, out);
    case 32:
        return read_whole<std::uint32_t>(row, layout, out);
    default:
        return read_packed(row, layout, out);
    }
}

std::int32_t with_sign(std::uint32_t value, unsigned bits) noexcept
{
    const unsigned unused = 32 - bits;
    return static_cast<std::int32_t>(value << unused) >> unused;
}

void read_values(std::span<const std::byte> row, const channel_layout& layout, sample_kind kind, std::span<double> out)
{
    if (kind == sample_kind::real)
        return layout.bits == 32 ? read_whole<float>(row, layout, out) : read_whole<double>(row, layout, out);
    const bool isSigned = kind == sample_kind::integer;
    if (layout.bits == 64)
        return isSigned ? read_whole<std::int64_t>(row, layout, out) : read_whole<std::uint64_t>(row, layout, out);
    std::vector<std::uint32_t> samples(out.size());
    read_natural(row, layout, samples);
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = isSigned ? static_cast<double>(with_sign(samples[i], layout.bits)) : static_cast<double>(samples[i]);
}

} // namespace vldv::formats
