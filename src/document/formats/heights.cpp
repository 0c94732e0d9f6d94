#include "document/formats/heights.h"

#include "base/six_digits.h"
#include "base/text.h"
#include "document/formats/stream_shape.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

namespace formats {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double rawMinimum = -32768.0, rawMaximum = 32767.0;

/// False for NaN and both infinities.
inline bool is_measured(double value) noexcept { return std::fabs(value) <= std::numeric_limits<double>::max(); }

/// Smallest and largest measured value, and how many points are none.
struct measured_range {
    double lo = infinity, hi = -infinity;
    std::size_t voids = 0;
};

void widen(measured_range& range, double lo, double hi) noexcept
{
    range.lo = std::min(range.lo, lo);
    range.hi = std::max(range.hi, hi);
}

/// Tests every value: for blocks that hold one that was not measured.
void add_block_with_voids(measured_range& range, std::span<const double> values, const value_scale& scale) noexcept
{
    for (const double value : values) {
        const double physical = value * scale.step + scale.offset;
        if (is_measured(physical))
            widen(range, physical, physical);
        else
            ++range.voids;
    }
}

/// Independent lanes, because one chain of minima waits for itself. The sum of zero products is NaN as soon as one
/// value is not finite; only then has each to be looked at.
void add_block(measured_range& range, std::span<const double> values, const value_scale& scale) noexcept
{
    constexpr std::size_t lanes = 8;
    const double step = scale.step, offset = scale.offset;
    double lo[lanes], hi[lanes], zero[lanes];
    std::fill_n(lo, lanes, infinity);
    std::fill_n(hi, lanes, -infinity);
    std::fill_n(zero, lanes, 0.0);
    const std::size_t whole = values.size() - values.size() % lanes;
    for (std::size_t i = 0; i < whole; i += lanes)
        for (std::size_t k = 0; k < lanes; ++k) {
            const double physical = values[i + k] * step + offset;
            lo[k] = physical < lo[k] ? physical : lo[k];
            hi[k] = physical > hi[k] ? physical : hi[k];
            zero[k] += physical * 0.0;
        }
    double allZero = 0.0;
    for (const double lane : zero) allZero += lane;
    if (allZero != 0.0) return add_block_with_voids(range, values, scale); // NaN
    for (std::size_t k = 0; k < lanes; ++k) widen(range, lo[k], hi[k]);
    add_block_with_voids(range, values.subspan(whole), scale);
}

measured_range find_measured_range(std::span<const double> values, const value_scale& scale) noexcept
{
    constexpr std::size_t blockLength = 4096; // in cache for the second look
    measured_range range;
    for (; !values.empty(); values = values.subspan(std::min(blockLength, values.size())))
        add_block(range, values.first(std::min(blockLength, values.size())), scale);
    return range;
}

/// The nearest raw number on `axis`, held within 16 bits. The bias makes the truncation a floor.
inline std::int16_t nearest_raw(double physical, const base::raw_axis& axis) noexcept
{
    const double exact = (physical - axis.start) / axis.scale;
    const double low = exact > rawMinimum ? exact : rawMinimum; // NaN goes here, too
    const double held = low < rawMaximum ? low : rawMaximum;
    return static_cast<std::int16_t>(static_cast<std::int32_t>(held + 32768.5) - 32768);
}

void fill_raw(std::span<std::int16_t> out, std::span<const double> values, const value_scale& scale,
              const base::raw_axis& axis) noexcept
{
    const double step = scale.step, offset = scale.offset;
    const base::raw_axis local = axis; // out may not alias it
    for (std::size_t i = 0; i < out.size(); ++i) out[i] = nearest_raw(values[i] * step + offset, local);
}

void fill_voids(std::span<std::int16_t> out, std::span<const double> values, const value_scale& scale,
                std::int16_t voidRaw) noexcept
{
    for (std::size_t i = 0; i < out.size(); ++i)
        if (!is_measured(values[i] * scale.step + scale.offset)) out[i] = voidRaw;
}

value_scale usable_scale(value_scale scale)
{
    if (!is_measured(scale.step) || scale.step == 0.0) scale.step = 1.0;
    if (!is_measured(scale.offset)) scale.offset = 0.0;
    return scale;
}

/// Replaces samples and value axis of `image` by these values.
void store_values(recorded_image& image, const value_scale& scale, std::span<const double> values)
{
    assert(values.size() == image.stream.array_length() && "one value a sample");
    const std::span out(static_cast<std::int16_t*>(image.stream.array_data()), image.stream.array_length());
    const value_scale usable = usable_scale(scale);
    const measured_range range = find_measured_range(values, usable);
    base::raw_axis axis{0.0, 1.0};
    if (range.lo <= range.hi) axis = base::six_digit_axis(range.lo, range.hi, rawMinimum, rawMaximum);
    const std::int16_t voidRaw = range.lo <= range.hi ? nearest_raw(range.lo, axis) : std::int16_t{0};
    fill_raw(out, values, usable, axis);
    if (range.voids != 0) fill_voids(out, values, usable, voidRaw);
    image.stream.values.set_axis(0, VLAxis(axis.start, axis.scale, usable.units.c_str()));
    if (range.voids != 0) image.strings["\\Void points"] = std::to_string(range.voids);
}

bool stays_in_id(char c) noexcept
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '.' ||
           c == '-';
}

