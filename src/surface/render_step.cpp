#include "surface/render_step.h"

namespace surface {

fitted_window window_fitter::fit(const std::int16_t* image, int rowLength, const CRect& window, CSize size)
{
    const std::int16_t* const first = image + std::ptrdiff_t{window.top} * rowLength + window.left;
    if (window.Size() == size) return {first, rowLength * static_cast<int>(sizeof(std::int16_t))};
    buffer.resize(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
    std::int16_t* out = buffer.data();
    for (int y = 0; y < size.cy; ++y) {
        const std::int64_t row = (2 * std::int64_t{y} + 1) * window.Height() / (2 * size.cy);
        const std::int16_t* const source = first + row * rowLength;
        for (int x = 0; x < size.cx; ++x) *out++ = source[(2 * std::int64_t{x} + 1) * window.Width() / (2 * size.cx)];
    }
    return {buffer.data(), size.cx * static_cast<int>(sizeof(std::int16_t))};
}

} // namespace surface
