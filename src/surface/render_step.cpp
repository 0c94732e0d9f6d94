#include "surface/render_step.h"

#include "primitives/numeric.h"

#include <algorithm>

namespace surface {

namespace {

struct span {
    int first, end;
};

/// Of `all` samples on so many pixels.
span pixels_of(span samples, int all, int pixels) noexcept
{
    const auto firstPixel = [&](int sample) { // whose middle is not before the sample
        return static_cast<int>((2 * std::int64_t{sample} * pixels + all - 1) / (2 * std::int64_t{all}));
    };
    const int first = std::min(firstPixel(samples.first), pixels - 1);
    return {first, std::max(firstPixel(samples.end), first + 1)};
}

} // namespace

CRect shown_part(CRect part, const CRect& window, CSize size) noexcept
{
    CRect seen;
    part.NormalizeRect();
    if (!seen.IntersectRect(part, window)) return {};
    const span x = pixels_of({seen.left - window.left, seen.right - window.left}, window.Width(), size.cx);
    const span y = pixels_of({seen.top - window.top, seen.bottom - window.top}, window.Height(), size.cy);
    return {x.first, y.first, x.end, y.end};
}

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

primitives::height_range range_keeper::of(const std::int16_t* image, int rowLength, const CRect& part)
{
    if (image == lastImage && part == lastPart) return range;
    range = {};
    // Whole rows lie one behind another: all of them are one stretch.
    const bool isWhole = part.Width() == rowLength;
    const int rows = isWhole ? 1 : part.Height();
    const std::size_t length = static_cast<std::size_t>(part.Width()) * (isWhole ? part.Height() : 1);
    const std::int16_t* row = image + std::ptrdiff_t{part.top} * rowLength + part.left;
    for (int y = 0; y < rows; ++y, row += rowLength) {
        const primitives::height_range found = primitives::find_range({row, length});
        range.minimum = std::min(range.minimum, found.minimum);
        range.maximum = std::max(range.maximum, found.maximum);
    }
    lastImage = image;
    lastPart = part;
    return range;
}

} // namespace surface
