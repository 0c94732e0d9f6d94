// The definition of a drawing, one operation over a whole array after the other.
#include "primitives/numeric.h"
#include "view/scale/render.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

namespace vldv::view {

namespace {

using byte_plane = int[256];

/// A source of samples with its rows.
struct samples {
    const std::int16_t* first;
    std::ptrdiff_t step; ///< bytes
    IppiSize size;
    const std::int16_t* row(int y) const
    {
        return reinterpret_cast<const std::int16_t*>(reinterpret_cast<const char*>(first) + y * step);
    }
    std::size_t count() const { return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height); }
};

/// Three planes of 256 integers and the levels that they stand for.
struct planes_and_levels {
    byte_plane blue, green, red, level;
};

void build_planes(planes_and_levels& out, const color_table& table, bool inverse)
{
    const double last = static_cast<double>(table.size() - 1);
    for (int k = 0; k < 256; ++k) {
        const double x = inverse ? (255 - k) / 255.0 : k / 255.0;
        const double y = x * last;
        double index = std::floor(y);
        if (y - index >= 0.5) index += 1.0;
        const colorEntry c = table[static_cast<std::size_t>(index)];
        out.blue[k] = static_cast<int>(c >> 16 & 255);
        out.green[k] = static_cast<int>(c >> 8 & 255);
        out.red[k] = static_cast<int>(c & 255);
        out.level[k] = k < 255 ? k : 256;
    }
}

/// Linear interpolation between the levels around a byte.
std::uint8_t looked_up(std::uint8_t byte, const byte_plane& level, const byte_plane& plane)
{
    int k = 0;
    while (!(level[k] <= byte && byte < level[k + 1])) ++k;
    const double between =
        plane[k] + 0.5 + static_cast<double>((byte - level[k]) * (plane[k + 1] - plane[k])) / (level[k + 1] - level[k]);
    return static_cast<std::uint8_t>(std::clamp(static_cast<int>(between), 0, 255));
}

/// The copy with its last column repeated once on either side, rows alike.
void bordered_copy(const samples& source, std::int16_t* out)
{
    const int width = source.size.width, height = source.size.height;
    for (int y = -1; y <= height; ++y)
        for (int x = -1; x <= width; ++x)
            *out++ = source.row(std::clamp(y, 0, height - 1))[std::clamp(x, 0, width - 1)];
}

/// D(x, y) = S(x + 1, y) - S(x, y), saturated.
void row_derivative(const std::int16_t* bordered, IppiSize size, std::int16_t* out)
{
    const std::ptrdiff_t step = size.width + 2;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const std::int16_t* at = bordered + (y + 1) * step + x + 1;
            *out++ = static_cast<std::int16_t>(std::clamp(at[1] - at[0], -32768, 32767));
        }
}

primitives::height_range range_of(const samples& source, const RECT& part)
{
    primitives::height_range range{-32768, 32767};
    bool any = false;
    for (int y = part.top; y < part.bottom; ++y)
        for (int x = part.left; x < part.right; ++x) {
            const std::int16_t v = source.row(y)[x];
            range.minimum = any ? std::min(range.minimum, v) : v;
            range.maximum = any ? std::max(range.maximum, v) : v;
            any = true;
        }
    return range;
}

void map_to_bytes(const float* values, std::size_t count, float low, float high, std::uint8_t* out)
{
    if (!(low < high)) return;
    for (std::size_t i = 0; i < count; ++i) out[i] = primitives::mapped_byte(values[i], {low, high});
}

/// Modes 2 and 3: each row by its own limits. \return the mean limits, halves up
raw_window map_rows(const samples& source, bool planefit, float* floats, std::uint8_t* bytes)
{
    const int width = source.size.width, height = source.size.height;
    double lowSum = 0.0, highSum = 0.0;
    for (int y = 0; y < height; ++y, floats += width, bytes += width) {
        float low = 0.0f, high = 0.0f;
        if (planefit) {
            planefit_line_32f(floats, width);
            low = *std::min_element(floats, floats + width);
            high = *std::max_element(floats, floats + width);
        } else {
            low = *std::min_element(source.row(y), source.row(y) + width);
            high = *std::max_element(source.row(y), source.row(y) + width);
        }
        lowSum += planefit ? static_cast<double>(std::lround(low)) : static_cast<double>(low);
        highSum += planefit ? static_cast<double>(std::lround(high)) : static_cast<double>(high);
        map_to_bytes(floats, static_cast<std::size_t>(width), low, high, bytes);
    }
    return {static_cast<int>(base::round_half_up(lowSum / height)),
            static_cast<int>(base::round_half_up(highSum / height))};
}

