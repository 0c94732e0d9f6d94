#include "formats/pictures/png_decoder.h"

#include <cstring>

namespace vldv::formats {

png_decoder::png_decoder(std::span<const std::byte> bytes_)
    : rest(bytes_), png(png_create_read_struct(PNG_LIBPNG_VER_STRING, this, onError, onWarning))
{
    if (png) info = png_create_info_struct(png);
    failed = !info;
    attempt([this](png_structp made, png_infop) {
        png_set_read_fn(made, this, onRead);
        png_set_user_limits(made, PNG_UINT_31_MAX, PNG_UINT_31_MAX); // the caller knows how many bytes there are
    });
}

bool png_decoder::fail(const char* text) noexcept
{
    std::strncpy(message, text, sizeof message - 1);
    failed = true;
    return false;
}

void png_decoder::onError(png_structp png_, png_const_charp text)
{
    auto& self = *static_cast<png_decoder*>(png_get_error_ptr(png_));
    self.fail(text);
    std::longjmp(self.leave, 1);
}

void png_decoder::onRead(png_structp png_, png_bytep out, std::size_t size)
{
    auto& self = *static_cast<png_decoder*>(png_get_io_ptr(png_));
    if (size > self.rest.size()) png_error(png_, "the file is cut short");
    std::memcpy(out, self.rest.data(), size);
    self.rest = self.rest.subspan(size);
}

} // namespace vldv::formats
