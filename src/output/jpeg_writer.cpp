#include "output/encoders.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <jpeglib.h>

namespace vldv::output {

namespace {

/// libjpeg reports errors by a jump back into `run`; nothing with a destructor may be created between there and here.
class jpeg_encoder {
public:
    jpeg_encoder()
    {
        state.err = jpeg_std_error(&errors);
        errors.error_exit = onError;
        errors.emit_message = [](j_common_ptr, int) {};
        state.client_data = this;
    }
    jpeg_encoder(const jpeg_encoder&) = delete;
    jpeg_encoder& operator=(const jpeg_encoder&) = delete;
    ~jpeg_encoder()
    {
        jpeg_destroy_compress(&state);
        std::free(buffer);
    }

    /// \return false with `reason` set
    bool run(const pixel_view& pixels, const picture_settings& settings)
    {
        if (setjmp(jump)) return false;
        write(pixels, settings);
        return true;
    }

    std::span<const std::byte> bytes() const noexcept { return std::as_bytes(std::span(buffer, size)); }

    char reason[JMSG_LENGTH_MAX] = "";

private:
    void write(const pixel_view& pixels, const picture_settings& settings)
    {
        jpeg_create_compress(&state);
        state.client_data = this;
        jpeg_mem_dest(&state, &buffer, &size);
        state.image_width = static_cast<JDIMENSION>(pixels.width);
        state.image_height = static_cast<JDIMENSION>(pixels.height);
        state.input_components = pixels.bytesPerPixel;
        state.in_color_space = pixels.bytesPerPixel == 4 ? JCS_EXT_BGRX : JCS_EXT_BGR;
        jpeg_set_defaults(&state);
        jpeg_set_quality(&state, settings.jpegQuality, TRUE);
        for (int i = 0; i < state.num_components; ++i) // full resolution: thin coloured lines keep their colour
            state.comp_info[i].h_samp_factor = state.comp_info[i].v_samp_factor = 1;
        setDensity(settings);
        jpeg_start_compress(&state, TRUE);
        while (state.next_scanline < state.image_height) {
            const auto* row = reinterpret_cast<const JSAMPLE*>(pixels.row(static_cast<int>(state.next_scanline)));
            JSAMPROW rows[] = {const_cast<JSAMPROW>(row)}; // only read, whatever the type says
            jpeg_write_scanlines(&state, rows, 1);
        }
        jpeg_finish_compress(&state);
    }

    /// In dots per centimetre, 16 bits each.
    void setDensity(const picture_settings& settings)
    {
        constexpr double metre = 100.0, largest = 65535.0;
        const std::uint32_t x = resolution_field(settings.xPixelsPerMetre / metre, largest);
        const std::uint32_t y = resolution_field(settings.yPixelsPerMetre / metre, largest);
        if (x == 0 || y == 0) return;
        constexpr UINT8 perCentimetre = 2;
        state.density_unit = perCentimetre;
        state.X_density = static_cast<UINT16>(x);
        state.Y_density = static_cast<UINT16>(y);
    }

    [[noreturn]] static void onError(j_common_ptr common)
    {
        auto* self = static_cast<jpeg_encoder*>(common->client_data);
        common->err->format_message(common, self->reason);
        std::longjmp(self->jump, 1);
    }

    jpeg_compress_struct state{};
    jpeg_error_mgr errors{};
    std::jmp_buf jump{};
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
};

} // namespace

picture_bytes encode_jpeg(const pixel_view& pixels, const picture_settings& settings)
{
    if (std::max(pixels.width, pixels.height) > JPEG_MAX_DIMENSION)
        return base::read_error{0, "the picture is too large for JPEG, which ends at 65500 pixels a side"};
    jpeg_encoder encoder;
    if (!encoder.run(pixels, settings)) return base::read_error{0, std::string("JPEG: ") + encoder.reason};
    return std::vector(encoder.bytes().begin(), encoder.bytes().end());
}

} // namespace vldv::output
