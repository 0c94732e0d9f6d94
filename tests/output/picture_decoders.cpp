#include "output/picture_decoders.h"

#include <cstdio>
#include <cstring>

#include <jpeglib.h>
#include <png.h>
#include <tiffio.h>

namespace test_support {

namespace {

decoded_picture sized(std::uint32_t width, std::uint32_t height)
{
    decoded_picture picture;
    picture.width = static_cast<int>(width);
    picture.height = static_cast<int>(height);
    picture.rgb.resize(std::size_t{3} * width * height);
    return picture;
}

/// A file in memory with a position, as libpng and libtiff read it.
struct memory_file {
    std::span<const std::byte> bytes;
    std::size_t position = 0;

    std::size_t read(void* out, std::size_t count)
    {
        const std::size_t there = std::min(count, bytes.size() - std::min(position, bytes.size()));
        if (there != 0) std::memcpy(out, bytes.data() + position, there);
        position += there;
        return there;
    }
};

tmsize_t tiff_read(thandle_t handle, void* out, tmsize_t count)
{
    return static_cast<tmsize_t>(static_cast<memory_file*>(handle)->read(out, static_cast<std::size_t>(count)));
}
tmsize_t tiff_write(thandle_t, void*, tmsize_t) { return 0; }
toff_t tiff_seek(thandle_t handle, toff_t offset, int origin)
{
    auto* file = static_cast<memory_file*>(handle);
    const std::size_t base = origin == SEEK_CUR ? file->position : origin == SEEK_END ? file->bytes.size() : 0;
    return file->position = base + offset;
}
int tiff_close(thandle_t) { return 0; }
toff_t tiff_size(thandle_t handle) { return static_cast<memory_file*>(handle)->bytes.size(); }

} // namespace

std::uint32_t little_at(std::span<const std::byte> bytes, std::size_t at, unsigned count)
{
    std::uint32_t value = 0;
    for (unsigned i = 0; i < count; ++i) value |= std::to_integer<std::uint32_t>(bytes[at + i]) << 8 * i;
    return value;
}

decoded_picture decode_png(std::span<const std::byte> bytes)
{
    memory_file file{bytes};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    decoded_picture picture;
    std::vector<png_bytep> rows;
    if (setjmp(png_jmpbuf(png)) == 0) {
        png_set_read_fn(png, &file, [](png_structp reader, png_bytep out, std::size_t count) {
            if (static_cast<memory_file*>(png_get_io_ptr(reader))->read(out, count) != count)
                png_error(reader, "cut short");
        });
        png_read_info(png, info);
        picture = sized(png_get_image_width(png, info), png_get_image_height(png, info));
        picture.xPixelsPerMetre = png_get_x_pixels_per_meter(png, info);
        picture.yPixelsPerMetre = png_get_y_pixels_per_meter(png, info);
        for (int y = 0; y < picture.height; ++y)
            rows.push_back(picture.rgb.data() + std::size_t{3} * static_cast<unsigned>(y * picture.width));
        png_read_image(png, rows.data());
        png_read_end(png, nullptr);
    } else {
        picture = {};
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return picture;
}

decoded_picture decode_jpeg(std::span<const std::byte> bytes)
{
    jpeg_decompress_struct state{};
    jpeg_error_mgr errors{};
    state.err = jpeg_std_error(&errors); // ends the test program with a message when the file is none
    jpeg_create_decompress(&state);
    jpeg_mem_src(&state, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    jpeg_read_header(&state, TRUE);
    state.out_color_space = JCS_RGB;
    jpeg_start_decompress(&state);
    decoded_picture picture = sized(state.output_width, state.output_height);
    if (state.density_unit == 2) {
        picture.xPixelsPerMetre = state.X_density * 100.0;
        picture.yPixelsPerMetre = state.Y_density * 100.0;
    }
    while (state.output_scanline < state.output_height) {
        JSAMPROW row = picture.rgb.data() + std::size_t{3} * state.output_scanline * state.output_width;
        jpeg_read_scanlines(&state, &row, 1);
    }
    jpeg_finish_decompress(&state);
    const bool isClean = errors.num_warnings == 0;
    jpeg_destroy_decompress(&state);
    return isClean ? picture : decoded_picture();
}

decoded_picture decode_tiff(std::span<const std::byte> bytes)
{
    memory_file file{bytes};
    TIFF* tiff = TIFFClientOpen("memory", "rm", &file, tiff_read, tiff_write, tiff_seek, tiff_close, tiff_size, nullptr,
                                nullptr);
    if (!tiff) return {};
    std::uint32_t width = 0, height = 0;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    decoded_picture picture = sized(width, height);
    float x = 0, y = 0;
    std::uint16_t unit = 0;
    TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &x);
    TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &y);
    TIFFGetField(tiff, TIFFTAG_RESOLUTIONUNIT, &unit);
    if (unit == RESUNIT_CENTIMETER) {
        picture.xPixelsPerMetre = x * 100.0;
        picture.yPixelsPerMetre = y * 100.0;
    }
    bool isWhole = TIFFScanlineSize(tiff) == static_cast<tmsize_t>(3 * width);
    for (std::uint32_t row = 0; row < height && isWhole; ++row)
        isWhole = TIFFReadScanline(tiff, picture.rgb.data() + std::size_t{3} * row * width, row, 0) == 1;
    TIFFClose(tiff);
    return isWhole ? picture : decoded_picture();
}

decoded_picture decode_bmp(std::span<const std::byte> bytes)
{
    if (bytes.size() < 54 || std::memcmp(bytes.data(), "BM", 2) != 0 || little_at(bytes, 2, 4) != bytes.size() ||
        little_at(bytes, 10, 4) != 54 || little_at(bytes, 14, 4) != 40 || little_at(bytes, 26, 2) != 1 ||
        little_at(bytes, 28, 2) != 24 || little_at(bytes, 30, 4) != 0)
        return {};
    decoded_picture picture = sized(little_at(bytes, 18, 4), little_at(bytes, 22, 4));
    picture.xPixelsPerMetre = little_at(bytes, 38, 4);
    picture.yPixelsPerMetre = little_at(bytes, 42, 4);
    const std::size_t rowBytes = (3 * static_cast<std::size_t>(picture.width) + 3) / 4 * 4;
    if (bytes.size() != 54 + rowBytes * static_cast<std::size_t>(picture.height)) return {};
    std::uint8_t* out = picture.rgb.data();
    for (int y = 0; y < picture.height; ++y) {
        const auto* in = bytes.data() + 54 + rowBytes * static_cast<std::size_t>(picture.height - 1 - y);
        for (int x = 0; x < picture.width; ++x, in += 3)
            for (int channel = 2; channel >= 0; --channel) *out++ = std::to_integer<std::uint8_t>(in[channel]);
    }
    return picture;
}

} // namespace test_support
