#include "formats/pictures/png.h"

#include "base/text.h"
#include "formats/pictures/dib.h"
#include "formats/pictures/png_decoder.h"
#include "formats/shared/heights.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace vldv::formats {

namespace {

constexpr unsigned rowsBetweenReports = 256;
constexpr double unsignedMiddle = 32768.0;

/// What the header says.
struct png_shape {
    std::uint32_t width = 0, height = 0;
    int bits = 0, colours = 0;

    bool isGrey() const noexcept { return (colours & PNG_COLOR_MASK_COLOR) == 0; }
    bool isPalette() const noexcept { return colours == PNG_COLOR_TYPE_PALETTE; }
    bool isHeights() const noexcept { return isGrey() && bits == 16; }
    bool isIndexed() const noexcept { return isPalette() || (colours == PNG_COLOR_TYPE_GRAY && bits <= 8); }
    /// Of the bitmap that it becomes; it knows no two bits a pixel.
    unsigned bitCount() const noexcept
    {
        if (isIndexed()) return bits == 2 ? 8 : static_cast<unsigned>(bits);
        return isHeights() ? 16 : 24;
    }
};

/// Deflate makes at most 1032 bytes of one.
bool is_plausible(const png_shape& shape, std::uint64_t rowBytes, std::uint64_t fileBytes)
{
    constexpr std::uint64_t bytesPerByte = 1032;
    return rowBytes * shape.height / bytesPerByte <= fileBytes;
}

struct resolution {
    double x = 0.0, y = 0.0; ///< pixels a metre, 0 when unknown
};

resolution resolution_of(const png_decoder& png)
{
    png_uint_32 x = 0, y = 0;
    int unit = PNG_RESOLUTION_UNKNOWN;
    if (!png_get_pHYs(png.handle(), png.header(), &x, &y, &unit) || unit != PNG_RESOLUTION_METER) return {};
    return {double(x), double(y)};
}

std::vector<RGBQUAD> palette_of(const png_decoder& png, const png_shape& shape)
{
    const unsigned entries = 1u << shape.bits;
    if (!shape.isPalette()) return grey_palette(entries);
    png_colorp colours = nullptr;
    int count = 0;
    png_get_PLTE(png.handle(), png.header(), &colours, &count);
    std::vector<RGBQUAD> palette(entries); // indices beyond the file's entries are black
    for (unsigned i = 0; i < std::min(entries, static_cast<unsigned>(count)); ++i)
        palette[i] = {colours[i].blue, colours[i].green, colours[i].red, 0};
    return palette;
}

/// Turns what the file has into what the target wants, row by row.
void set_transformations(png_structp png, const png_shape& shape)
{
    if (shape.colours & PNG_COLOR_MASK_ALPHA) png_set_strip_alpha(png);
    if (shape.isHeights()) {
        if constexpr (std::endian::native == std::endian::little) png_set_swap(png);
        return;
    }
    if (shape.bits == 16) png_set_scale_16(png);
    if (shape.bits == 2) png_set_packing(png);
    if (shape.isIndexed()) return;
    if (shape.isGrey()) png_set_gray_to_rgb(png);
    png_set_bgr(png);
}

using row_target = std::function<std::span<std::byte>(std::uint32_t fromTop)>;

/// Decodes all rows, those of interlaced files several times, and the end of the file.
bool decode_rows(png_decoder& png, source& file, const png_shape& shape, const row_target& target)
{
    int passes = 1;
    const auto start = [&](png_structp decoder, png_infop info) {
        set_transformations(decoder, shape);
        passes = png_set_interlace_handling(decoder);
        png_read_update_info(decoder, info);
    };
    if (!png.attempt(start)) return false;
    for (int pass = 0; pass < passes; ++pass)
        for (std::uint32_t y = 0; y < shape.height; ++y) {
            auto* const row = reinterpret_cast<png_bytep>(target(y).data());
            if (!png.attempt([row](png_structp decoder, png_infop) { png_read_row(decoder, row, nullptr); }))
                return false;
            const double done = (pass + static_cast<double>(y) / shape.height) / passes;
            if (y % rowsBetweenReports == 0 && !file.progress(done)) return png.fail("reading was cancelled");
        }
    return png.attempt([](png_structp decoder, png_infop info) { png_read_end(decoder, info); });
}

bool append_picture(png_decoder& png, source& file, const png_shape& shape, recording& out)
{
    std::vector<RGBQUAD> palette;
    if (shape.isIndexed()) palette = palette_of(png, shape);
    picture image = make_picture(shape.width, shape.height, shape.bitCount(), std::move(palette));
    const resolution known = resolution_of(png);
    image.header.biXPelsPerMeter = header_resolution(known.x);
    image.header.biYPelsPerMeter = header_resolution(known.y);
    if (!decode_rows(png, file, shape, [&image](std::uint32_t y) { return row_from_top(image, y); })) return false;
    out.items.emplace_back(std::move(image));
    return true;
}

bool append_heights(png_decoder& png, source& file, const png_shape& shape, recording& out)
{
    const resolution known = resolution_of(png);
    const image_frame frame{shape.width, shape.height, 1, resolution_axis(known.x), resolution_axis(known.y)};
    recorded_image image =
        make_image("Image", "Image", frame, {.offset = unsignedMiddle, .units = {}, .origin = "16-bit samples"});
    const std::span raw(static_cast<std::int16_t*>(image.stream.array_data()), std::size_t{shape.width} * shape.height);
    const auto row = [&](std::uint32_t y) {
        return std::as_writable_bytes(raw.subspan(std::size_t{shape.height - 1 - y} * shape.width, shape.width));
    };
    if (!decode_rows(png, file, shape, row)) return false;
    for (std::int16_t& sample : raw)
        sample = static_cast<std::int16_t>(std::bit_cast<std::uint16_t>(sample) - static_cast<int>(unsignedMiddle));
    out.items.emplace_back(std::move(image));
    return true;
}

/// Keywords and plain texts are Latin-1, international ones UTF-8.
void copy_texts(const png_decoder& png, recording& out)
{
    png_textp texts = nullptr;
    int count = 0;
    png_get_text(png.handle(), png.header(), &texts, &count);
    for (const png_text& each : std::span(texts, static_cast<std::size_t>(std::max(count, 0)))) {
        const bool isUtf8 =
            each.compression == PNG_ITXT_COMPRESSION_NONE || each.compression == PNG_ITXT_COMPRESSION_zTXt;
        if (each.text && *each.text)
            out.strings[base::latin1_to_utf8(each.key)] =
                isUtf8 ? base::valid_utf8(each.text) : base::latin1_to_utf8(each.text);
    }
}

/// An error text, or empty.
std::string refusal_of(const png_shape& shape, std::uint64_t rowBytes, std::uint64_t fileBytes)
{
    if (is_dib_size(shape.width, shape.height, shape.bitCount()) && is_plausible(shape, rowBytes, fileBytes)) return {};
    return base::formatted("width and height: %u x %u is too large for a file of this size", shape.width, shape.height);
}

} // namespace

base::read_result<recording> read_png(source& file)
{
    std::vector<std::byte> bytes;
    if (!file.readAll(bytes)) return base::read_error{0, "the file cannot be read"};
    png_decoder png(bytes);
    png_shape shape;
    const auto readHeader = [&shape](png_structp decoder, png_infop info) {
        png_read_info(decoder, info);
        png_get_IHDR(decoder, info, &shape.width, &shape.height, &shape.bits, &shape.colours, nullptr, nullptr,
                     nullptr);
    };
    if (!png.attempt(readHeader)) return base::read_error{0, png.reason()};
    if (std::string reason = refusal_of(shape, png_get_rowbytes(png.handle(), png.header()), bytes.size());
        !reason.empty())
        return base::read_error{0, std::move(reason)};
    recording result;
    const bool isRead =
        shape.isHeights() ? append_heights(png, file, shape, result) : append_picture(png, file, shape, result);
    if (!isRead) return base::read_error{0, png.reason()};
    copy_texts(png, result);
    return result;
}

bool sniff_png(std::span<const std::byte> head) { return base::byte_reader(head).tag("\x89PNG\r\n\x1a\n"); }

} // namespace vldv::formats
