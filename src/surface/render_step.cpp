#include "surface/render_step.h"

#include "primitives/numeric.h"

namespace surface {

fitted_window window_fitter::fit(const std::int16_t* image, int rowLength, const CRect& window, CSize size)
{
    constexpr int sampleBytes = sizeof(std::int16_t);
    const std::int16_t* const first = image + std::ptrdiff_t{window.top} * rowLength + window.left;
    if (window.Size() == size) return {first, rowLength * sampleBytes};
    const request wanted{image, rowLength, window, size};
    if (wanted != last) {
        last = {};
        buffer.resize(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
        resample(first, window.Width(), window.Height(), rowLength * sampleBytes, buffer.data(), size.cx, size.cy,
                 size.cx * sampleBytes);
        last = wanted;
    }
    return {buffer.data(), size.cx * sampleBytes};
}

} // namespace surface
