#include "view/scale/render_step.h"

#include "primitives/resample/resample.h"

#include <algorithm>

namespace vldv::view {

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

namespace {

primitives::const_height_block block_of(const std::int16_t* image, int rowLength, const CRect& part) noexcept
{
    return {image + std::ptrdiff_t{part.top} * rowLength + part.left, part.Width(), part.Height(),
            rowLength * static_cast<int>(sizeof(std::int16_t))};
}

/// Empty where nothing of the part was measured.
primitives::height_range measured_range(const std::int16_t* image, int rowLength, const CRect& part,
                                        std::span<const primitives::sample_run> unmeasured)
{
    primitives::height_range range;
    for (int y = part.top; y < part.bottom; ++y) {
        const std::size_t row = static_cast<std::size_t>(y) * static_cast<std::size_t>(rowLength);
        primitives::for_each_kept(row + static_cast<std::size_t>(part.left), row + static_cast<std::size_t>(part.right),
                                  unmeasured, [&](std::size_t first, std::size_t count) {
                                      range.include(primitives::find_range({image + first, count}));
                                  });
    }
    return range;
}

} // namespace

fitted_window window_fitter::fit(const std::int16_t* image, int rowLength, const CRect& window, CSize size)
{
    const primitives::const_height_block shown = block_of(image, rowLength, window);
    const bool isFitting = window.Size() == size;
    const int step = size.cx * static_cast<int>(sizeof(std::int16_t));
    const request wanted{image, rowLength, window, size};
    if (wanted != last) {
        last = {};
        if (isFitting) {
            range = primitives::find_block_range(shown);
        } else {
            buffer.resize(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
            range = primitives::resample_and_range(shown, {buffer.data(), size.cx, size.cy, step});
        }
        last = wanted;
    }
    if (isFitting) return {shown.data, shown.step, range};
    return {buffer.data(), step, range};
}

primitives::height_range range_keeper::of(const std::int16_t* image, int rowLength, const CRect& part,
                                          std::span<const primitives::sample_run> unmeasured)
{
    if (image == lastImage && part == lastPart) return range;
    range = unmeasured.empty() ? primitives::height_range() : measured_range(image, rowLength, part, unmeasured);
    if (range.minimum > range.maximum) range = primitives::find_block_range(block_of(image, rowLength, part));
    lastImage = image;
    lastPart = part;
    return range;
}

} // namespace vldv::view
