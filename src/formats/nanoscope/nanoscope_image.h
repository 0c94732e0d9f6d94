#pragma once
#include "base/streams/byte_reader.h"
#include "formats/nanoscope/nanoscope_header.h"
#include "formats/shared/heights.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vldv::formats {

/// One image of a file: what its list, with the help of the scan list, says about the samples.
struct nanoscope_image {
    const nanoscope_section* section = nullptr;
    std::string channel; ///< "Height"
    std::string pass;    ///< scan line ("Main", or "Interleave" of lift mode) and frame direction
    bool isTrace = false, isRetrace = false;
    unsigned width = 0, height = 0;
    unsigned sampleBytes = 2; ///< 2 or 4
    std::uint64_t offset = 0; ///< of the first sample, the left one of the bottom row
    VLAxis x, y;
    value_scale scale;
    std::optional<value_scale> volts; ///< before the sensitivity
    std::string doubt;                ///< of its shape, for people; mostly empty

    std::uint64_t samples() const noexcept { return std::uint64_t{width} * height; }
};

/// Reads everything but offset, shape and sample width: channel, direction, scale.
nanoscope_image describe_nanoscope_image(const nanoscope_header& header, const nanoscope_section& section);

/// Finds shape, sample width, place and axes of binary samples in a file of `fileSize` bytes.
/// \return a reason why they cannot be there, or an empty text
std::string place_nanoscope_image(const nanoscope_header& header, std::uint64_t fileSize, nanoscope_image& image);

/// Finds shape and axes of samples that stand as decimal numbers behind the header.
std::string shape_nanoscope_image(const nanoscope_header& header, nanoscope_image& image);

/// True when both are the two directions of the same scan line and can share one stream.
bool are_two_directions(const nanoscope_image& a, const nanoscope_image& b);

} // namespace vldv::formats
