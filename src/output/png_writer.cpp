#include "output/encoders.h"

#include <csetjmp>
#include <png.h>
#include <string>

namespace vldv::output {

namespace {

// A rendered surface has few colours: zlib finds their patterns better in the pixels themselves than in differences to
// the neighbours, and higher levels take more than twice as long for files that are hardly smaller.
constexpr int compressionLevel = 3;
constexpr int rowFilters = PNG_FILTER_NONE;

/// libpng reports errors by a jump back into `run`; nothing with a destructor may be created between there and here.
class png_encoder {
public:
    png_encoder() : png(png_create_write_struct(PNG_LIBPNG_VER_STRING, this, onError, onWarning))
    {
        if (png) info = png_create_info_struct(png);
    }
    png_encoder(const png_encoder&) = delete;
    png_encoder& operator=(const png_encoder&) = delete;
    ~png_encoder() { png_destroy_write_struct(&png, &info); }

    /// \return false with `reason` set
    bool run(const pixel_view& pixels, const picture_settings& settings)
    {
        if (!info) return false;
        if (setjmp(jump)) return false;
        write(pixels, settings);
        return true;
    }

    std::vector<std::byte> bytes;
    char reason[256] = "not enough memory for the picture";

private:
    void write(const pixel_view& pixels, const picture_settings& settings)
    {
        const auto width = static_cast<png_uint_32>(pixels.width), height = static_cast<png_uint_32>(pixels.height);
        png_set_write_fn(png, this, onWrite, nullptr);
        png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        png_set_compression_level(png, compressionLevel);
        png_set_filter(png, PNG_FILTER_TYPE_BASE, rowFilters);
        png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE,
                     PNG_FILTER_TYPE_BASE);
        const std::uint32_t x = resolution_field(settings.xPixelsPerMetre, PNG_UINT_31_MAX);
        const std::uint32_t y = resolution_field(settings.yPixelsPerMetre, PNG_UINT_31_MAX);
        if (x != 0 && y != 0) png_set_pHYs(png, info, x, y, PNG_RESOLUTION_METER);
        png_write_info(png, info);
        png_set_bgr(png);
        if (pixels.bytesPerPixel == 4) png_set_filler(png, 0, PNG_FILLER_AFTER);
        for (int row = 0; row < pixels.height; ++row)
            png_write_row(png, reinterpret_cast<png_const_bytep>(pixels.row(row)));
        png_write_end(png, nullptr);
    }

    [[noreturn]] static void onError(png_structp png_, png_const_charp message)
    {
        auto* self = static_cast<png_encoder*>(png_get_error_ptr(png_));
        std::strncpy(self->reason, message, sizeof self->reason - 1);
        std::longjmp(self->jump, 1);
    }
    static void onWarning(png_structp, png_const_charp) {}
    static void onWrite(png_structp png_, png_bytep data, std::size_t size)
    {
        auto* self = static_cast<png_encoder*>(png_get_io_ptr(png_));
        if (!self->append(data, size)) png_error(png_, "not enough memory for the picture");
    }
    bool append(const unsigned char* data, std::size_t size) noexcept
    {
        try {
            const auto* first = reinterpret_cast<const std::byte*>(data);
            bytes.insert(bytes.end(), first, first + size);
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    }

    png_structp png = nullptr;
    png_infop info = nullptr;
    std::jmp_buf jump{};
};

} // namespace

picture_bytes encode_png(const pixel_view& pixels, const picture_settings& settings)
{
    png_encoder encoder;
    if (!encoder.run(pixels, settings)) return base::read_error{0, std::string("PNG: ") + encoder.reason};
    return std::move(encoder.bytes);
}

} // namespace vldv::output
