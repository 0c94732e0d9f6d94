#pragma once
#include "formats/recording.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vldv::formats {

/// An image of a recording by its place; throws when there is none or it is a picture.
inline const recorded_image& item(const recording& content, std::size_t index)
{
    return std::get<recorded_image>(content.items.at(index));
}

/// A text that tells of an image; empty when there is none.
inline std::string text_of(const recorded_image& image, const std::string& key)
{
    const auto found = image.strings.find(key);
    return found == image.strings.end() ? std::string() : found->second;
}

/// Physical values of a 16-bit stream in stored order: row 0, the bottom row, first.
inline std::vector<double> physical(const SPMDataStream& stream)
{
    const auto* raw = static_cast<const std::int16_t*>(stream.array_data());
    std::vector<double> values(stream.array_length());
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = stream.values.get_axis(0).at(raw[i]);
    return values;
}

} // namespace vldv::formats
