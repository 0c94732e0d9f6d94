#include "formats/shared/heights.h"

#include "base/text.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cassert>
#include <limits>

namespace vldv::formats {

namespace {

/// Gives an image of physical numbers its samples.
void store_values(recorded_image& image, std::span<const double> values)
{
    assert(values.size() == image.stream.array_length() && "one value a sample");
    std::ranges::copy(values, elements_of<double>(image).begin());
    settle_samples(image);
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
    const extent sides[] = {{frame.width, frame.x}, {frame.height, frame.y}};
    recorded_image image = make_samples(id, label, sides, frame.frames, scale, SPM_ARRAY_FLOAT64);
    store_values(image, values);
    return image;
}

recorded_image make_curve_from_values(const std::string& id, const std::string& label, unsigned points, const VLAxis& x,
                                      const value_scale& scale, std::span<const double> values)
{
    assert(points != 0 && values.size() % points == 0 && "whole curves");
    const extent length[] = {{points, x}};
    recorded_image image =
        make_samples(id, label, length, static_cast<unsigned>(values.size() / points), scale, SPM_ARRAY_FLOAT64);
    store_values(image, values);
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
    return text + " from " + (scale.origin.empty() ? unknownOrigin : scale.origin);
}

} // namespace vldv::formats
