// A drawing in one pass: each row is mapped and painted while it is in the cache.
#include "view/scale/render.h"

#include "base/streams/rounding.h"
#include "primitives/fit/line_fit.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

namespace vldv::view {

namespace {

/// Rows of the source, or of its derivative along the rows, which is made row by row in a buffer.
class row_source {
public:
    explicit row_source(const render_request& request_)
        : request(request_), width(static_cast<std::size_t>(request_.size.width))
    {
        if (request.highlight) derivative.emplace(width, derivativePosition);
    }

    std::span<const std::int16_t> row(int y) const
    {
        const auto* first = reinterpret_cast<const std::int16_t*>(reinterpret_cast<const char*>(request.source) +
                                                                  std::ptrdiff_t{y} * request.sourceStep);
        if (!derivative) return {first, width};
        std::int16_t* out = derivative->data();
        for (std::size_t x = 0; x + 1 < width; ++x)
            out[x] = static_cast<std::int16_t>(std::clamp(first[x + 1] - first[x], -32768, 32767));
        out[width - 1] = 0; // the border repeats the last sample
        return {out, width};
    }

private:
    const render_request& request;
    std::size_t width;
    std::optional<temporary_array<std::int16_t>> derivative;
};

primitives::height_range range_of(const row_source& source, const RECT& part)
{
    primitives::height_range range;
    for (int y = part.top; y < part.bottom; ++y) {
        const auto piece = source.row(y).subspan(static_cast<std::size_t>(part.left),
                                                 static_cast<std::size_t>(part.right - part.left));
        const primitives::height_range found = primitives::find_range(piece);
        range.minimum = std::min(range.minimum, found.minimum);
        range.maximum = std::max(range.maximum, found.maximum);
    }
    // An empty rectangle has no limits: all that 16 bits hold.
    return range.minimum > range.maximum ? primitives::height_range{-32768, 32767} : range;
}

/// Writes rows of bytes into the picture.
class row_painter {
public:
    row_painter(const render_request& request_, const primitives::color_lookup& colors_)
        : colors(colors_),
          out(static_cast<std::uint8_t*>(request_.bits)),
          stride(picture_stride(request_.size.width, request_.rgb32)),
          rgb32(request_.rgb32)
    {
    }
    /// Where the next row goes.
    const void* next() const noexcept { return out; }
    void paint(std::span<const std::uint8_t> bytes)
    {
        if (rgb32)
            primitives::paint_32(bytes, colors, out);
        else
            primitives::paint_24(bytes, colors, out);
        out += stride;
    }

private:
    const primitives::color_lookup& colors;
    std::uint8_t* out;
    std::size_t stride;
    bool rgb32;
};

/// One window for all rows.
void paint_with_window(const row_source& source, int height, raw_window window, std::uint8_t* bytes,
                       row_painter& painter)
{
    const primitives::byte_window limits{static_cast<float>(window.low), static_cast<float>(window.high)};
    for (int y = 0; y < height; ++y) {
        const auto row = source.row(y);
        primitives::map_heights(row, limits, bytes);
        painter.paint({bytes, row.size()});
    }
}

raw_window mean_window(double lowSum, double highSum, int height)
{
    return {static_cast<int>(base::round_half_up(lowSum / height)),
            static_cast<int>(base::round_half_up(highSum / height))};
}

raw_window paint_per_line(const row_source& source, int height, std::uint8_t* bytes, row_painter& painter)
{
    double lowSum = 0.0, highSum = 0.0;
    for (int y = 0; y < height; ++y) {
        const auto row = source.row(y);
        const primitives::height_range range = primitives::find_range(row);
        lowSum += range.minimum;
        highSum += range.maximum;
        primitives::map_heights(row, {static_cast<float>(range.minimum), static_cast<float>(range.maximum)}, bytes);
        painter.paint({bytes, row.size()});
    }
    return mean_window(lowSum, highSum, height);
}

raw_window paint_per_line_flattened(const row_source& source, IppiSize size, std::uint8_t* bytes, row_painter& painter)
{
    const std::size_t width = static_cast<std::size_t>(size.width);
    const temporary_array<float> floats(width, floatsPosition);
    double lowSum = 0.0, highSum = 0.0;
    for (int y = 0; y < size.height; ++y) {
        const primitives::flattened_range range = primitives::flatten_row(source.row(y), floats.data(), painter.next());
        lowSum += static_cast<double>(std::lround(range.minimum));
        highSum += static_cast<double>(std::lround(range.maximum));
        primitives::map_floats({floats.data(), width}, {range.minimum, range.maximum}, bytes);
        painter.paint({bytes, width});
    }
    return mean_window(lowSum, highSum, size.height);
}

} // namespace

void render_image(scale_state& state, const color_table& table, const render_request& request)
{
    const temporary_array<primitives::color_lookup> colors(1, planesPosition);
    *colors.data() = make_lookup(table, state.inverse);
    const temporary_array<std::uint8_t> bytes(static_cast<std::size_t>(request.size.width), bytesPosition);
    if (request.roi) normalize_roi(*request.roi, request.size);
    const row_source source(request);
    const int mode = request.highlight ? autoScale : state.autoScaling;
    row_painter painter(request, *colors.data());
    raw_window window{};
    if (mode == perLine) {
        window = paint_per_line(source, request.size.height, bytes.data(), painter);
    } else if (mode == perLinePlanefit) {
        window = paint_per_line_flattened(source, request.size, bytes.data(), painter);
    } else {
        const RECT whole{0, 0, request.size.width, request.size.height};
        const bool isKnown = request.range && !request.highlight;
        const primitives::height_range range =
            isKnown ? *request.range : range_of(source, request.roi ? *request.roi : whole);
        window = {range.minimum, range.maximum};
        if (mode == fixedScale) window = fixed_window(state, *request.zAxis, range, request.absolute);
        paint_with_window(source, request.size.height, window, bytes.data(), painter);
    }
    if (request.lowOut) *request.lowOut = window.low;
    if (request.highOut) *request.highOut = window.high;
}

} // namespace vldv::view
