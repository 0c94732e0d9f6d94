#include "paint/raster/stretch.h"

#include <algorithm>
#include <cstring>

namespace vldv::paint {

namespace {

constexpr std::int64_t unit = 256;

std::int64_t floor_div(std::int64_t a, std::int64_t b) noexcept { return a / b - (a % b != 0 && (a < 0) != (b < 0)); }

unsigned weight_of(const stretched_axis::taps& taps, int index) noexcept
{
    return index == 0 ? taps.firstWeight : index == taps.count - 1 ? taps.lastWeight : static_cast<unsigned>(unit);
}

unsigned total_weight(const stretched_axis::taps& taps) noexcept
{
    if (taps.count == 1) return taps.firstWeight;
    return taps.firstWeight + taps.lastWeight + static_cast<unsigned>(unit) * static_cast<unsigned>(taps.count - 2);
}

std::uint32_t bytes_at(const std::byte* pixel) noexcept
{
    return std::to_integer<std::uint32_t>(pixel[2]) << 16 | std::to_integer<std::uint32_t>(pixel[1]) << 8 |
           std::to_integer<std::uint32_t>(pixel[0]);
}

std::uint32_t word_at(const std::byte* pixel) noexcept
{
    std::uint32_t word;
    std::memcpy(&word, pixel, sizeof word);
    return word;
}

void copy_pixels(const std::byte* from, int bytes, std::size_t count, std::uint32_t* out) noexcept
{
    if (bytes == 4)
        for (std::size_t i = 0; i < count; ++i) out[i] = 0xFF000000u | word_at(from + 4 * i);
    else
        for (std::size_t i = 0; i < count; ++i) out[i] = 0xFF000000u | bytes_at(from + 3 * i);
}

} // namespace

stretched_axis::stretched_axis(int from_, int count_, int limit_, int size_, bool flips_)
    : from(from_), count(count_), limit(limit_), size(size_), flips(flips_)
{
    // Positions run one way, so those with a source are one stretch: the first whose middle is not before it …
    const auto firstWith = [&](std::int64_t pixel) {
        // (2 i + 1) count / (2 size) >= pixel - from
        const std::int64_t at = 2 * size * (pixel - from) - count;
        return std::clamp<std::int64_t>(-floor_div(-at, 2 * count), 0, size);
    };
    const std::int64_t begin = firstWith(0), end = firstWith(limit);
    first = static_cast<int>(flips ? size - end : begin);
    last = static_cast<int>(flips ? size - begin : end);
}

int stretched_axis::nearest(int index) const noexcept
{
    const std::int64_t i = flips ? size - 1 - index : index;
    return static_cast<int>(from + (2 * i + 1) * count / (2 * size));
}

stretched_axis::taps stretched_axis::at(int index) const noexcept
{
    const std::int64_t i = flips ? size - 1 - index : index;
    // Pixel i of the result stands for the piece from i count / size to (i + 1) count / size of the source. Where that
    // is smaller than a source pixel, the value is interpolated at the middle of the piece; the values of the source
    // belong to the middles of its pixels, hence the unit / 2.
    if (count <= size) { // between two
        const std::int64_t middle = from * unit + floor_div((2 * i + 1) * count * unit, 2 * size) - unit / 2;
        const std::int64_t pixel = floor_div(middle, unit);
        const auto share = static_cast<unsigned>(middle - pixel * unit);
        if (pixel < 0) return {.first = 0};
        if (share == 0 || pixel + 1 >= limit) return {.first = static_cast<int>(std::min(pixel, limit - 1))};
        return {static_cast<int>(pixel), 2, static_cast<unsigned>(unit) - share, share};
    }
    const std::int64_t begin = std::max<std::int64_t>(from * unit + i * count * unit / size, 0);
    const std::int64_t end = std::min(from * unit + (i + 1) * count * unit / size, limit * unit);
    const std::int64_t firstPixel = begin / unit, lastPixel = (end - 1) / unit;
    if (firstPixel == lastPixel) return {.first = static_cast<int>(firstPixel)};
    return {static_cast<int>(firstPixel), static_cast<int>(lastPixel - firstPixel + 1),
            static_cast<unsigned>((firstPixel + 1) * unit - begin), static_cast<unsigned>(end - lastPixel * unit)};
}

stretched_picture::stretched_picture(const pixel_rows& source_, const CRect& from, CSize to, bool flipX, bool flipY,
                                     bool averages_)
    : source(source_),
      columns(from.left, from.Width(), source.width, to.cx, flipX),
      rows(from.top, from.Height(), source.height, to.cy, flipY),
      averages(averages_ && (from.Width() != to.cx || from.Height() != to.cy)),
      isPlain(from.Width() == to.cx && !flipX)
{
}

CRect stretched_picture::choose(const CRect& wanted)
{
    CRect part;
    part.IntersectRect(wanted, CRect(columns.begin(), rows.begin(), columns.end(), rows.end()));
    across.clear();
    offsets.clear();
    for (int x = part.left; x < part.right; ++x) {
        if (averages)
            across.push_back(columns.at(x));
        else
            offsets.push_back(std::ptrdiff_t{columns.nearest(x)} * source.bytes);
    }
    return part;
}

void stretched_picture::row(int y, std::uint32_t* out)
{
    if (averages) return meanRow(y, out);
    const std::byte* const from = source.row(rows.nearest(y));
    if (isPlain) return copy_pixels(from + offsets.front(), source.bytes, offsets.size(), out);
    if (source.bytes == 4)
        for (const std::ptrdiff_t offset : offsets) *out++ = 0xFF000000u | word_at(from + offset);
    else
        for (const std::ptrdiff_t offset : offsets) *out++ = 0xFF000000u | bytes_at(from + offset);
}

void stretched_picture::meanRow(int y, std::uint32_t* out)
{
    if (across.empty()) return;
    const stretched_axis::taps one = across.front(), other = across.back();
    const int firstColumn = std::min(one.first, other.first);
    const int endColumn = std::max(one.first + one.count, other.first + other.count);
    const auto count = static_cast<std::size_t>(endColumn - firstColumn) * static_cast<std::size_t>(source.bytes);
    const stretched_axis::taps down = rows.at(y);
    // Down first, for all columns that the row needs, then across: weights of the two directions multiply, so that each
    // source byte is read once a row. Sums and weights are whole numbers; the only rounding is the division at the end.
    sums.assign(count, 0);
    for (int i = 0; i < down.count; ++i) {
        const std::byte* const from = source.row(down.first + i) + std::ptrdiff_t{firstColumn} * source.bytes;
        std::uint32_t* const sum = sums.data();
        // Adding shifted bytes is what most rows need and what a vector does best.
        if (const unsigned weight = weight_of(down, i); weight == unit)
            for (std::size_t k = 0; k < count; ++k) sum[k] += std::to_integer<std::uint32_t>(from[k]) << 8;
        else
            for (std::size_t k = 0; k < count; ++k) sum[k] += std::to_integer<std::uint32_t>(from[k]) * weight;
    }
    for (const stretched_axis::taps& taps : across) {
        const std::uint32_t* sum = sums.data() + std::ptrdiff_t{taps.first - firstColumn} * source.bytes;
        std::uint64_t blue = 0, green = 0, red = 0;
        const auto add = [&](unsigned weight) {
            blue += std::uint64_t{sum[0]} * weight;
            green += std::uint64_t{sum[1]} * weight;
            red += std::uint64_t{sum[2]} * weight;
            sum += source.bytes;
        };
        add(taps.firstWeight);
        for (int i = 1; i + 1 < taps.count; ++i) add(static_cast<unsigned>(unit));
        if (taps.count > 1) add(taps.lastWeight);
        const std::uint64_t area = std::uint64_t{total_weight(down)} * total_weight(taps);
        const auto mean = [&](std::uint64_t total) { return static_cast<std::uint32_t>((total + area / 2) / area); };
        *out++ = 0xFF000000u | mean(red) << 16 | mean(green) << 8 | mean(blue);
    }
}

} // namespace vldv::paint
