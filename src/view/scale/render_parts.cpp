#include "base/streams/rounding.h"
#include "base/units.h"
#include "view/scale/render.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

namespace vldv::view {

namespace {

void* (*allocator)(std::size_t) = nullptr;

/// A window and data may differ by this factor in size.
constexpr double sizeRatio = 0.00390625;

/// The nearest int, halves up; what an int does not hold becomes its nearest end, NaN 0.
int rounded_int(double v) noexcept
{
    if (std::isnan(v)) return 0;
    const double rounded = base::round_half_up(v);
    if (rounded <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    if (rounded >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    return static_cast<int>(rounded);
}

/// Whether the window overlaps the data and neither is much larger than the other.
bool suits(raw_window window, primitives::height_range range) noexcept
{
    const double windowSize = static_cast<double>(window.high) - window.low;
    const double data_size = static_cast<double>(range.maximum) - range.minimum;
    return window.low < range.maximum && range.minimum < window.high && windowSize * sizeRatio <= data_size &&
           data_size * sizeRatio <= windowSize;
}

raw_window take_data_range(scale_state& state, const VLAxis& zAxis, primitives::height_range range)
{
    state.fixedStart = range.minimum * zAxis.scale + zAxis.start;
    state.fixedSize = (range.maximum - range.minimum) * zAxis.scale;
    state.fixedUnits = zAxis.get_units();
    return {range.minimum, range.maximum};
}

} // namespace

primitives::color_lookup make_lookup(const color_table& table, bool inverse)
{
    const double last = static_cast<double>(table.size() - 1);
    primitives::color_lookup lookup;
    for (int k = 0; k < 256; ++k) {
        const double x = (inverse ? 255 - k : k) / 255.0;
        const colorEntry color = table[static_cast<std::size_t>(base::round_half_up(x * last))];
        lookup.blue[k] = static_cast<std::uint8_t>(blue_of(color));
        lookup.green[k] = static_cast<std::uint8_t>(green_of(color));
        lookup.red[k] = static_cast<std::uint8_t>(red_of(color));
    }
    // Interpolation between levels 254 and 256 puts byte 255 half way.
    for (std::uint8_t* plane : {lookup.blue, lookup.green, lookup.red})
        plane[255] = static_cast<std::uint8_t>((plane[254] + plane[255] + 1) / 2);
    primitives::join_channels(lookup);
    return lookup;
}

void normalize_roi(RECT& roi, IppiSize size) noexcept
{
    for (std::int32_t* side : {&roi.left, &roi.right}) *side = std::clamp(*side, 0, size.width);
    for (std::int32_t* side : {&roi.top, &roi.bottom}) *side = std::clamp(*side, 0, size.height);
    if (roi.left > roi.right) std::swap(roi.left, roi.right);
    if (roi.top > roi.bottom) std::swap(roi.top, roi.bottom);
}

raw_window fixed_window(scale_state& state, const VLAxis& zAxis, primitives::height_range range, bool absolute)
{
    const char* units = state.fixedUnits.c_str();
    if (units_convertable(units, zAxis.get_units()) < 1) return take_data_range(state, zAxis, range);
    // The window is kept in physical units and wanted in raw ones: raw = (value - start) / scale for a place, size /
    // scale for a distance. A relative window begins at the lowest sample, moved by the offset.
    const auto rawUnits = [&](double v) { return convert_size(units, zAxis.get_units(), v); };
    const double low =
        absolute ? rounded_int((rawUnits(state.fixedStart) - zAxis.start) / zAxis.scale)
                 : rounded_int(range.minimum + base::round_half_up(rawUnits(state.relativeMeanOffset) / zAxis.scale));
    const raw_window window{static_cast<int>(low), rounded_int(rawUnits(state.fixedSize) / zAxis.scale + low)};
    if (state.disableScaleCheck || suits(window, range)) return window;
    return take_data_range(state, zAxis, range);
}

std::size_t picture_stride(int width, bool rgb32) noexcept
{
    const std::size_t columns = static_cast<std::size_t>(width);
    // Rows of three bytes a pixel are padded to whole 32-bit words; those of four are whole already.
    return rgb32 ? columns * 4 : ((columns * 24 + 31) & ~std::size_t{31}) / 8;
}

void* allocate_temporary(std::size_t bytes, temporary_position position)
{
    constexpr std::size_t alignment = 64;
    const std::size_t rounded = (std::max<std::size_t>(bytes, 1) + alignment - 1) / alignment * alignment;
    void* block = allocator ? allocator(rounded) : std::aligned_alloc(alignment, rounded);
    if (block) return block;
    throw std::runtime_error("Scale (" + std::to_string(static_cast<int>(position)) +
                             "):  runtime error: Zero pointer exception in function: CScale::DrawImage\r\n");
}

void free_temporary(void* block) noexcept { std::free(block); }

void set_temporary_allocator(void* (*allocate)(std::size_t)) noexcept { allocator = allocate; }

} // namespace vldv::view
