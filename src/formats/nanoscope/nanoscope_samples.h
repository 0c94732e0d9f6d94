#pragma once
#include "base/SPMDataStream.h"
#include "formats/shared/heights.h"
#include "formats/source.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// The 16-bit samples of a stream, writable.
std::span<std::int16_t> samples_of(SPMDataStream& stream) noexcept;

/// Reads little-endian 16-bit samples to where they belong. \return false when they are not all there
bool read_samples(source& file, std::uint64_t offset, std::span<std::int16_t> out);

/// Appends `count` little-endian 32-bit samples to `out`. \return false when they are not all there
bool read_wide_samples(source& file, std::uint64_t offset, std::uint64_t count, std::vector<double>& out);

/// An image of whole raw numbers of any size: those that all fit 16 bits stay as they are on the given scale, others
/// are fitted onto 16 bits.
recorded_image make_image_from_raw(const std::string& id, const std::string& label, const image_frame& frame,
                                   const value_scale& scale, std::span<const double> raw);

} // namespace vldv::formats
