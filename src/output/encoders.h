#pragma once
#include "output/picture_writer.h"

#include <cstdint>
#include <cstring>

namespace vldv::output {

// The encoders behind `encode_picture`, which has checked that there are pixels.

/// 24 bits, bottom-up.
picture_bytes encode_bmp(const pixel_view& pixels, const picture_settings& settings);
/// 8 bits a channel, lossless compression.
picture_bytes encode_png(const pixel_view& pixels, const picture_settings& settings);
/// Baseline, all three components at full resolution.
picture_bytes encode_jpeg(const pixel_view& pixels, const picture_settings& settings);
/// Baseline little-endian TIFF 6: 8-bit RGB, uncompressed strips.
picture_bytes encode_tiff(const pixel_view& pixels, const picture_settings& settings);

/// Pixels a metre as an integer field keeps them; 0 when unknown or out of the field's range.
std::uint32_t resolution_field(double pixelsPerMetre, double largest) noexcept;

/// Fills a block of known size from its front, little-endian.
class byte_writer {
public:
    explicit byte_writer(std::byte* first) noexcept : next(first) {}
    void u16(std::uint32_t value) noexcept { little(value, 2); }
    void u32(std::uint32_t value) noexcept { little(value, 4); }
    void text(std::string_view characters) noexcept
    {
        std::memcpy(next, characters.data(), characters.size());
        next += characters.size();
    }

private:
    void little(std::uint32_t value, int count) noexcept
    {
        for (int i = 0; i < count; ++i) *next++ = static_cast<std::byte>(value >> 8 * i);
    }
    std::byte* next;
};

} // namespace vldv::output
