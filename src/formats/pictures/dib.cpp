#include "formats/pictures/dib.h"

#include <cassert>
#include <cmath>
#include <limits>

namespace vldv::formats {

namespace {

bool is_resolution(double pixelsPerMetre) noexcept
{
    return pixelsPerMetre > 0.0 && pixelsPerMetre <= std::numeric_limits<double>::max();
}

} // namespace

std::uint64_t dib_row_bytes(std::uint64_t width, unsigned bitCount) noexcept
{
    return (width * bitCount + 31) / 32 * 4;
}

bool is_dib_size(std::uint64_t width, std::uint64_t height, unsigned bitCount) noexcept
{
    constexpr std::uint64_t side = std::numeric_limits<std::int32_t>::max(), bytes = 0xffffffffu;
    return width > 0 && height > 0 && width <= side && height <= side && width <= bytes / height &&
           dib_row_bytes(width, bitCount) <= bytes / height;
}

picture make_picture(std::uint64_t width, std::uint64_t height, unsigned bitCount, std::vector<RGBQUAD> palette_)
{
    assert(is_dib_size(width, height, bitCount) && "the caller refuses other sizes");
    assert((bitCount > 8 || !palette_.empty()) && "indices need colours");
    picture image;
    image.header.biWidth = static_cast<std::int32_t>(width);
    image.header.biHeight = static_cast<std::int32_t>(height);
    image.header.biBitCount = static_cast<std::uint16_t>(bitCount);
    image.header.biClrUsed = static_cast<std::uint32_t>(palette_.size());
    image.palette = std::move(palette_);
    image.bits.resize(dib_row_bytes(width, bitCount) * height);
    image.header.biSizeImage = static_cast<std::uint32_t>(image.bits.size());
    return image;
}

std::span<std::byte> row_from_top(picture& image, std::uint64_t fromTop) noexcept
{
    const auto height = static_cast<std::uint64_t>(image.header.biHeight);
    assert(fromTop < height);
    const std::size_t stride = image.bits.size() / height;
    return std::span(image.bits).subspan((height - 1 - fromTop) * stride, stride);
}

std::vector<RGBQUAD> grey_palette(unsigned entries, bool whiteFirst)
{
    std::vector<RGBQUAD> palette(entries);
    for (unsigned i = 0; i < entries; ++i) {
        const unsigned level = entries > 1 ? (i * 255 + (entries - 1) / 2) / (entries - 1) : 0;
        const auto grey = static_cast<std::uint8_t>(whiteFirst ? 255 - level : level);
        palette[i] = {grey, grey, grey, 0};
    }
    return palette;
}

std::int32_t header_resolution(double pixelsPerMetre) noexcept
{
    const double rounded = is_resolution(pixelsPerMetre) ? std::floor(pixelsPerMetre + 0.5) : 0.0;
    return rounded <= std::numeric_limits<std::int32_t>::max() ? static_cast<std::int32_t>(rounded) : 0;
}

VLAxis resolution_axis(double pixelsPerMetre)
{
    if (!is_resolution(pixelsPerMetre)) return {0.0, 1.0, "px"};
    const double metres = 1.0 / pixelsPerMetre, magnitude = std::log10(metres);
    if (magnitude >= -3.0) return {0.0, 1e3 / pixelsPerMetre, "mm"};
    if (magnitude < -6.0) return {0.0, 1e9 / pixelsPerMetre, "nm"};
    return {0.0, 1e6 / pixelsPerMetre, "µm"};
}

} // namespace vldv::formats
