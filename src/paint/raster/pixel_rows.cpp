#include "paint/raster/pixel_rows.h"

#include "platform/draw/DC.h"

namespace vldv::paint {

pixel_rows rows_of(const CBitmap& bitmap) noexcept
{
    const BITMAPINFOHEADER& header = bitmap.header;
    const bool isKnown = header.biBitCount == 24 || header.biBitCount == 32;
    if (!bitmap.bits || !isKnown || header.biWidth <= 0 || header.biHeight <= 0) return {};
    const int bytes = header.biBitCount / 8;
    const std::ptrdiff_t stride = (std::ptrdiff_t{header.biWidth} * bytes + 3) / 4 * 4;
    return {bitmap.bits + (header.biHeight - 1) * stride, -stride, header.biWidth, header.biHeight, bytes};
}

} // namespace vldv::paint
