#include "output/picture_writer.h"

#include "base/text.h"
#include "output/encoders.h"
#include "platform/files/atomic_file.h"

#include <cassert>
#include <cmath>
#include <new>

namespace vldv::output {

namespace {

struct named_format {
    const char* extension;
    picture_format format;
};

constexpr named_format formatNames[] = {
    {"png", picture_format::png},   {"bmp", picture_format::bmp},  {"jpg", picture_format::jpeg},
    {"jpeg", picture_format::jpeg}, {"tif", picture_format::tiff}, {"tiff", picture_format::tiff},
};

picture_bytes encode(picture_format format, const pixel_view& pixels, const picture_settings& settings)
{
    switch (format) {
    case picture_format::png:
        return encode_png(pixels, settings);
    case picture_format::bmp:
        return encode_bmp(pixels, settings);
    case picture_format::jpeg:
        return encode_jpeg(pixels, settings);
    case picture_format::tiff:
        return encode_tiff(pixels, settings);
    }
    return base::read_error{0, "unknown picture format"};
}

} // namespace

std::optional<picture_format> picture_format_of(std::string_view fileName) noexcept
{
    const std::size_t dot = fileName.rfind('.');
    if (dot == std::string_view::npos) return std::nullopt;
    for (const named_format& known : formatNames)
        if (base::equal_ignoring_case(fileName.substr(dot + 1), known.extension)) return known.format;
    return std::nullopt;
}

picture_bytes encode_picture(picture_format format, const pixel_view& pixels, const picture_settings& settings)
{
    assert((pixels.bytesPerPixel == 3 || pixels.bytesPerPixel == 4) && "blue, green, red and perhaps a filler");
    if (pixels.width <= 0 || pixels.height <= 0 || !pixels.bits)
        return base::read_error{0, "there are no pixels to write"};
    try {
        return encode(format, pixels, settings);
    } catch (const std::bad_alloc&) {
        return base::read_error{0, "not enough memory for the picture"};
    }
}

std::uint32_t resolution_field(double pixelsPerMetre, double largest) noexcept
{
    const double rounded = std::floor(pixelsPerMetre + 0.5);
    return rounded >= 1.0 && rounded <= largest ? static_cast<std::uint32_t>(rounded) : 0;
}

void save_file_atomically(const std::filesystem::path& path, std::span<const std::byte> bytes)
{
    platform::atomic_file file(path);
    file.write(bytes);
    file.commit();
}

} // namespace vldv::output