/// The largest number k of an id `stem_k` in `used`, or 1.
long long largest_suffix(const std::string& stem, const std::vector<std::string>& used)
{
    long long largest = 1;
    for (const std::string& id : used) {
        if (id.size() <= stem.size() + 1 || id[stem.size()] != '_' || !id.starts_with(stem)) continue;
        const auto number = base::whole_integer(std::string_view(id).substr(stem.size() + 1));
        if (number && *number < std::numeric_limits<long long>::max()) largest = std::max(largest, *number);
    }
    return largest;
}

} // namespace

recorded_image make_image(const std::string& id, const std::string& label, const image_frame& frame,
                          const value_scale& scale)
{
    const extent sides[] = {{frame.width, frame.x}, {frame.height, frame.y}};
    return make_samples(id, label, sides, frame.frames, scale);
}

recorded_image make_image_from_values(const std::string& id, const std::string& label, const image_frame& frame,
                                      const value_scale& scale, std::span<const double> values)
{
    recorded_image image = make_image(id, label, frame, scale);
    store_values(image, scale, values);
    return image;
}

recorded_image make_curve_from_values(const std::string& id, const std::string& label, unsigned points, const VLAxis& x,
                                      const value_scale& scale, std::span<const double> values)
{
    assert(points != 0 && values.size() % points == 0 && "whole curves");
    const extent length[] = {{points, x}};
    recorded_image image = make_samples(id, label, length, static_cast<unsigned>(values.size() / points), scale);
    store_values(image, scale, values);
    return image;
}

std::string unique_id(const std::string& channel, std::vector<std::string>& used)
{
    std::string id;
    for (const char c : channel) {
        const bool continuation = (static_cast<unsigned char>(c) & 0xC0u) == 0x80u; // one "_" a character
        if (stays_in_id(c))
            id += c;
        else if (!continuation)
            id += '_';
    }
    if (id.empty()) id = "Image";
    if (id.front() == '.') id.front() = '_'; // "." and ".." mean folders
    if (std::find(used.begin(), used.end(), id) != used.end()) id += '_' + std::to_string(largest_suffix(id, used) + 1);
    used.push_back(id);
    return id;
}

std::string describe_scale(const value_scale& scale)
{
    std::string text = "raw * " + base::shortest(scale.step) + " + " + base::shortest(scale.offset);
    if (!scale.units.empty()) text += " [" + scale.units + "]";
    return text + " from " + (scale.origin.empty() ? "the numbers as they stand" : scale.origin);
}

} // namespace formats