/// The bytes in three channels through the planes.
void interleave(const std::uint8_t* bytes, IppiSize size, const planes_and_levels& planes, std::uint8_t* out,
                std::size_t stride)
{
    for (int y = 0; y < size.height; ++y, out += stride)
        for (int x = 0; x < size.width; ++x) {
            const std::uint8_t byte = *bytes++;
            std::uint8_t* pixel = out + 3 * static_cast<std::ptrdiff_t>(x);
            pixel[0] = looked_up(byte, planes.level, planes.blue);
            pixel[1] = looked_up(byte, planes.level, planes.green);
            pixel[2] = looked_up(byte, planes.level, planes.red);
        }
}

void copy_channels(const std::uint8_t* channels, std::size_t pixels, std::uint8_t* out)
{
    for (std::size_t i = 0; i < pixels; ++i) std::memcpy(out + 4 * i, channels + 3 * i, 3);
}

} // namespace

void render_reference(scale_state& state, const color_table& table, const render_request& request)
{
    const temporary_array<planes_and_levels> planes(1, planesPosition);
    build_planes(*planes.data(), table, state.inverse);
    samples source{request.source, request.sourceStep, request.size};
    const std::size_t count = source.count();
    const temporary_array<float> floats(count, floatsPosition);
    const temporary_array<std::uint8_t> bytes(count, bytesPosition);
    std::fill_n(bytes.data(), count, std::uint8_t{0});
    if (request.roi) normalize_roi(*request.roi, request.size);

    std::optional<temporary_array<std::int16_t>> derivative;
    int mode = state.autoScaling;
    if (request.highlight) {
        const std::size_t borderedCount =
            static_cast<std::size_t>(request.size.width + 2) * static_cast<std::size_t>(request.size.height + 2);
        const temporary_array<std::int16_t> bordered(borderedCount, borderedPosition);
        derivative.emplace(count, derivativePosition);
        bordered_copy(source, bordered.data());
        row_derivative(bordered.data(), request.size, derivative->data());
        source = {derivative->data(), std::ptrdiff_t{request.size.width} * 2, request.size};
        mode = autoScale;
    }
    const RECT whole{0, 0, request.size.width, request.size.height};
    primitives::height_range range = range_of(source, request.roi ? *request.roi : whole);
    if (request.range && !request.highlight) range = *request.range;
    for (int y = 0; y < request.size.height; ++y)
        std::copy_n(source.row(y), request.size.width,
                    floats.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(request.size.width));

    raw_window window{range.minimum, range.maximum};
    if (mode == perLine || mode == perLinePlanefit) {
        window = map_rows(source, mode == perLinePlanefit, floats.data(), bytes.data());
    } else {
        if (mode == fixedScale) window = fixed_window(state, *request.zAxis, range, request.absolute);
        map_to_bytes(floats.data(), count, static_cast<float>(window.low), static_cast<float>(window.high),
                     bytes.data());
    }
    if (request.lowOut) *request.lowOut = window.low;
    if (request.highOut) *request.highOut = window.high;

    auto* out = static_cast<std::uint8_t*>(request.bits);
    if (!request.rgb32) {
        interleave(bytes.data(), request.size, *planes.data(), out, picture_stride(request.size.width, false));
        return;
    }
    const temporary_array<std::uint8_t> channels(3 * count, channelsPosition);
    interleave(bytes.data(), request.size, *planes.data(), channels.data(),
               3 * static_cast<std::size_t>(request.size.width));
    copy_channels(channels.data(), count, out);
}

} // namespace vldv::view
